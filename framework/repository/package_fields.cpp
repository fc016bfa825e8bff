#include "repository/package_fields.h"

#include "text/text.h"

#include <array>

namespace repository
{
namespace
{
using service::PackageChild;
using service::PackageInfo;

struct TypeRow
{
    std::int32_t code;
    const char* name;
};

constexpr std::array<TypeRow, 4> kTypes{{{1, "fw"}, {3, "dd"}, {5, "mm"}, {12, "sw"}}};
} // namespace

const std::vector<PackageTextField>& packageTextFields()
{
    static const std::vector<PackageTextField> kFields{
        {kUpdateIdElement, &PackageInfo::updateId},
        {"NAME", &PackageInfo::name},
        {"COMPONENT", &PackageInfo::component},
        {"PKGVERSION", &PackageInfo::packageVersion},
        {"RELEASEDATE", &PackageInfo::releaseDate},
        {"SEVERITY", &PackageInfo::severity},
        {"SEVERITYDES", &PackageInfo::severityDescription},
        {"REBOOT", &PackageInfo::reboot},
        {"REBOOTDES", &PackageInfo::rebootDescription},
        {"MACROPACKAGEID", &PackageInfo::macroPackageId},
        {"REQUISITE", &PackageInfo::requisite},
        {"PREREQUISITE", &PackageInfo::prerequisite},
        {"COREQUISITE", &PackageInfo::corequisite},
        {"SUPERSEDE", &PackageInfo::supersede},
        {"PAYLOADFILE", &PackageInfo::payloadFile},
        {"PAYLOADSHA256", &PackageInfo::payloadSha256},
        {"PACKAGEXML", &PackageInfo::packageXml},
        {"VELPAKXML", &PackageInfo::velpakXml},
        {"COMMANDLINE", &PackageInfo::commandLine},
        {"AGENTLESSSUPPORT", &PackageInfo::agentlessSupport},
    };
    return kFields;
}

const std::vector<ChildTextField>& childTextFields()
{
    static const std::vector<ChildTextField> kFields{
        {"SOFTWAREID", &PackageChild::softwareId},   {"NEWVERSION", &PackageChild::newVersion},
        {"DESCRIPTION", &PackageChild::description}, {"CATEGORY", &PackageChild::category},
        {"ADAPTERNAME", &PackageChild::adapterName}, {"CLASSIFICATION", &PackageChild::classification},
    };
    return kFields;
}

std::string versionPhrase(const std::string& name, const std::string& version)
{
    return version.find("Version ") != std::string::npos ? version : name + " Version " + version;
}

std::int32_t typeCode(const std::string& name)
{
    for (const TypeRow& row : kTypes)
    {
        if (name == row.name)
        {
            return row.code;
        }
    }
    return 0;
}

std::string typeName(std::int32_t code)
{
    for (const TypeRow& row : kTypes)
    {
        if (code == row.code)
        {
            return row.name;
        }
    }
    return std::string();
}

std::vector<std::string> idList(const std::string& ids)
{
    std::vector<std::string> result;
    for (const std::string& piece : text::split(ids, ','))
    {
        std::string id = text::trim(piece);
        if (!id.empty())
        {
            result.push_back(std::move(id));
        }
    }
    return result;
}
} // namespace repository
