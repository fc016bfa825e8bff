#include "compare_report_reader.h"

#include "compare_report_keys.h"
#include "file_names.h"

#include <boost/algorithm/string/erase.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <cstddef>
#include <fstream>

namespace
{
namespace fs = boost::filesystem;
using Tree = boost::property_tree::ptree;

// A report nests six elements. The XML reader calls itself for each level, so a hostile file could exhaust the stack.
constexpr std::size_t kDeepestElement = 1000;

std::string textOf(const Tree& node, const std::string& key)
{
    return node.get_child(key).get_value<std::string>();
}

std::int32_t numberOf(const Tree& node, const std::string& key)
{
    return node.get_child(key).get_value<std::int32_t>();
}

std::string optionalText(const Tree& node, const char* key)
{
    const auto child = node.get_child_optional(key);
    return child ? child->get_value<std::string>() : std::string();
}

std::string contentKey(const char* key)
{
    return std::string(compare_key::kRoot) + "." + compare_key::kContent + "." + key;
}

// Older writers say SELECTED in the child too; a child that says neither is selected.
std::int32_t childSelected(const Tree& node)
{
    for (const char* key : {compare_key::kChildSelected, compare_key::kSelected})
    {
        const auto child = node.get_child_optional(key);
        if (child)
        {
            return child->get_value<std::int32_t>();
        }
    }
    return 1;
}

CompareChildUpdate readChild(const Tree& node)
{
    CompareChildUpdate child;
    child.name = textOf(node, compare_key::kChildName);
    child.newVersion = textOf(node, compare_key::kChildNewVersion);
    child.installedVersion = textOf(node, compare_key::kChildInstalled);
    child.description = textOf(node, compare_key::kChildDescription);
    child.category = optionalText(node, compare_key::kChildCategory);
    child.instanceId = optionalText(node, compare_key::kChildInstanceId);
    child.slotNumber = optionalText(node, compare_key::kChildSlotNumber);
    child.slotType = optionalText(node, compare_key::kChildSlotType);
    child.classification = optionalText(node, compare_key::kChildClassification);
    child.selected = childSelected(node);
    child.adapterName = optionalText(node, compare_key::kChildAdapterName);
    child.compareResult = numberOf(node, compare_key::kChildCompareResult);
    return child;
}

void readLeadingTexts(const Tree& node, ComparePackage& package)
{
    package.name = textOf(node, compare_key::kName);
    package.component = textOf(node, compare_key::kComponent);
    package.severity = textOf(node, compare_key::kSeverity);
    package.severityDescription = textOf(node, compare_key::kSeverityDescription);
    package.reboot = textOf(node, compare_key::kReboot);
    package.rebootDescription = textOf(node, compare_key::kRebootDescription);
    package.macroPackageId = textOf(node, compare_key::kMacroPackageId);
    package.updateId = textOf(node, compare_key::kUpdateId);
    package.packageVersion = textOf(node, compare_key::kPackageVersion);
    package.requisite = textOf(node, compare_key::kRequisite);
    package.prerequisite = textOf(node, compare_key::kPrerequisite);
    package.corequisite = textOf(node, compare_key::kCorequisite);
    package.payloadFile = textOf(node, compare_key::kPayloadFile);
    package.packageXml = textOf(node, compare_key::kPackageXml);
    package.velpakXml = textOf(node, compare_key::kVelpakXml);
    package.commandLine = textOf(node, compare_key::kCommandLine);
}

// The name comes first: what else lies below the directory is not looked at, so it can do no harm.
bool isReport(const fs::path& path, const std::vector<std::string>& names)
{
    boost::system::error_code unknown;
    return std::find(names.begin(), names.end(), path.filename().string()) != names.end() &&
           fs::is_regular_file(path, unknown);
}
} // namespace

std::vector<std::string> FindCompareReports(const std::string& outputDirectory, const std::vector<std::string>& names)
{
    const fs::path top(outputDirectory);
    boost::system::error_code unknown;
    if (fs::is_regular_file(top, unknown))
    {
        return {outputDirectory};
    }
    std::vector<fs::path> found;
    if (fs::is_directory(top, unknown))
    {
        fs::recursive_directory_iterator entry(top);
        while (entry != fs::recursive_directory_iterator())
        {
            const fs::path current = entry->path();
            if (isReport(current, names))
            {
                found.push_back(current);
            }
            boost::system::error_code error;
            entry.increment(error);
            if (error)
            {
                // The iterator's own exception would not say which directory it was.
                throw fs::filesystem_error("cannot read the directory", current, error);
            }
        }
    }
    // The walk's own order differs from file system to file system.
    std::sort(found.begin(), found.end());
    std::vector<std::string> paths;
    paths.reserve(found.size());
    for (const fs::path& path : found)
    {
        paths.push_back(path.string());
    }
    return paths;
}

bool NestsTooDeeply(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::size_t depth = 0;
    char previous = '\0';
    for (char current = '\0'; file.get(current); previous = current)
    {
        if (previous == '<')
        {
            const bool opens = current != '/' && current != '!' && current != '?';
            depth += opens ? 1 : 0;
            depth -= current == '/' && depth > 0 ? 1 : 0;
        }
        depth -= previous == '/' && current == '>' && depth > 0 ? 1 : 0;
        if (depth > kDeepestElement)
        {
            return true;
        }
    }
    return false;
}

std::string HostOfReport(const std::string& reportPath)
{
    std::string host = fs::path(reportPath).parent_path().filename().string();
    boost::algorithm::ierase_first(host, file_name::kSuccessPrefix);
    boost::algorithm::ierase_first(host, file_name::kFailurePrefix);
    return host;
}

CompareHeader ReadCompareHeader(const Tree& report)
{
    // Read for its presence alone: a file without it is not a report.
    textOf(report, std::string(compare_key::kRoot) + "." + compare_key::kXmlVersion);
    CompareHeader header;
    header.bmcType = textOf(report, contentKey(compare_key::kBmcType));
    header.machineType = textOf(report, contentKey(compare_key::kMt));
    header.os = textOf(report, contentKey(compare_key::kOs));
    header.arch = textOf(report, contentKey(compare_key::kArch));
    header.scope = textOf(report, contentKey(compare_key::kScope));
    header.type = textOf(report, contentKey(compare_key::kType));
    header.directory = textOf(report, contentKey(compare_key::kDirectory));
    header.isPartition = numberOf(report, contentKey(compare_key::kIsPartition));
    header.total = numberOf(report, contentKey(compare_key::kTotal));
    return header;
}

const Tree& PackagesNode(const Tree& report)
{
    return report.get_child(contentKey(compare_key::kPackages));
}

ComparePackage ReadComparePackage(const Tree& packageNode)
{
    ComparePackage package;
    readLeadingTexts(packageNode, package);
    for (const Tree::value_type& child : packageNode.get_child(compare_key::kChildUpdates))
    {
        package.children.push_back(readChild(child.second));
    }
    package.alsoSelect = textOf(packageNode, compare_key::kAlsoSelect);
    package.alsoDeselect = textOf(packageNode, compare_key::kAlsoDeselect);
    package.selected = numberOf(packageNode, compare_key::kSelected);
    package.compareResult = numberOf(packageNode, compare_key::kCompareResult);
    package.supersede = textOf(packageNode, compare_key::kSupersede);
    package.unselectedReason = textOf(packageNode, compare_key::kUnselectedReason);
    package.flashOrder = numberOf(packageNode, compare_key::kFlashOrder);
    package.agentlessSupport = textOf(packageNode, compare_key::kAgentlessSupport);
    package.forceId = numberOf(packageNode, compare_key::kForceId);
    return package;
}
