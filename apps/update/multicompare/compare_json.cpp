#include "compare_json.h"

#include "compare_report_keys.h"

#include <boost/filesystem/operations.hpp>
#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include <sstream>

namespace
{
namespace fs = boost::filesystem;
using Tree = boost::property_tree::ptree;

constexpr char kHost[] = "HOST";
constexpr char kInstalled[] = "CINSTALLED";
constexpr char kUndetectedDevice[] = "Undetected Device";

// How deep a host object stands below the file's root, in blanks of the pretty printer.
constexpr char kHostIndent[] = "        ";

Tree buildChildJson(const CompareChildUpdate& child)
{
    Tree node;
    node.put(compare_key::kChildAdapterName, child.adapterName);
    node.put(compare_key::kChildName, child.name);
    node.put(compare_key::kChildCategory, child.category);
    node.put(compare_key::kChildInstanceId, child.instanceId);
    node.put(compare_key::kChildNewVersion, child.newVersion);
    node.put(compare_key::kChildInstalled, child.installedVersion);
    node.put(compare_key::kChildDescription, child.description);
    node.put(compare_key::kChildSlotNumber, child.slotNumber);
    node.put(compare_key::kChildSlotType, child.slotType);
    node.put(compare_key::kChildClassification, child.classification);
    node.put(compare_key::kChildCompareResult, child.compareResult);
    node.put(compare_key::kChildSelected, child.selected);
    return node;
}

void putPackageTexts(const ComparePackage& package, Tree& node)
{
    node.put(compare_key::kName, package.name);
    node.put(compare_key::kComponent, package.component);
    node.put(compare_key::kSeverity, package.severity);
    node.put(compare_key::kSeverityDescription, package.severityDescription);
    node.put(compare_key::kReboot, package.reboot);
    node.put(compare_key::kRebootDescription, package.rebootDescription);
    node.put(compare_key::kUpdateId, package.updateId);
    node.put(compare_key::kPackageVersion, package.packageVersion);
    node.put(compare_key::kRequisite, package.requisite);
    node.put(compare_key::kPrerequisite, package.prerequisite);
    node.put(compare_key::kCorequisite, package.corequisite);
    node.put(compare_key::kPackageXml, package.packageXml);
    node.put(compare_key::kVelpakXml, package.velpakXml);
    node.put(compare_key::kPayloadFile, package.payloadFile);
    node.put(compare_key::kCommandLine, package.commandLine);
}

void putChildren(const ComparePackage& package, const std::string& bmcType, Tree& node)
{
    const std::string childPath = std::string(compare_key::kChildUpdates) + "." + compare_key::kChildUpdate;
    for (const CompareChildUpdate& child : package.children)
    {
        if (!child.undetected())
        {
            node.add_child(childPath, buildChildJson(child));
        }
    }
    if (package.undetected())
    {
        node.put(compare_key::kChildUpdates, "");
        const bool deviceWording = bmcType == "AMD" || bmcType == "AMI";
        node.put(kInstalled, deviceWording ? kUndetectedDevice : compare_key::kUndetected);
    }
}

// The pretty printer's text of one host, moved to where it stands in the whole file. Line ends inside texts are escaped,
// so every line end is the printer's own.
std::string indented(const Tree& host)
{
    std::ostringstream plain;
    boost::property_tree::write_json(plain, host, true);
    std::istringstream lines(plain.str());
    std::string result;
    for (std::string line; std::getline(lines, line);)
    {
        result += result.empty() ? "" : "\n";
        result += kHostIndent + line;
    }
    return result;
}
} // namespace

Tree BuildHostJson(const std::string& host, const CompareHeader& header)
{
    Tree node;
    node.put(kHost, host);
    node.put(compare_key::kMt, header.machineType);
    node.put(compare_key::kBmcType, header.bmcType);
    node.put(compare_key::kOs, header.os);
    node.put(compare_key::kArch, header.arch);
    node.put(compare_key::kScope, header.scope);
    node.put(compare_key::kType, header.type);
    node.put(compare_key::kDirectory, header.directory);
    node.put(compare_key::kIsPartition, header.isPartition);
    node.put(compare_key::kTotal, header.total);
    return node;
}

Tree BuildPackageJson(const ComparePackage& package, const std::string& bmcType)
{
    Tree node;
    putPackageTexts(package, node);
    putChildren(package, bmcType, node);
    node.put(compare_key::kAlsoSelect, package.alsoSelect);
    node.put(compare_key::kAlsoDeselect, package.alsoDeselect);
    node.put(compare_key::kSelected, package.selected);
    node.put(compare_key::kForceId, package.forceId);
    node.put(compare_key::kCompareResult, package.compareResult);
    node.put(compare_key::kSupersede, package.supersede);
    node.put(compare_key::kUnselectedReason, package.unselectedReason);
    node.put(compare_key::kFlashOrder, package.flashOrder);
    node.put(compare_key::kAgentlessSupport, package.agentlessSupport);
    return node;
}

// A name of its own for each run, so that two runs over one output directory do not write into one file.
CompareJsonFile::CompareJsonFile(const std::string& path)
    : path_(path), temporaryPath_(fs::unique_path(path + ".%%%%-%%%%-%%%%.tmp").string())
{
}

CompareJsonFile::~CompareJsonFile()
{
    if (opened_ && !committed_)
    {
        file_.close();
        boost::system::error_code ignored;
        fs::remove(temporaryPath_, ignored);
    }
}

void CompareJsonFile::fail(const std::string& reason)
{
    if (failure_.empty())
    {
        failure_ = reason;
    }
}

void CompareJsonFile::open()
{
    file_.open(temporaryPath_, std::ios::binary | std::ios::trunc);
    opened_ = file_.is_open();
    if (opened_)
    {
        file_ << "{\n    \"" << compare_key::kRoot << "\": [\n";
    }
    else
    {
        fail("cannot open file");
    }
}

void CompareJsonFile::AddHost(const Tree& host)
{
    const bool first = !opened_;
    if (first && failure_.empty())
    {
        open();
    }
    if (!failure_.empty())
    {
        return;
    }
    try
    {
        file_ << (first ? "" : ",\n") << indented(host);
    }
    catch (const boost::property_tree::json_parser_error& error)
    {
        fail(error.message());
    }
    if (!file_)
    {
        fail("write error");
    }
}

void CompareJsonFile::Commit()
{
    if (failure_.empty())
    {
        file_ << "\n    ]\n}\n";
        file_.close();
        if (!file_)
        {
            fail("write error");
        }
    }
    if (failure_.empty())
    {
        boost::system::error_code error;
        fs::rename(temporaryPath_, path_, error);
        committed_ = !error;
        if (error)
        {
            boost::system::error_code ignored;
            fail(fs::is_directory(path_, ignored) ? "cannot open file" : "write error");
        }
    }
    if (!failure_.empty())
    {
        throw boost::property_tree::json_parser_error(failure_, path_, 0);
    }
}
