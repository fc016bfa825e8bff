#pragma once

#include "service/update_compare.h"

#include <string>
#include <vector>

// Reports for tests of the comparison.
namespace reports
{
inline service::ScanItem item(const std::string& softwareId, const std::string& version, const std::string& id = "")
{
    service::ScanItem result;
    result.id = id.empty() ? softwareId : id;
    result.name = "Name of " + result.id;
    result.softwareId = softwareId;
    result.version = version;
    result.category = "Firmware";
    return result;
}

inline service::UpdateScanReport scan(const std::vector<service::ScanItem>& items)
{
    service::UpdateScanReport report;
    report.SetMT("7Y41");
    report.SetOS("PLATFORM");
    report.SetArch("64 bit");
    report.SetBmcType("PMX3");
    for (const service::ScanItem& entry : items)
    {
        report.AddScanResult(entry);
    }
    return report;
}

inline service::PackageInfo package(const std::string& id, const std::string& softwareId, const std::string& version)
{
    service::PackageInfo info;
    info.updateId = id;
    info.name = "Package " + id;
    info.component = softwareId;
    info.packageVersion = "Device Firmware Version " + version + "-[B1]";
    info.agentlessSupport = "true";
    service::PackageChild child;
    child.softwareId = softwareId;
    child.newVersion = version;
    info.children.push_back(child);
    return info;
}

inline service::QueryReport query(const std::vector<service::PackageInfo>& packages)
{
    service::QueryReport report;
    report.options.machineType = "7Y41";
    report.options.osType = 402;
    report.options.osArch = 2;
    report.options.scope = "latest";
    report.options.typeText = "all";
    report.options.typeCodes = {99};
    report.options.queryDir = "pkgs\\";
    report.options.remote = true;
    report.packages = packages;
    return report;
}

inline service::CompareReport compare(const service::UpdateScanReport& scanned, const service::QueryReport& queried,
                                      const service::CompareOptions& options = service::CompareOptions())
{
    service::ServiceUpdateCompare comparison(options);
    comparison.SetReports(scanned, queried);
    service::CompareReport report;
    report.scope = comparison.RunCompare(report).succeeded() ? report.scope : "FAILED";
    return report;
}

// "selected" or the reason's number, for each package.
inline std::vector<std::string> decisions(const service::CompareReport& report)
{
    std::vector<std::string> result;
    for (const service::ComparedPackage& package : report.packages)
    {
        const std::string& reason = package.unselectedReason;
        result.push_back(package.selected == 1 && reason.empty() ? "selected" : reason.substr(0, reason.find('-')));
    }
    return result;
}
} // namespace reports
