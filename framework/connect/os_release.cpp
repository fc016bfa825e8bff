#include "connect/os_release.h"

#include "os_names.h"
#include "text/text.h"

#include <algorithm>
#include <map>

namespace connect
{
namespace
{
constexpr std::uint32_t kUnknownOs = 0xFFFFFFFFU;

std::string unquoted(const std::string& value)
{
    const std::string trimmed = text::trim(value);
    const bool quoted =
        trimmed.size() >= 2 && (trimmed.front() == '"' || trimmed.front() == '\'') && trimmed.back() == trimmed.front();
    return quoted ? trimmed.substr(1, trimmed.size() - 2) : trimmed;
}

std::map<std::string, std::string> assignments(const std::string& content)
{
    std::map<std::string, std::string> values;
    for (const std::string& line : text::split(content, '\n'))
    {
        const std::string trimmed = text::trim(line);
        const std::size_t equals = trimmed.find('=');
        if (equals != std::string::npos && trimmed.front() != '#')
        {
            values[trimmed.substr(0, equals)] = unquoted(trimmed.substr(equals + 1));
        }
    }
    return values;
}

bool isKnown(const std::string& key)
{
    return GetOsTypeCode(key) != kUnknownOs;
}
} // namespace

OsRelease readOsRelease(const std::string& content)
{
    const std::map<std::string, std::string> values = assignments(content);
    const auto value = [&values](const char* name)
    {
        const auto found = values.find(name);
        return found == values.end() ? std::string() : found->second;
    };
    const std::string id = text::toLower(value("ID"));
    const std::string version = value("VERSION_ID");
    const std::string major = version.substr(0, version.find('.'));
    const std::vector<std::string> like = text::split(text::toLower(value("ID_LIKE")), ' ');
    const bool likeRhel = std::find(like.begin(), like.end(), "rhel") != like.end();

    OsRelease release;
    release.minorVersion = version.find('.') == std::string::npos ? "" : version.substr(version.find('.') + 1);
    const std::string sles = id == "sles_sap" || id == "sled" ? "sles" : id;
    for (const std::string& key : {sles + major, id, likeRhel ? "rhel" + major : std::string()})
    {
        if (!key.empty() && isKnown(key))
        {
            release.key = key;
            break;
        }
    }
    return release;
}
} // namespace connect
