#include "compare_report_keys.h"
#include "repository/xml_text.h"
#include "result_codes.h"
#include "service/update_compare.h"
#include "text/text.h"
#include "update_services/report_xml.h"

#include <array>

namespace service
{
namespace
{
using update_services::ElementReader;

struct HeadField
{
    const char* element;
    std::string CompareReport::*member;
};

struct InfoField
{
    const char* element;
    std::string PackageInfo::*member;
};

struct UpdateField
{
    const char* element;
    std::string PackageChild::*member;
};

struct ChildField
{
    const char* element;
    std::string ComparedChild::*member;
};

constexpr std::array<HeadField, 7> kHeadFields{{{compare_key::kMt, &CompareReport::machineType},
                                                {compare_key::kBmcType, &CompareReport::bmcType},
                                                {compare_key::kOs, &CompareReport::os},
                                                {compare_key::kArch, &CompareReport::arch},
                                                {compare_key::kScope, &CompareReport::scope},
                                                {compare_key::kType, &CompareReport::type},
                                                {compare_key::kDirectory, &CompareReport::directory}}};

constexpr std::array<InfoField, 16> kInfoFields{{{compare_key::kName, &PackageInfo::name},
                                                 {compare_key::kComponent, &PackageInfo::component},
                                                 {compare_key::kSeverity, &PackageInfo::severity},
                                                 {compare_key::kSeverityDescription, &PackageInfo::severityDescription},
                                                 {compare_key::kReboot, &PackageInfo::reboot},
                                                 {compare_key::kRebootDescription, &PackageInfo::rebootDescription},
                                                 {compare_key::kMacroPackageId, &PackageInfo::macroPackageId},
                                                 {compare_key::kUpdateId, &PackageInfo::updateId},
                                                 {compare_key::kPackageVersion, &PackageInfo::packageVersion},
                                                 {compare_key::kRequisite, &PackageInfo::requisite},
                                                 {compare_key::kPrerequisite, &PackageInfo::prerequisite},
                                                 {compare_key::kCorequisite, &PackageInfo::corequisite},
                                                 {compare_key::kPayloadFile, &PackageInfo::payloadFile},
                                                 {compare_key::kPackageXml, &PackageInfo::packageXml},
                                                 {compare_key::kVelpakXml, &PackageInfo::velpakXml},
                                                 {compare_key::kCommandLine, &PackageInfo::commandLine}}};

constexpr std::array<UpdateField, 6> kUpdateFields{{{compare_key::kChildName, &PackageChild::softwareId},
                                                    {compare_key::kChildNewVersion, &PackageChild::newVersion},
                                                    {compare_key::kChildDescription, &PackageChild::description},
                                                    {compare_key::kChildCategory, &PackageChild::category},
                                                    {compare_key::kChildClassification, &PackageChild::classification},
                                                    {compare_key::kChildAdapterName, &PackageChild::adapterName}}};

constexpr std::array<ChildField, 4> kChildFields{{{compare_key::kChildInstalled, &ComparedChild::installedVersion},
                                                  {compare_key::kChildInstanceId, &ComparedChild::instanceId},
                                                  {compare_key::kChildSlotNumber, &ComparedChild::slotNumber},
                                                  {compare_key::kChildSlotType, &ComparedChild::slotType}}};

void writeChild(pugi::xml_node parent, const ComparedChild& child)
{
    const pugi::xml_node node = xml_text::append(parent, compare_key::kChildUpdate);
    for (const UpdateField& field : kUpdateFields)
    {
        xml_text::appendText(node, field.element, child.update.*field.member);
    }
    for (const ChildField& field : kChildFields)
    {
        xml_text::appendText(node, field.element, child.*field.member);
    }
    xml_text::appendInt(node, compare_key::kChildSelected, child.selected);
    xml_text::appendInt(node, compare_key::kChildCompareResult, static_cast<std::int32_t>(child.outcome));
    xml_text::appendText(node, compare_key::kChildUnselectedReason, child.unselectedReason);
}

void writePackage(pugi::xml_node parent, const ComparedPackage& package)
{
    const pugi::xml_node node = xml_text::append(parent, compare_key::kPackage);
    for (const InfoField& field : kInfoFields)
    {
        xml_text::appendText(node, field.element, package.package.*field.member);
    }
    const pugi::xml_node children = xml_text::append(node, compare_key::kChildUpdates);
    for (const ComparedChild& child : package.children)
    {
        writeChild(children, child);
    }
    xml_text::appendText(node, compare_key::kAlsoSelect, package.alsoSelect);
    xml_text::appendText(node, compare_key::kAlsoDeselect, package.alsoDeselect);
    xml_text::appendInt(node, compare_key::kForceId, package.forceId);
    xml_text::appendInt(node, compare_key::kSelected, package.selected);
    xml_text::appendInt(node, compare_key::kCompareResult, static_cast<std::int32_t>(package.outcome));
    xml_text::appendText(node, compare_key::kUnselectedReason, package.unselectedReason);
    xml_text::appendText(node, compare_key::kSupersede, package.package.supersede);
    xml_text::appendInt(node, compare_key::kFlashOrder, package.flashOrder);
    xml_text::appendText(node, compare_key::kAgentlessSupport, package.package.agentlessSupport);
}

void readOutcome(ElementReader& reader, const char* name, VersionOutcome& outcome)
{
    std::int32_t value = 0;
    reader.integer(name, value);
    if (value < static_cast<std::int32_t>(VersionOutcome::Same) ||
        value > static_cast<std::int32_t>(VersionOutcome::NotComparable))
    {
        reader.fail(name, "is no outcome of a comparison");
        return;
    }
    outcome = static_cast<VersionOutcome>(value);
}

ComparedChild readChild(const pugi::xml_node& node, std::string& error)
{
    ElementReader reader(node, error);
    ComparedChild child;
    for (const UpdateField& field : kUpdateFields)
    {
        reader.text(field.element, child.update.*field.member);
    }
    for (const ChildField& field : kChildFields)
    {
        reader.text(field.element, child.*field.member);
    }
    reader.integer(compare_key::kChildSelected, child.selected);
    readOutcome(reader, compare_key::kChildCompareResult, child.outcome);
    child.unselectedReason = xml_text::textOf(node.child(compare_key::kChildUnselectedReason));
    return child;
}

ComparedPackage readPackage(const pugi::xml_node& node, std::string& error)
{
    ElementReader reader(node, error);
    ComparedPackage package;
    for (const InfoField& field : kInfoFields)
    {
        reader.text(field.element, package.package.*field.member);
    }
    for (const pugi::xml_node& child : reader.child(compare_key::kChildUpdates).children(compare_key::kChildUpdate))
    {
        package.children.push_back(readChild(child, error));
    }
    reader.text(compare_key::kAlsoSelect, package.alsoSelect);
    reader.text(compare_key::kAlsoDeselect, package.alsoDeselect);
    reader.integer(compare_key::kForceId, package.forceId);
    reader.integer(compare_key::kSelected, package.selected);
    readOutcome(reader, compare_key::kCompareResult, package.outcome);
    reader.text(compare_key::kUnselectedReason, package.unselectedReason);
    reader.text(compare_key::kSupersede, package.package.supersede);
    reader.integer(compare_key::kFlashOrder, package.flashOrder);
    reader.text(compare_key::kAgentlessSupport, package.package.agentlessSupport);
    return package;
}

CompareReport readReport(const pugi::xml_node& root, std::string& error)
{
    ElementReader rootReader(root, error);
    ElementReader reader(rootReader.child(compare_key::kContent), error);
    CompareReport report;
    for (const HeadField& field : kHeadFields)
    {
        reader.text(field.element, report.*field.member);
    }
    reader.flag(compare_key::kIsPartition, report.partition);
    std::int32_t total = 0;
    reader.integer(compare_key::kTotal, total);
    for (const pugi::xml_node& node : reader.child(compare_key::kPackages).children(compare_key::kPackage))
    {
        report.packages.push_back(readPackage(node, error));
    }
    return report;
}
} // namespace

KorvanResult SerializeCompareReport::SaveToXml(const CompareReport& report, const std::string& path)
{
    pugi::xml_document document;
    const pugi::xml_node root = document.append_child(compare_key::kRoot);
    xml_text::appendText(root, compare_key::kXmlVersion, update_services::kReportVersion);
    const pugi::xml_node content = xml_text::append(root, compare_key::kContent);
    for (const HeadField& field : kHeadFields)
    {
        xml_text::appendText(content, field.element, report.*field.member);
    }
    xml_text::appendInt(content, compare_key::kIsPartition, report.partition ? 1 : 0);
    xml_text::appendInt(content, compare_key::kTotal, static_cast<std::int64_t>(report.packages.size()));
    const pugi::xml_node packages = xml_text::append(content, compare_key::kPackages);
    for (const ComparedPackage& package : report.packages)
    {
        writePackage(packages, package);
    }
    std::string error;
    if (!update_services::saveReport(document, path, error))
    {
        return KorvanResult(result_code::kFailedWriteFile, GetErrorMessage(result_code::kFailedWriteFile) + " " +
                                                               text::visible(path) + ": " + error + ".");
    }
    return KorvanResult();
}

KorvanResult SerializeCompareReport::LoadFromXml(const std::string& path, CompareReport& report)
{
    pugi::xml_document document;
    std::string error;
    std::uint32_t code = update_services::openReport(path, compare_key::kRoot, document, error);
    if (code == result_code::kSucceed)
    {
        CompareReport loaded = readReport(document.child(compare_key::kRoot), error);
        if (error.empty())
        {
            report = std::move(loaded);
            return KorvanResult();
        }
        error = text::visible(path) + ": " + error;
        code = result_code::kUpdateIncompatibleReports;
    }
    return KorvanResult(code, GetErrorMessage(code) + " " + error + ".");
}
} // namespace service
