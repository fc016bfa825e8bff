#include "multi_command/target_address.h"

#include "text/text.h"

#include <algorithm>
#include <vector>

namespace
{
constexpr std::size_t kLongestAddress = 2048;
constexpr std::size_t kLongestHost = 253; // RFC 1035, section 2.3.4, as text
constexpr std::size_t kLongestLabel = 63;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isHexDigit(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isControl(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

bool hasControl(const std::string& value)
{
    return std::any_of(value.begin(), value.end(), isControl);
}

// A decimal number without a sign; false for anything above `highest`.
bool parseNumber(const std::string& digits, std::uint32_t highest, std::uint32_t& number)
{
    if (digits.empty() || digits.size() > 5 || !std::all_of(digits.begin(), digits.end(), isDigit))
    {
        return false;
    }
    std::uint32_t value = 0;
    for (const char digit : digits)
    {
        value = value * 10U + static_cast<std::uint32_t>(digit - '0');
    }
    number = value;
    return value <= highest;
}

bool isIpv4(const std::string& host)
{
    const std::vector<std::string> parts = text::split(host, '.');
    std::uint32_t ignored = 0;
    // Systems read "010" as eight: what looks like one machine would be another.
    return parts.size() == 4 && std::all_of(parts.begin(), parts.end(),
                                            [&ignored](const std::string& part) {
                                                return part.size() <= 3 && (part.size() == 1 || part.front() != '0') &&
                                                       parseNumber(part, 255, ignored);
                                            });
}

bool isLabel(const std::string& label)
{
    return !label.empty() && label.size() <= kLongestLabel && label.front() != '-' && label.back() != '-' &&
           std::all_of(label.begin(), label.end(),
                       [](char c) { return isLetter(c) || isDigit(c) || c == '-' || c == '_'; });
}

bool isHostName(const std::string& host)
{
    if (host.empty() || host.size() > kLongestHost)
    {
        return false;
    }
    const std::vector<std::string> labels = text::split(host, '.');
    // A host that ends in a number is an address to the system, also as "0x7f000001" or "127.1".
    const std::string last = text::toLower(labels.back());
    if (std::all_of(last.begin(), last.end(), isDigit) ||
        (last.compare(0, 2, "0x") == 0 && std::all_of(last.begin() + 2, last.end(), isHexDigit)))
    {
        return isIpv4(host);
    }
    return std::all_of(labels.begin(), labels.end(), isLabel);
}

// The 16-bit groups on one side of "::"; -1 when the text is none. An IPv4 tail counts as two.
int countGroups(const std::string& value)
{
    if (value.empty())
    {
        return 0;
    }
    const std::vector<std::string> groups = text::split(value, ':');
    int count = 0;
    for (std::size_t index = 0; index < groups.size(); ++index)
    {
        const std::string& group = groups[index];
        const bool last = index + 1 == groups.size();
        if (last && group.find('.') != std::string::npos)
        {
            if (!isIpv4(group))
            {
                return -1;
            }
            count += 2;
            continue;
        }
        if (group.empty() || group.size() > 4 || !std::all_of(group.begin(), group.end(), isHexDigit))
        {
            return -1;
        }
        ++count;
    }
    return count;
}

bool isZone(const std::string& zone)
{
    return !zone.empty() && zone.size() <= kLongestLabel &&
           std::all_of(zone.begin(), zone.end(),
                       [](char c) { return isLetter(c) || isDigit(c) || c == '-' || c == '_' || c == '.'; });
}

// RFC 4291, section 2.2, with the zone of RFC 4007 behind a '%'.
bool isIpv6(const std::string& host)
{
    constexpr int kGroups = 8;
    const std::size_t zoneMark = host.find('%');
    if (zoneMark != std::string::npos && !isZone(host.substr(zoneMark + 1)))
    {
        return false;
    }
    const std::string digits = host.substr(0, zoneMark);
    const std::size_t gap = digits.find("::");
    if (gap == std::string::npos)
    {
        return countGroups(digits) == kGroups;
    }
    const std::string before = digits.substr(0, gap);
    const int left = before.find('.') == std::string::npos ? countGroups(before) : -1;
    const int right = countGroups(digits.substr(gap + 2));
    return left >= 0 && right >= 0 && left + right < kGroups;
}

bool takeScheme(std::string& rest, std::string& scheme, std::string& error)
{
    const std::size_t mark = rest.find("://");
    if (mark == std::string::npos)
    {
        return true;
    }
    const std::string before = text::toLower(rest.substr(0, mark));
    const bool looksLikeScheme =
        std::all_of(before.begin(), before.end(),
                    [](char c) { return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.'; });
    if (!looksLikeScheme)
    {
        return true; // a password may hold "://"
    }
    if (before != "https" && before != "http")
    {
        error = "the scheme must be https or http";
        return false;
    }
    scheme = before;
    rest.erase(0, mark + 3);
    return true;
}

bool takeUser(std::string& rest, multi_command::TargetAddress& address, std::string& error)
{
    const std::size_t at = rest.rfind('@');
    if (at == std::string::npos)
    {
        return true;
    }
    const std::string credentials = rest.substr(0, at);
    const std::size_t colon = credentials.find(':');
    address.user = credentials.substr(0, colon);
    if (colon != std::string::npos)
    {
        address.password = credentials.substr(colon + 1);
    }
    rest.erase(0, at + 1);
    if (address.user.empty())
    {
        error = "the user name in front of '@' is empty";
        return false;
    }
    if (!multi_command::isValidUser(address.user))
    {
        error = "the user name holds a blank or a control character";
        return false;
    }
    return true;
}

// Splits "host:port" or "[host]:port"; `port` stays empty without a colon.
bool splitPort(const std::string& rest, std::string& host, std::string& port, bool& hasPort, std::string& error)
{
    std::size_t colon = std::string::npos;
    if (!rest.empty() && rest.front() == '[')
    {
        const std::size_t bracket = rest.find(']');
        host = bracket == std::string::npos ? std::string() : rest.substr(1, bracket - 1);
        if (!isIpv6(host))
        {
            error = "the text in brackets is no IPv6 address";
            return false;
        }
        colon = bracket + 1 < rest.size() ? bracket + 1 : std::string::npos;
        if (colon != std::string::npos && rest[colon] != ':')
        {
            error = "only a port may follow the IPv6 address [" + host + "]";
            return false;
        }
    }
    else
    {
        colon = rest.find(':');
        host = rest.substr(0, colon);
        if (colon != std::string::npos && rest.find(':', colon + 1) != std::string::npos)
        {
            error = "more than one ':' behind the user; put an IPv6 address into brackets, as in [fe80::1]";
            return false;
        }
        if (!isHostName(host))
        {
            error = "the host is no name, no IPv4 address and no IPv6 address in brackets";
            return false;
        }
    }
    hasPort = colon != std::string::npos;
    port = hasPort ? rest.substr(colon + 1) : std::string();
    return true;
}
} // namespace

namespace multi_command
{
bool isValidUser(const std::string& user)
{
    return !hasControl(user) && user.find_first_of(": ") == std::string::npos;
}

bool isValidPassword(const std::string& password)
{
    return !hasControl(password);
}

bool parseTargetAddress(const std::string& value, TargetAddress& address, std::string& error)
{
    constexpr std::uint32_t kHighestPort = 65535;
    if (value.size() > kLongestAddress)
    {
        error = "the address is longer than " + std::to_string(kLongestAddress) + " bytes";
        return false;
    }
    if (hasControl(value))
    {
        error = "the address holds a control character";
        return false;
    }
    TargetAddress parsed;
    std::string rest = value;
    std::string port;
    bool hasPort = false;
    if (!takeScheme(rest, parsed.scheme, error) || !takeUser(rest, parsed, error))
    {
        return false;
    }
    if (rest.empty())
    {
        error = "the host is missing";
        return false;
    }
    if (!splitPort(rest, parsed.host, port, hasPort, error))
    {
        return false;
    }
    if (hasPort && (!parseNumber(port, kHighestPort, parsed.port) || parsed.port == 0))
    {
        // The port's text stays out: "user:password" without a host looks like "host:port".
        error = "the port of " + parsed.host + " is no number from 1 to 65535";
        return false;
    }
    address = parsed;
    return true;
}
} // namespace multi_command
