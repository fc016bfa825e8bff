#include "repository/package_descriptor.h"

#include "files/entries.h"
#include "os_names.h"
#include "repository/package_fields.h"
#include "repository/xml_text.h"
#include "text/text.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <stdexcept>

namespace repository
{
namespace
{
constexpr std::uint32_t kUnknownCode = static_cast<std::uint32_t>(-1);
constexpr char kVelpakElement[] = "VELPAK";
constexpr char kAppliesToElement[] = "APPLIESTO";
constexpr char kAny[] = "*";

// A rule of the format that the file breaks. Does not leave readDescriptor.
class FormatError : public std::runtime_error
{
  public:
    FormatError(std::size_t line, const std::string& reason) : std::runtime_error(reason), line_(line) {}

    std::size_t line() const { return line_; }

  private:
    std::size_t line_;
};

// The file being read, and what is found wrong with it.
struct Source
{
    const std::string& content;
    Descriptor& descriptor;

    [[noreturn]] void fail(const pugi::xml_node& node, const std::string& reason) const
    {
        throw FormatError(xml_text::lineOf(node, content), "<" + text::visible(node.name()) + ">: " + reason);
    }

    void warn(const pugi::xml_node& node, const std::string& text) const
    {
        descriptor.warnings.push_back(text);
        descriptor.problems.push_back({xml_text::lineOf(node, content), false, text});
    }

    void record(const FormatError& error) const
    {
        std::vector<Problem>& problems = descriptor.problems;
        const auto same = [&error](const Problem& problem)
        { return problem.line == error.line() && problem.text == error.what(); };
        if (std::none_of(problems.begin(), problems.end(), same))
        {
            problems.push_back({error.line(), true, error.what()});
        }
    }

    // Goes on behind a broken rule, so that a user sees all of them at once; a file full of them is given up.
    template <class Step>
    void attempt(Step step) const
    {
        try
        {
            step();
        }
        catch (const FormatError& error)
        {
            if (descriptor.problems.size() + 1 >= kMaxProblems)
            {
                throw;
            }
            record(error);
        }
    }
};

std::string readText(const Source& source, const pugi::xml_node& node)
{
    // Character references may spell what the bytes may not hold.
    std::string value = text::validXml(text::trim(xml_text::textOf(node)));
    if (value.size() > kMaxTextBytes)
    {
        source.fail(node, "longer than " + std::to_string(kMaxTextBytes) + " bytes");
    }
    return value;
}

std::string readRequired(const Source& source, const pugi::xml_node& parent, const char* name)
{
    const pugi::xml_node node = parent.child(name);
    std::string value = readText(source, node);
    if (value.empty())
    {
        source.fail(node ? node : parent, std::string("the element ") + name + " is missing or empty");
    }
    return value;
}

bool isIdCharacter(char character)
{
    const bool letter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    const bool digit = character >= '0' && character <= '9';
    return letter || digit || std::string("._-+~()").find(character) != std::string::npos;
}

void checkId(const Source& source, const pugi::xml_node& node, const std::string& id)
{
    if (id.empty() || id.size() > kMaxIdBytes || !std::all_of(id.begin(), id.end(), isIdCharacter))
    {
        source.fail(node, "\"" + text::visible(id.substr(0, kMaxIdBytes)) +
                              "\" is no update id (1 to 256 letters, digits and . _ - + ~ ( ) )");
    }
}

std::string readIdList(const Source& source, const pugi::xml_node& node)
{
    // Lists may be long, so the limit is on their entries and not on their text.
    const std::vector<std::string> ids = idList(xml_text::textOf(node));
    if (ids.size() > kMaxListEntries)
    {
        source.fail(node, "more than " + std::to_string(kMaxListEntries) + " entries");
    }
    for (const std::string& id : ids)
    {
        source.attempt([&] { checkId(source, node, id); });
    }
    return text::join(ids, ",");
}

bool readBool(const Source& source, const pugi::xml_node& parent, const char* name, bool absent)
{
    const pugi::xml_node node = parent.child(name);
    const std::string value = text::toLower(readText(source, node));
    if (value.empty())
    {
        return absent;
    }
    if (value != "true" && value != "false")
    {
        source.fail(node, "neither true nor false");
    }
    return value == "true";
}

void addMachineType(const std::string& value, Applicability& result)
{
    if (value == kAny)
    {
        result.anyMachineType = true;
        return;
    }
    result.machineTypes.push_back(text::toUpper(value));
}

void addOs(const Source& source, const pugi::xml_node& node, const std::string& value, Applicability& result)
{
    if (value == kAny)
    {
        result.anyOs = true;
        return;
    }
    const std::uint32_t code = GetOsTypeCode(value);
    if (code == kUnknownCode)
    {
        source.warn(node, "unknown operating system \"" + text::visible(value) + "\" ignored");
        return;
    }
    result.systems.push_back({code, text::trim(node.attribute("minor").value())});
}

void addArch(const Source& source, const pugi::xml_node& node, const std::string& value, Applicability& result)
{
    if (value == kAny)
    {
        result.anyArch = true;
        return;
    }
    const std::uint32_t code = GetOsArchCode(value);
    if (code == kUnknownCode)
    {
        source.warn(node, "unknown architecture \"" + text::visible(value) + "\" ignored");
        return;
    }
    result.archCodes.push_back(code);
}

Applicability readApplicability(const Source& source, const pugi::xml_node& root)
{
    const pugi::xml_node node = root.child(kAppliesToElement);
    if (!node)
    {
        source.fail(root, "the element APPLIESTO is missing");
    }
    Applicability result;
    std::size_t entries = 0;
    for (const pugi::xml_node& entry : node.children())
    {
        const std::string name = entry.name();
        std::string value;
        source.attempt([&] { value = readText(source, entry); });
        if (value.empty())
        {
            continue;
        }
        if (++entries > kMaxListEntries)
        {
            source.fail(node, "more than " + std::to_string(kMaxListEntries) + " entries");
        }
        if (name == "MACHINETYPE")
        {
            addMachineType(value, result);
        }
        else if (name == "OS")
        {
            addOs(source, entry, value, result);
        }
        else if (name == "ARCH")
        {
            addArch(source, entry, value, result);
        }
    }
    for (const char* name : {"MACHINETYPE", "OS", "ARCH"})
    {
        source.attempt([&] { readRequired(source, node, name); });
    }
    return result;
}

service::PackageChild readChild(const Source& source, const pugi::xml_node& node)
{
    service::PackageChild child;
    for (const ChildTextField& field : childTextFields())
    {
        source.attempt([&] { child.*field.member = readText(source, node.child(field.element)); });
    }
    source.attempt([&] { readRequired(source, node, "SOFTWAREID"); });
    source.attempt([&] { readRequired(source, node, "NEWVERSION"); });
    source.attempt([&] { child.hexVersion = readBool(source, node, kHexVersionElement, false); });
    return child;
}

void readChildren(const Source& source, const pugi::xml_node& root, service::PackageInfo& info)
{
    for (const pugi::xml_node& node : root.child(kChildrenElement).children(kChildElement))
    {
        if (info.children.size() == kMaxChildren)
        {
            source.fail(node, "more than " + std::to_string(kMaxChildren) + " child updates");
        }
        info.children.push_back(readChild(source, node));
    }
    if (info.children.empty())
    {
        source.fail(root, "no child update; add CHILDREN with at least one CHILD");
    }
}

bool isPlainFileName(const std::string& name)
{
    return name.find_first_of("/\\:") == std::string::npos && name != "." && name != "..";
}

bool isSha256(const std::string& digest)
{
    return digest.size() == 64 && digest.find_first_not_of("0123456789abcdef") == std::string::npos;
}

void checkPayloadOnDisk(const Source& source, const std::string& directory, const service::PackageInfo& info)
{
    if (info.payloadFile.empty())
    {
        return;
    }
    const files::Entry payload = files::lookAt((std::filesystem::path(directory) / info.payloadFile).string());
    if (payload.kind != files::Kind::RegularFile)
    {
        source.descriptor.warnings.push_back("the payload " + text::visible(info.payloadFile) + " is missing");
    }
    else if (info.payloadSize != 0 && payload.size != info.payloadSize)
    {
        source.descriptor.warnings.push_back("the payload " + text::visible(info.payloadFile) + " has " +
                                             std::to_string(payload.size) + " bytes instead of " +
                                             std::to_string(info.payloadSize));
    }
}

void readPayloadSize(const Source& source, const pugi::xml_node& node, service::PackageInfo& info)
{
    const std::string size = readText(source, node);
    if (!size.empty() && !xml_text::parseUnsigned(size, info.payloadSize))
    {
        source.fail(node, "no decimal number of bytes");
    }
}

void readPayload(const Source& source, const pugi::xml_node& root, const std::string& directory,
                 service::PackageInfo& info)
{
    if (!isPlainFileName(info.payloadFile))
    {
        source.fail(root.child("PAYLOADFILE"), "must be the name of a file beside the descriptor, without a path");
    }
    info.payloadSha256 = text::toLower(info.payloadSha256);
    if (!info.payloadSha256.empty() && !isSha256(info.payloadSha256))
    {
        source.attempt([&] { source.fail(root.child("PAYLOADSHA256"), "no SHA-256 digest of 64 hexadecimal digits"); });
    }
    readPayloadSize(source, root.child(kPayloadSizeElement), info);
    checkPayloadOnDisk(source, directory, info);
}

bool isIdListField(const std::string& element)
{
    return element == "REQUISITE" || element == "PREREQUISITE" || element == "COREQUISITE" || element == "SUPERSEDE";
}

std::int32_t readType(const Source& source, const pugi::xml_node& root)
{
    const std::string type = readRequired(source, root, kTypeElement);
    const std::int32_t code = typeCode(text::toLower(type));
    if (code == 0)
    {
        source.fail(root.child(kTypeElement), "\"" + text::visible(type) + "\" is none of fw, dd, mm, sw");
    }
    return code;
}

Package readPackage(const Source& source, const pugi::xml_node& root, const std::string& directory,
                    const std::string& fileName)
{
    Package package;
    service::PackageInfo& info = package.info;
    for (const PackageTextField& field : packageTextFields())
    {
        const pugi::xml_node node = root.child(field.element);
        source.attempt(
            [&]
            { info.*field.member = isIdListField(field.element) ? readIdList(source, node) : readText(source, node); });
    }
    source.attempt(
        [&] { checkId(source, root.child(kUpdateIdElement) ? root.child(kUpdateIdElement) : root, info.updateId); });
    source.attempt([&] { readRequired(source, root, "NAME"); });
    source.attempt([&] { readRequired(source, root, "PKGVERSION"); });
    info.packageVersion = versionPhrase(info.name, info.packageVersion);
    source.attempt([&] { info.type = readType(source, root); });
    source.attempt([&]
                   { info.agentlessSupport = readBool(source, root, "AGENTLESSSUPPORT", true) ? "true" : "false"; });
    info.packageXml = text::validXml(fileName);
    info.velpakXml.clear();
    source.attempt([&] { readPayload(source, root, directory, info); });
    source.attempt([&] { readChildren(source, root, info); });
    source.attempt([&] { package.appliesTo = readApplicability(source, root); });
    return package;
}

void readUpdateIds(const Source& source, const pugi::xml_node& root, Velpak& velpak)
{
    std::set<std::string> seen;
    const pugi::xml_node list = root.child("UPDATEIDS");
    for (const pugi::xml_node& node : list.children(kUpdateIdElement))
    {
        if (seen.size() == kMaxListEntries)
        {
            source.fail(node, "more than " + std::to_string(kMaxListEntries) + " update ids");
        }
        source.attempt(
            [&]
            {
                const std::string id = readText(source, node);
                checkId(source, node, id);
                if (seen.insert(id).second)
                {
                    velpak.updateIds.push_back(id);
                }
            });
    }
    if (!list.child(kUpdateIdElement))
    {
        source.fail(root, "no update id; add UPDATEIDS with at least one UPDATEID");
    }
}

Velpak readVelpak(const Source& source, const pugi::xml_node& root, const std::string& fileName)
{
    Velpak velpak;
    source.attempt([&] { velpak.id = readRequired(source, root, "ID"); });
    source.attempt([&] { velpak.releaseDate = readText(source, root.child("RELEASEDATE")); });
    velpak.file = text::validXml(fileName);
    source.attempt([&] { velpak.appliesTo = readApplicability(source, root); });
    source.attempt([&] { readUpdateIds(source, root, velpak); });
    return velpak;
}

void readRoot(const Source& source, const pugi::xml_node& root, const std::string& directory,
              const std::string& fileName, Descriptor& result)
{
    const std::string name = root.name();
    if (name == kPackageElement)
    {
        result.package = readPackage(source, root, directory, fileName);
        result.kind = DescriptorKind::Package;
    }
    else if (name == kVelpakElement)
    {
        result.velpak = readVelpak(source, root, fileName);
        result.kind = DescriptorKind::Velpak;
    }
    else
    {
        result.kind = DescriptorKind::Foreign;
        result.error = "the root element is <" + text::visible(name) + ">, neither <PACKAGE> nor <VELPAK>";
    }
}
} // namespace

Descriptor readDescriptor(const std::string& directory, const std::string& fileName)
{
    Descriptor result;
    pugi::xml_document document;
    std::string content;
    xml_text::LoadTrouble trouble;
    const std::string path = (std::filesystem::path(directory) / fileName).string();
    const Source source{content, result};
    if (xml_text::load(path, kMaxDescriptorBytes, document, content, trouble) != xml_text::LoadOutcome::Ok)
    {
        result.problems.push_back({trouble.line, true, trouble.text});
    }
    else
    {
        try
        {
            readRoot(source, document.document_element(), directory, fileName, result);
        }
        catch (const FormatError& error)
        {
            source.record(error);
        }
    }
    const auto broken = std::find_if(result.problems.begin(), result.problems.end(),
                                     [](const Problem& problem) { return problem.breaks; });
    if (broken != result.problems.end())
    {
        result.kind = DescriptorKind::Broken;
        result.error =
            (broken->line == 0 ? std::string() : "line " + std::to_string(broken->line) + ": ") + broken->text;
    }
    return result;
}
} // namespace repository
