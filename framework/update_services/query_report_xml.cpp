#include "repository/package_fields.h"
#include "repository/xml_text.h"
#include "result_codes.h"
#include "service/update_query.h"
#include "text/text.h"
#include "update_services/report_xml.h"
#include "xmodule_log.h"

#include <array>

namespace service
{
namespace
{
using update_services::ElementReader;

constexpr char kSource[] = "framework/update_services/query_report_xml";
constexpr char kRoot[] = "QUERY";
constexpr char kVersion[] = "XMLVERSION";
constexpr char kOptions[] = "OPTIONS";
constexpr char kOsType[] = "OSTYPE";
constexpr char kOsArch[] = "OSARCH";
constexpr char kTypeCodes[] = "TYPECODES";
constexpr char kTypeCode[] = "TYPECODE";
constexpr char kId[] = "ID";
constexpr char kPackages[] = "PACKAGES";

struct TextField
{
    const char* element;
    std::string QueryOptions::*member;
};

struct ListField
{
    const char* element;
    std::vector<std::string> QueryOptions::*member;
};

struct FlagField
{
    const char* element;
    bool QueryOptions::*member;
};

constexpr std::array<TextField, 6> kTextFields{{{"OSMINORVERSION", &QueryOptions::osMinorVersion},
                                                {"BMCTYPE", &QueryOptions::bmcType},
                                                {"DIRECTORY", &QueryOptions::queryDir},
                                                {"MT", &QueryOptions::machineType},
                                                {"SCOPE", &QueryOptions::scope},
                                                {"TYPE", &QueryOptions::typeText}}};

constexpr std::array<ListField, 3> kListFields{{{"INCLUDEIDS", &QueryOptions::includeIds},
                                                {"EXCLUDEIDS", &QueryOptions::excludeIds},
                                                {"FORCEIDS", &QueryOptions::forceIds}}};

constexpr std::array<FlagField, 5> kFlagFields{{{"NOREQ", &QueryOptions::noReq},
                                                {"IGNOREMTOSCHECK", &QueryOptions::ignoreMtOsCheck},
                                                {"FORCEALL", &QueryOptions::forceAll},
                                                {"REMOTE", &QueryOptions::remote},
                                                {"BACKUP", &QueryOptions::backup}}};

void writeOptions(pugi::xml_node root, const QueryOptions& options)
{
    const pugi::xml_node node = xml_text::append(root, kOptions);
    xml_text::appendInt(node, kOsType, options.osType);
    xml_text::appendInt(node, kOsArch, options.osArch);
    for (const TextField& field : kTextFields)
    {
        xml_text::appendText(node, field.element, options.*field.member);
    }
    const pugi::xml_node codes = xml_text::append(node, kTypeCodes);
    for (const std::int32_t code : options.typeCodes)
    {
        xml_text::appendInt(codes, kTypeCode, code);
    }
    for (const ListField& field : kListFields)
    {
        const pugi::xml_node list = xml_text::append(node, field.element);
        for (const std::string& id : options.*field.member)
        {
            xml_text::appendText(list, kId, id);
        }
    }
    for (const FlagField& field : kFlagFields)
    {
        xml_text::appendInt(node, field.element, options.*field.member ? 1 : 0);
    }
}

void writePackage(pugi::xml_node packages, const PackageInfo& info)
{
    const pugi::xml_node node = xml_text::append(packages, repository::kPackageElement);
    for (const repository::PackageTextField& field : repository::packageTextFields())
    {
        xml_text::appendText(node, field.element, info.*field.member);
    }
    xml_text::appendText(node, repository::kPayloadSizeElement, std::to_string(info.payloadSize));
    xml_text::appendInt(node, repository::kTypeElement, info.type);
    const pugi::xml_node children = xml_text::append(node, repository::kChildrenElement);
    for (const PackageChild& child : info.children)
    {
        const pugi::xml_node childNode = xml_text::append(children, repository::kChildElement);
        for (const repository::ChildTextField& field : repository::childTextFields())
        {
            xml_text::appendText(childNode, field.element, child.*field.member);
        }
        xml_text::appendInt(childNode, repository::kHexVersionElement, child.hexVersion ? 1 : 0);
    }
}

QueryOptions readOptions(const pugi::xml_node& node, std::string& error)
{
    ElementReader reader(node, error);
    QueryOptions options;
    reader.unsignedInteger(kOsType, options.osType);
    reader.unsignedInteger(kOsArch, options.osArch);
    for (const TextField& field : kTextFields)
    {
        reader.text(field.element, options.*field.member);
    }
    for (const pugi::xml_node& codeNode : reader.child(kTypeCodes).children(kTypeCode))
    {
        std::int32_t code = 0;
        if (!xml_text::parseInt(xml_text::textOf(codeNode), code))
        {
            reader.fail(kTypeCode, "is no 32-bit integer");
        }
        options.typeCodes.push_back(code);
    }
    for (const ListField& field : kListFields)
    {
        for (const pugi::xml_node& idNode : reader.child(field.element).children(kId))
        {
            (options.*field.member).push_back(xml_text::textOf(idNode));
        }
    }
    for (const FlagField& field : kFlagFields)
    {
        reader.flag(field.element, options.*field.member);
    }
    return options;
}

PackageInfo readPackage(const pugi::xml_node& node, std::string& error)
{
    ElementReader reader(node, error);
    PackageInfo info;
    for (const repository::PackageTextField& field : repository::packageTextFields())
    {
        reader.text(field.element, info.*field.member);
    }
    reader.unsignedLong(repository::kPayloadSizeElement, info.payloadSize);
    reader.integer(repository::kTypeElement, info.type);
    for (const pugi::xml_node& childNode :
         reader.child(repository::kChildrenElement).children(repository::kChildElement))
    {
        ElementReader childReader(childNode, error);
        PackageChild child;
        for (const repository::ChildTextField& field : repository::childTextFields())
        {
            childReader.text(field.element, child.*field.member);
        }
        childReader.flag(repository::kHexVersionElement, child.hexVersion);
        info.children.push_back(std::move(child));
    }
    return info;
}
} // namespace

KorvanResult QueryReport::LoadFromXml(const std::string& path)
{
    pugi::xml_document document;
    std::string error;
    std::uint32_t code = update_services::openReport(path, kRoot, document, error);
    if (code == result_code::kSucceed)
    {
        ElementReader reader(document.child(kRoot), error);
        QueryReport loaded;
        loaded.options = readOptions(reader.child(kOptions), error);
        for (const pugi::xml_node& node : reader.child(kPackages).children(repository::kPackageElement))
        {
            loaded.packages.push_back(readPackage(node, error));
        }
        if (error.empty())
        {
            *this = std::move(loaded);
            return KorvanResult();
        }
        error = text::visible(path) + ": " + error;
        code = result_code::kUpdateIncompatibleReports;
    }
    return KorvanResult(code, GetErrorMessage(code) + " " + error + ".");
}

int QueryReport::SaveToXml(const std::string& path) const
{
    pugi::xml_document document;
    const pugi::xml_node root = document.append_child(kRoot);
    xml_text::appendText(root, kVersion, update_services::kReportVersion);
    writeOptions(root, options);
    const pugi::xml_node list = xml_text::append(root, kPackages);
    for (const PackageInfo& package : packages)
    {
        writePackage(list, package);
    }
    std::string error;
    if (!update_services::saveReport(document, path, error))
    {
        KORVAN_LOG(1, kSource) << path << ": query report not written: " << error;
        return static_cast<int>(result_code::kFailedWriteFile);
    }
    return 0;
}
} // namespace service
