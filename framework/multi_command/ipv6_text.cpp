#include "multi_command/ipv6_text.h"

#include "text/text.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace
{
constexpr std::size_t kGroups = 8;
using Groups = std::vector<std::uint32_t>;

bool parseBounded(const std::string& digits, int base, std::size_t longest, std::uint32_t& number)
{
    const char* const known = base == 10 ? "0123456789" : "0123456789abcdefABCDEF";
    if (digits.empty() || digits.size() > longest || digits.find_first_not_of(known) != std::string::npos)
    {
        return false;
    }
    number = static_cast<std::uint32_t>(std::stoul(digits, nullptr, base));
    return true;
}

// Two groups of "a.b.c.d" (RFC 4291, section 2.2, form 3).
bool appendIpv4(const std::string& value, Groups& groups)
{
    const std::vector<std::string> parts = text::split(value, '.');
    std::array<std::uint32_t, 4> bytes{};
    if (parts.size() != bytes.size())
    {
        return false;
    }
    for (std::size_t index = 0; index < bytes.size(); ++index)
    {
        if (!parseBounded(parts[index], 10, 3, bytes[index]) || bytes[index] > 255)
        {
            return false;
        }
    }
    groups.push_back(bytes[0] * 256 + bytes[1]);
    groups.push_back(bytes[2] * 256 + bytes[3]);
    return true;
}

bool parseGroups(const std::string& value, Groups& groups)
{
    if (value.empty())
    {
        return true;
    }
    for (const std::string& part : text::split(value, ':'))
    {
        std::uint32_t group = 0;
        if (parseBounded(part, 16, 4, group))
        {
            groups.push_back(group);
        }
        else if (!appendIpv4(part, groups))
        {
            return false;
        }
    }
    return true;
}

// All eight groups, "::" written out; false for other text.
bool parseAddress(const std::string& value, Groups& groups)
{
    const std::size_t gap = value.find("::");
    if (gap == std::string::npos)
    {
        return parseGroups(value, groups) && groups.size() == kGroups;
    }
    Groups tail;
    if (!parseGroups(value.substr(0, gap), groups) || !parseGroups(value.substr(gap + 2), tail) ||
        groups.size() + tail.size() >= kGroups)
    {
        return false;
    }
    groups.resize(kGroups - tail.size());
    groups.insert(groups.end(), tail.begin(), tail.end());
    return true;
}

struct Run
{
    std::size_t begin = kGroups;
    std::size_t length = 1; // a single zero group is not shortened
};

Run longestZeros(const Groups& groups)
{
    Run longest;
    for (std::size_t begin = 0; begin < kGroups; ++begin)
    {
        std::size_t end = begin;
        while (end < kGroups && groups[end] == 0)
        {
            ++end;
        }
        if (end - begin > longest.length)
        {
            longest = {begin, end - begin};
        }
    }
    return longest;
}

std::string written(const Groups& groups)
{
    const Run zeros = longestZeros(groups);
    std::string result;
    for (std::size_t index = 0; index < kGroups; ++index)
    {
        if (index == zeros.begin)
        {
            result += "::";
            index += zeros.length - 1;
            continue;
        }
        std::array<char, 8> digits{};
        std::snprintf(digits.data(), digits.size(), "%x", groups[index]);
        const bool separate = !result.empty() && result.back() != ':';
        result += (separate ? ":" : "") + std::string(digits.data());
    }
    return result;
}
} // namespace

namespace multi_command
{
std::string canonicalHost(const std::string& host)
{
    if (host.find(':') == std::string::npos)
    {
        return host;
    }
    const std::size_t zone = host.find('%');
    Groups groups;
    if (!parseAddress(host.substr(0, zone), groups))
    {
        return host;
    }
    return written(groups) + (zone == std::string::npos ? std::string() : host.substr(zone));
}
} // namespace multi_command
