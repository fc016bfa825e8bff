#include "multi_command/address_sources.h"

#include "files/files.h"
#include "multi_command/address_range.h"
#include "multi_command/ipv6_text.h"
#include "multi_command/standard_input.h"
#include "multi_command/target_address.h"
#include "result_codes.h"
#include "text/text.h"

#include <algorithm>

namespace
{
constexpr std::size_t kLargestList = std::size_t{16} << 20U;

std::string located(const std::string& where, const std::string& reason)
{
    return where + ": " + reason;
}

bool isListed(const std::string& entry)
{
    return entry == "-" || (entry.size() > 1 && entry.front() == '@');
}

// The address of a line, without comment and blanks around it.
std::string addressOf(const std::string& line)
{
    for (std::size_t mark = line.find('#'); mark != std::string::npos; mark = line.find('#', mark + 1))
    {
        if (mark == 0 || line[mark - 1] == ' ' || line[mark - 1] == '\t')
        {
            return text::trim(line.substr(0, mark));
        }
    }
    return text::trim(line);
}

std::string tooLarge()
{
    return "is larger than " + std::to_string(kLargestList) + " bytes";
}

KorvanResult readFile(const std::string& path, const std::string& name, std::string& content)
{
    switch (files::read(path, kLargestList, content))
    {
    case files::ReadOutcome::Missing:
        return KorvanResult(result_code::kFileMissing, name + ": there is no such file");
    case files::ReadOutcome::Unreadable:
        return KorvanResult(result_code::kInvalidFile, name + ": cannot be read, or is no regular file");
    case files::ReadOutcome::TooLarge:
        return KorvanResult(result_code::kInvalidFile, name + ": " + tooLarge());
    case files::ReadOutcome::Ok:
        break;
    }
    return KorvanResult();
}

KorvanResult readInput(const std::string& name, std::string& content)
{
    switch (standard_input::readAll(kLargestList, content))
    {
    case standard_input::Outcome::TooLarge:
        return KorvanResult(result_code::kInvalidFile, name + ": " + tooLarge());
    case standard_input::Outcome::Unreadable:
        return KorvanResult(result_code::kInvalidFile, name + ": cannot be read");
    case standard_input::Outcome::Interrupted:
        return KorvanResult(result_code::kInterruptedByUser);
    case standard_input::Outcome::Ok:
        break;
    }
    return KorvanResult();
}
bool holdsPassword(const multi_command::AddressEntry& entry)
{
    return std::any_of(entry.servers.begin(), entry.servers.end(),
                       [](const nova::ServerInfo& server) { return !server.password.empty(); });
}
} // namespace

namespace multi_command
{
bool readAddress(const std::string& address, const std::string& kind, std::size_t most,
                 std::vector<nova::ServerInfo>& servers, std::string& error)
{
    std::vector<std::string> expanded;
    if (!expandAddress(address, most, expanded, error))
    {
        return false;
    }
    for (const std::string& one : expanded)
    {
        TargetAddress parsed;
        if (!parseTargetAddress(one, parsed, error))
        {
            return false;
        }
        nova::ServerInfo server;
        server.option = kind;
        server.user = parsed.user;
        server.password = parsed.password;
        server.host = canonicalHost(parsed.host);
        server.port = parsed.port;
        server.scheme = parsed.scheme;
        servers.push_back(server);
    }
    return true;
}

bool AddressSources::append(const std::string& option, const std::string& where, const std::string& address,
                            std::vector<AddressEntry>& entries, std::string& error)
{
    AddressEntry entry{where, {}};
    if (!readAddress(address, option, kMostTargets - count_, entry.servers, error))
    {
        return false;
    }
    count_ += entry.servers.size();
    entries.push_back(entry);
    return true;
}

KorvanResult AddressSources::read(const std::string& option, const std::string& value,
                                  std::vector<AddressEntry>& entries)
{
    // The entries are named by their position: their texts may hold passwords.
    const std::string place = "option --" + option + ", address ";
    std::size_t position = 0;
    for (const std::string& written : splitAddresses(value))
    {
        ++position;
        const std::string address = text::trim(written);
        if (isListed(address))
        {
            KorvanResult result = readListed(option, address == "-" ? address : address.substr(1), entries);
            if (!result.succeeded())
            {
                return result;
            }
            continue;
        }
        const std::string where = place + std::to_string(position);
        std::string reason;
        if (!append(option, where, address, entries, reason))
        {
            return KorvanResult(result_code::kInvalidAddress, located(where, reason));
        }
    }
    return KorvanResult();
}

KorvanResult AddressSources::readListed(const std::string& option, const std::string& name,
                                        std::vector<AddressEntry>& entries)
{
    if (name != "-")
    {
        return readListFile(option, name, entries);
    }
    if (inputTaken_)
    {
        return KorvanResult(result_code::kInvalidParameter,
                            "option --" + option + ": standard input can be read once only");
    }
    inputTaken_ = true;
    const std::string shown = "standard input";
    std::string content;
    const KorvanResult result = readInput(shown, content);
    return result.succeeded() ? readLines(option, shown, content, entries) : result;
}

KorvanResult AddressSources::readListFile(const std::string& option, const std::string& path,
                                          std::vector<AddressEntry>& entries)
{
    const std::string shown = "target list " + text::visible(path);
    const std::size_t before = entries.size();
    std::string content;
    KorvanResult result = readFile(path, shown, content);
    if (result.succeeded())
    {
        result = readLines(option, shown, content, entries);
    }
    const bool secret =
        std::any_of(entries.begin() + static_cast<std::ptrdiff_t>(before), entries.end(), holdsPassword);
    if (result.succeeded() && secret && openFiles_ == OpenFiles::Refuse && isReadableByOthers(path))
    {
        return KorvanResult(result_code::kInvalidFile, shown + ": " + openFileComplaint(path));
    }
    return result;
}

KorvanResult AddressSources::readLines(const std::string& option, const std::string& name, const std::string& content,
                                       std::vector<AddressEntry>& entries)
{
    static constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";
    const bool marked = text::startsWith(content, kByteOrderMark);
    const std::string place = name + ", line ";
    std::size_t number = 0;
    for (const std::string& line : text::split(marked ? content.substr(sizeof kByteOrderMark - 1) : content, '\n'))
    {
        ++number;
        const std::string address = addressOf(line);
        if (address.empty())
        {
            continue;
        }
        const std::string where = place + std::to_string(number);
        std::string reason;
        if (!append(option, where, address, entries, reason))
        {
            return KorvanResult(result_code::kInvalidFile, located(where, reason));
        }
    }
    return KorvanResult();
}
} // namespace multi_command
