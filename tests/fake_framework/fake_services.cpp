#include "fake_framework/fake_services.h"

#include "dynamic_progress_bar.h"
#include "global_config.h"
#include "summary_report.h"
#include "system_check.h"

#include <iostream>
#include <ostream>
#include <stdexcept>

namespace fake
{
Framework& framework()
{
    static Framework instance;
    return instance;
}

void reset()
{
    framework() = Framework();
}
} // namespace fake

using fake::framework;

namespace service
{
ServiceUpdateScan::ServiceUpdateScan(const UpdateScanOption& option) : option_(option) {}

void ServiceUpdateScan::SetProgressBar(DynamicProgressBar* bar)
{
    bar_ = bar;
}

KorvanResult ServiceUpdateScan::Run(UpdateScanReport& report)
{
    ++framework().scan.runs;
    framework().scan.options.push_back(option_);
    framework().scan.barGiven = bar_ != nullptr;
    report = framework().scan.report;
    return framework().scan.result;
}

std::string ServiceUpdateScan::ActionName()
{
    return "scan";
}

int SerializeScanReport::LoadFromXml(const std::string& path, UpdateScanReport& report)
{
    framework().scan.loadedPaths.push_back(path);
    if (framework().scan.loadCode == 0)
    {
        report = framework().scan.loaded;
    }
    return framework().scan.loadCode;
}

int SerializeScanReport::SaveToXml(const UpdateScanReport& /*report*/, const std::string& path)
{
    framework().scan.savedPaths.push_back(path);
    return framework().scan.saveCode;
}

void SerializeScanReport::PrintResult(const UpdateScanReport& report, const std::string& type)
{
    PrintResult(report, std::cout, type);
}

void SerializeScanReport::PrintResult(const UpdateScanReport& /*report*/, std::ostream& out, const std::string& type)
{
    framework().scan.printedTypes.push_back(type);
    if (framework().scan.printThrows)
    {
        throw std::logic_error("printer on fire");
    }
    out << "scan table\n";
}

ServiceUpdateQuery::ServiceUpdateQuery(const QueryOptions& options) : options_(options) {}

KorvanResult ServiceUpdateQuery::RunQuery(QueryReport& report)
{
    ++framework().query.runs;
    framework().query.options.push_back(options_);
    report = framework().query.report;
    return framework().query.result;
}

std::string ServiceUpdateQuery::ActionName()
{
    return "query";
}

KorvanResult QueryReport::LoadFromXml(const std::string& path)
{
    framework().query.loadedPaths.push_back(path);
    *this = framework().query.report;
    return framework().query.loadResult;
}

int QueryReport::SaveToXml(const std::string& path) const
{
    framework().query.savedPaths.push_back(path);
    return framework().query.saveCode;
}

ServiceUpdateCompare::ServiceUpdateCompare(const CompareOptions& options) : options_(options) {}

void ServiceUpdateCompare::SetReports(const UpdateScanReport& scan, const QueryReport& query)
{
    scan_ = &scan;
    query_ = &query;
}

KorvanResult ServiceUpdateCompare::RunCompare(CompareReport& /*report*/)
{
    ++framework().compare.runs;
    framework().compare.options.push_back(options_);
    framework().compare.scannedItems = scan_->GetScanResults().size();
    framework().compare.queriedPackages = query_->packages.size();
    return framework().compare.result;
}

std::string ServiceUpdateCompare::ActionName()
{
    return "compare";
}

KorvanResult SerializeCompareReport::SaveToXml(const CompareReport& /*report*/, const std::string& path)
{
    framework().compare.savedPaths.push_back(path);
    return framework().compare.saveResult;
}

void SerializeCompareReport::PrintResult(const CompareReport& report, bool verbose)
{
    PrintResult(report, std::cout, verbose);
}

void SerializeCompareReport::PrintResult(const CompareReport& /*report*/, std::ostream& out, bool verbose)
{
    framework().compare.verbose.push_back(verbose);
    if (framework().compare.printThrows)
    {
        throw std::logic_error("printer on fire");
    }
    out << "compare table\n";
}
} // namespace service

ConnectMode FetchConnectionMode(const UserContext& /*context*/)
{
    return framework().connections.mode;
}

KorvanResult ConvertUserContextToConnectOption(const UserContext& context, ConnectOption& option)
{
    framework().connections.contexts.push_back(context);
    option.address = framework().connections.address;
    return KorvanResult();
}

namespace
{
using ConnectionList = std::vector<XModule::XModuleConnection::ConnectionInfo>;

// Adds to what is in the list, so that a caller that forgot to empty it is seen.
KorvanResult answer(const char* protocol, const KorvanResult& result, std::size_t count, ConnectionList& connections)
{
    framework().connections.tried.emplace_back(protocol);
    connections.resize(connections.size() + count);
    return result;
}
} // namespace

KorvanResult GetRESTConnectionList(const UserContext& /*context*/, ConnectionList& connections)
{
    return answer("rest", framework().connections.rest, framework().connections.restCount, connections);
}

KorvanResult FetchCIMConnectionList(const UserContext& /*context*/, ConnectionList& connections)
{
    return answer("cim", framework().connections.cim, framework().connections.cimCount, connections);
}

KorvanResult FetchIPMIConnectionList(const UserContext& /*context*/, ConnectionList& connections)
{
    return answer("ipmi", framework().connections.ipmi, framework().connections.ipmiCount, connections);
}

namespace XModule
{
SystemCheck::SystemCheck(const std::string& tolmarList, const std::string& amdList, const std::string& cfcList,
                         const std::string& grantlyList)
    : tolmarList_(tolmarList), amdList_(amdList), cfcList_(cfcList), grantlyList_(grantlyList)
{
    framework().systems.lists.push_back({tolmarList, amdList, cfcList, grantlyList});
}

SystemCheck::SystemCheck(const std::vector<XModuleConnection::ConnectionInfo>& connections,
                         const std::string& tolmarList, const std::string& amdList, const std::string& cfcList,
                         const std::string& grantlyList)
    : SystemCheck(tolmarList, amdList, cfcList, grantlyList)
{
    connections_ = connections;
    framework().systems.connections = connections.size();
}

int SystemCheck::IsBlueSystem(const std::string& machineType) const
{
    framework().systems.asked.push_back(machineType);
    return framework().systems.blue;
}

SystemCheck::ErrorCode SystemCheck::GetMachineType(std::pair<std::string, std::string>& machineType) const
{
    machineType.first = framework().systems.machineType;
    return static_cast<ErrorCode>(framework().systems.machineTypeError);
}

QueryPackage::QueryPackage() = default;

void QueryPackage::SetPlatform(const std::vector<OSInfo>& systems, const std::string& machineType)
{
    framework().velpak.systems = systems;
    framework().velpak.machineType = machineType;
}

bool QueryPackage::CheckIsVelpakSupport(const std::string& directory) const
{
    framework().velpak.directories.push_back(directory);
    if (framework().velpak.throws)
    {
        throw 42; // not even a standard exception
    }
    return framework().velpak.supported;
}

int GlobalConfig::GetConfigItem(const std::string& name, std::string& value)
{
    const auto found = framework().config.find(name);
    if (found == framework().config.end())
    {
        return 1;
    }
    value = found->second;
    return 0;
}
} // namespace XModule

bool IsCFCSystem::check(const UserContext& /*context*/) const
{
    return framework().systems.cfc;
}

SummaryReport::SummaryReport(const std::string& outputDir) : outputDir_(outputDir) {}

void SummaryReport::PushServiceResult(const std::string& action, int code, const std::string& message)
{
    services_.push_back({action, code, message});
}

void SummaryReport::PushSummaryResult(int code, const std::string& message)
{
    summary_ = {"summary", code, message};
}

void SummaryReport::GenerateReportFile() const
{
    fake::Summary written;
    written.outputDir = outputDir_;
    for (const Outcome& outcome : services_)
    {
        written.services.push_back({outcome.action, outcome.code, outcome.message});
    }
    written.totals.push_back({summary_.action, summary_.code, summary_.message});
    framework().summaries.push_back(written);
}
