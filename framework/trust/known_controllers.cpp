#include "trust/known_controllers.h"

#include "files/files.h"
#include "text/text.h"
#include "trust/fingerprint.h"
#include "trust/user_files.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <vector>

namespace trust
{
namespace
{
constexpr std::size_t kLargestFile = std::size_t{16} << 20U; // more than 100,000 controllers
constexpr std::size_t kLongestLine = 1024;
constexpr std::uint32_t kHttpsPort = 443;
constexpr std::uint32_t kHighestPort = 65535;
constexpr std::chrono::milliseconds kLockLimit{10000};
constexpr char kMethod[] = "sha256";
constexpr char kUsualFolder[] = "/.korvan";
constexpr char kUsualName[] = "/known_controllers";
constexpr char kHeading[] =
    "# Controllers trusted by the SHA-256 fingerprint of their certificate: host:port sha256 HEX\n";

struct Entry
{
    std::string fingerprint;
    std::size_t line = 0;
};

using Entries = std::map<std::string, Entry>;

std::vector<std::string> wordsOf(const std::string& line)
{
    std::vector<std::string> words;
    std::size_t at = line.find_first_not_of(" \t");
    while (at != std::string::npos)
    {
        const std::size_t end = line.find_first_of(" \t", at);
        words.push_back(line.substr(at, end == std::string::npos ? end : end - at));
        at = end == std::string::npos ? end : line.find_first_not_of(" \t", end);
    }
    return words;
}

bool isPort(const std::string& value)
{
    const bool digits =
        !value.empty() && value.size() <= 5 && value.find_first_not_of("0123456789") == std::string::npos;
    return digits && std::stoul(value) >= 1 && std::stoul(value) <= kHighestPort;
}

bool isController(const std::string& value)
{
    const std::size_t colon = value.rfind(':');
    if (colon == std::string::npos || colon == 0 || !isPort(value.substr(colon + 1)))
    {
        return false;
    }
    const std::string host = value.substr(0, colon);
    const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
    const std::string inner = bracketed ? host.substr(1, host.size() - 2) : host;
    return inner.find_first_of(bracketed ? "[]" : "[]:") == std::string::npos && text::visible(inner) == inner;
}

// Reads one line into the entries. Empty when it is in order, else what is wrong.
std::string takeLine(const std::string& line, std::size_t number, Entries& entries)
{
    if (line.size() > kLongestLine)
    {
        return "is longer than " + std::to_string(kLongestLine) + " characters";
    }
    const std::vector<std::string> words = wordsOf(line);
    if (words.empty() || words.front().front() == '#')
    {
        return std::string();
    }
    if (words.size() != 3)
    {
        return "must be \"host:port sha256 HEX\"";
    }
    const std::string controller = text::toLower(words[0]);
    if (!isController(controller))
    {
        return "must begin with host:port, IPv6 in brackets";
    }
    if (words[1] != kMethod)
    {
        return "must name sha256 as the kind of fingerprint";
    }
    const std::string fingerprint = readFingerprint(words[2]);
    if (fingerprint.empty())
    {
        return "must end with a fingerprint of 64 hexadecimal digits";
    }
    const auto placed = entries.insert({controller, Entry{fingerprint, number}});
    if (!placed.second && placed.first->second.fingerprint != fingerprint)
    {
        return "gives " + controller + " another fingerprint than line " + std::to_string(placed.first->second.line);
    }
    return std::string();
}

bool parse(const std::string& content, Entries& entries, std::string& reason)
{
    std::size_t number = 0;
    for (std::size_t begin = 0; begin < content.size();)
    {
        ++number;
        std::size_t end = content.find('\n', begin);
        end = end == std::string::npos ? content.size() : end;
        std::string line = content.substr(begin, end - begin);
        begin = end + 1;
        if (!line.empty() && line.back() == '\r')
        {
            line.pop_back();
        }
        const std::string wrong = takeLine(line, number, entries);
        if (!wrong.empty())
        {
            reason = "line " + std::to_string(number) + " " + wrong;
            return false;
        }
    }
    return true;
}

Finding broken(const std::string& path, const std::string& reason)
{
    Finding finding;
    finding.knowledge = Knowledge::Broken;
    finding.reason = "the file of known controllers " + text::visible(path) + " " + reason;
    return finding;
}

Finding search(const std::string& path, const std::string& content, const std::string& controller,
               const std::string& fingerprint)
{
    Entries entries;
    std::string reason;
    if (!parse(content, entries, reason))
    {
        return broken(path, "is not in order: " + reason);
    }
    Finding finding;
    const auto found = entries.find(controller);
    if (found == entries.end())
    {
        return finding;
    }
    const bool same = found->second.fingerprint == fingerprint;
    finding.knowledge = same ? Knowledge::Known : Knowledge::Other;
    finding.known = same ? "" : found->second.fingerprint;
    return finding;
}

std::string folderOf(const std::string& path)
{
    const std::filesystem::path parent = std::filesystem::path(path).parent_path();
    return parent == parent.root_path() ? std::string() : parent.string();
}
} // namespace

std::string controllerName(const std::string& host, std::uint32_t port)
{
    const std::string name = host.find(':') == std::string::npos ? host : "[" + host + "]";
    return text::toLower(name) + ":" + std::to_string(port == 0 ? kHttpsPort : port);
}

std::string KnownControllers::usualPath()
{
    const std::string home = homeFolder();
    return home.empty() ? home : files::withoutTrailingSeparator(home) + kUsualFolder + kUsualName;
}

bool KnownControllers::read(std::string& content, std::string& reason) const
{
    switch (files::read(path_, kLargestFile, content))
    {
    case files::ReadOutcome::Unreadable:
        reason = "cannot be read, or is no regular file";
        return false;
    case files::ReadOutcome::TooLarge:
        reason = "is larger than " + std::to_string(kLargestFile) + " bytes";
        return false;
    case files::ReadOutcome::Missing:
        content.clear();
        return true;
    case files::ReadOutcome::Ok:
        break;
    }
    return true;
}

Finding KnownControllers::find(const std::string& controller, const std::string& fingerprint) const
{
    std::string content;
    std::string reason;
    return read(content, reason) ? search(path_, content, controller, fingerprint) : broken(path_, reason);
}

Finding KnownControllers::addIfUnknown(const std::string& controller, const std::string& fingerprint) const
{
    std::string error;
    const std::string folder = folderOf(path_);
    if (!folder.empty() && !makePrivateFolder(folder, error))
    {
        return broken(path_, "cannot be written: " + text::visible(folder) + ": " + error);
    }
    FileLock lock;
    if (!lock.acquire(path_ + ".lock", kLockLimit, error))
    {
        return broken(path_, "cannot be locked: " + text::visible(path_) + ".lock: " + error);
    }
    std::string content;
    if (!read(content, error))
    {
        return broken(path_, error);
    }
    Finding finding = search(path_, content, controller, fingerprint);
    if (finding.knowledge != Knowledge::Unknown)
    {
        return finding;
    }
    if (content.empty())
    {
        content = kHeading;
    }
    else if (content.back() != '\n')
    {
        content += '\n';
    }
    content += controller + " " + kMethod + " " + fingerprint + "\n";
    if (content.size() > kLargestFile)
    {
        return broken(path_, "is full");
    }
    if (!files::replace(path_, content, error))
    {
        return broken(path_, "cannot be written: " + error);
    }
    finding.knowledge = Knowledge::Known;
    finding.added = true;
    return finding;
}
} // namespace trust
