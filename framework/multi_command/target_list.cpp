#include "multi_command/target_list.h"

#include "files/files.h"
#include "multi_command/address_range.h"
#include "multi_command/address_sources.h"
#include "multi_command/target_address.h"
#include "option_names.h"
#include "result_codes.h"
#include "text/text.h"
#include "trust/fingerprint.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <set>

namespace
{
using Json = nlohmann::json;

constexpr std::size_t kLargestFile = std::size_t{4} << 20U;

constexpr char kTargets[] = "targets";
constexpr char kKind[] = "kind";
constexpr char kAddress[] = "address";
constexpr char kUser[] = "user";
constexpr char kPassword[] = "password";
constexpr char kFingerprint[] = "fingerprint";
constexpr char kOldTls[] = "old_tls";

// The library's own texts are not used: they quote what was read last, which may be a password.
struct ListError
{
    std::string reason;
};

bool isKind(const std::string& kind)
{
    static constexpr std::array<const char*, 6> kKinds = {option::kBmc, option::kPmx, option::kEsxi,
                                                          option::kCmm, option::kSmm, option::kLocal};
    return std::find(kKinds.begin(), kKinds.end(), kind) != kKinds.end();
}

std::string lineOf(const std::string& content, std::size_t position)
{
    const auto end = content.begin() + static_cast<std::ptrdiff_t>(std::min(position, content.size()));
    return std::to_string(1 + std::count(content.begin(), end, '\n'));
}

Json parse(const std::string& content)
{
    std::vector<std::set<std::string>> keys;
    std::string repeated;
    // Of a key that stands twice the library would silently keep the last.
    const auto watch = [&keys, &repeated](int, Json::parse_event_t event, const Json& value)
    {
        if (event == Json::parse_event_t::object_start)
        {
            keys.emplace_back();
        }
        else if (event == Json::parse_event_t::object_end)
        {
            keys.pop_back();
        }
        else if (event == Json::parse_event_t::key && !keys.back().insert(value.get<std::string>()).second)
        {
            repeated = value.get<std::string>();
        }
        return true;
    };
    try
    {
        Json document = Json::parse(content, watch);
        if (!repeated.empty())
        {
            throw ListError{"the key \"" + text::visible(repeated) + "\" stands twice in one object"};
        }
        return document;
    }
    catch (const Json::parse_error& failure)
    {
        throw ListError{"line " + lineOf(content, failure.byte == 0 ? 0 : failure.byte - 1) + ": not valid JSON"};
    }
}

void checkKeys(const Json& object, const std::vector<std::string>& known, const std::string& where)
{
    for (const auto& item : object.items())
    {
        if (std::find(known.begin(), known.end(), item.key()) == known.end())
        {
            throw ListError{where + "unknown key \"" + text::visible(item.key()) + "\"; known are " +
                            text::join(known, ", ")};
        }
    }
}

std::string textOf(const Json& entry, const char* key, const std::string& where)
{
    const auto found = entry.find(key);
    if (found == entry.end())
    {
        return std::string();
    }
    if (!found->is_string())
    {
        throw ListError{where + "\"" + key + "\" must be a text"};
    }
    return found->get<std::string>();
}

std::vector<nova::ServerInfo> addressedServers(const Json& entry, const std::string& kind, std::size_t most,
                                               const std::string& where)
{
    if (kind == option::kLocal)
    {
        if (entry.contains(kAddress))
        {
            throw ListError{where + "a local target has no \"address\""};
        }
        nova::ServerInfo server;
        server.option = kind;
        server.host = "localhost";
        return {server};
    }
    const std::string value = textOf(entry, kAddress, where);
    if (value.empty())
    {
        throw ListError{where + "\"address\" is missing"};
    }
    if (value.find('@') != std::string::npos)
    {
        throw ListError{where + "user and password have keys of their own; the address holds host and port only"};
    }
    std::vector<nova::ServerInfo> servers;
    std::string reason;
    if (!multi_command::readAddress(value, kind, most, servers, reason))
    {
        throw ListError{where + reason};
    }
    return servers;
}

void takeTrust(const Json& entry, const std::string& where, nova::ServerInfo& server)
{
    const bool encrypted = server.option != option::kLocal && server.scheme != "http";
    if (!encrypted && (entry.contains(kFingerprint) || entry.contains(kOldTls)))
    {
        throw ListError{where + "\"fingerprint\" and \"old_tls\" are for targets that are reached over https"};
    }
    if (entry.contains(kFingerprint))
    {
        server.fingerprint = trust::readFingerprint(textOf(entry, kFingerprint, where));
        if (server.fingerprint.empty())
        {
            throw ListError{where + "\"fingerprint\" must be a SHA-256 of 64 hexadecimal digits"};
        }
    }
    const auto oldTls = entry.find(kOldTls);
    if (oldTls != entry.end() && !oldTls->is_boolean())
    {
        throw ListError{where + "\"old_tls\" must be true or false"};
    }
    server.oldTls = oldTls != entry.end() && oldTls->get<bool>();
}

// The servers of one entry; a range makes several.
std::vector<nova::ServerInfo> entryServers(const Json& entry, std::size_t most, const std::string& where)
{
    if (!entry.is_object())
    {
        throw ListError{where + "must be an object"};
    }
    checkKeys(entry, {kKind, kAddress, kUser, kPassword, kFingerprint, kOldTls}, where);
    const std::string kind = textOf(entry, kKind, where);
    if (!isKind(kind))
    {
        throw ListError{where + "\"kind\" must be bmc, pmx, esxi, cmm, smm or local"};
    }
    const std::string user = textOf(entry, kUser, where);
    const std::string password = textOf(entry, kPassword, where);
    if (!multi_command::isValidUser(user))
    {
        throw ListError{where + "\"user\" holds a ':', a blank or a control character"};
    }
    if (!multi_command::isValidPassword(password))
    {
        throw ListError{where + "\"password\" holds a control character"};
    }
    std::vector<nova::ServerInfo> servers = addressedServers(entry, kind, most, where);
    for (nova::ServerInfo& server : servers)
    {
        server.user = user;
        server.password = password;
        takeTrust(entry, where, server);
    }
    return servers;
}

std::vector<nova::ServerInfo> serversOf(const std::string& content, std::size_t most)
{
    const Json document = parse(content);
    if (!document.is_object() || !document.contains(kTargets) || !document[kTargets].is_array())
    {
        throw ListError{"the file must be an object with a list \"targets\""};
    }
    checkKeys(document, {kTargets}, "");
    std::vector<nova::ServerInfo> servers;
    std::size_t number = 0;
    for (const Json& entry : document[kTargets])
    {
        const std::string where = "target " + std::to_string(++number) + ": ";
        const std::vector<nova::ServerInfo> read = entryServers(entry, most - servers.size(), where);
        servers.insert(servers.end(), read.begin(), read.end());
    }
    return servers;
}
} // namespace

namespace multi_command
{
KorvanResult readTargetList(const std::string& path, std::vector<nova::ServerInfo>& servers, OpenFiles openFiles)
{
    const std::string name = "target list " + text::visible(path) + ": ";
    std::string content;
    switch (files::read(path, kLargestFile, content))
    {
    case files::ReadOutcome::Missing:
        return KorvanResult(result_code::kFileMissing, name + "there is no such file");
    case files::ReadOutcome::Unreadable:
        return KorvanResult(result_code::kInvalidFile, name + "cannot be read, or is no regular file");
    case files::ReadOutcome::TooLarge:
        return KorvanResult(result_code::kInvalidFile,
                            name + "is larger than " + std::to_string(kLargestFile) + " bytes");
    case files::ReadOutcome::Ok:
        break;
    }
    try
    {
        const std::vector<nova::ServerInfo> read =
            serversOf(content, kMostTargets - std::min(kMostTargets, servers.size()));
        const bool secret =
            std::any_of(read.begin(), read.end(), [](const nova::ServerInfo& s) { return !s.password.empty(); });
        if (secret && openFiles == OpenFiles::Refuse && isReadableByOthers(path))
        {
            return KorvanResult(result_code::kInvalidFile, name + openFileComplaint(path));
        }
        servers.insert(servers.end(), read.begin(), read.end());
    }
    catch (const ListError& failure)
    {
        return KorvanResult(result_code::kInvalidFile, name + failure.reason);
    }
    return KorvanResult();
}
} // namespace multi_command
