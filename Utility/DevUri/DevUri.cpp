#include "DevUri/DevUri.h"

#include "xmodule_log.h"

#include <cstdlib>
#include <locale>

namespace
{
constexpr char kSource[] = "Utility/DevUri/DevUri";
constexpr char kSchemeMark[] = "://";

struct SchemeProtocol
{
    const char* scheme;
    DevUri::Protocol protocol;
};

constexpr SchemeProtocol kSchemes[] = {
    {"https", DevUri::kHttps}, {"sftp", DevUri::kSftp}, {"ftp", DevUri::kFtp},
    {"http", DevUri::kHttp},   {"tftp", DevUri::kTftp},
};

// Leading digits after blanks and a sign, else 0: what users' scripts have come to rely on.
std::int32_t leadingNumber(const std::string& text)
{
    return std::atoi(text.c_str()); // NOLINT(cert-err34-c): a port that is no number reads as 0
}
} // namespace

std::int32_t DevUri::Parse(const std::string& address)
{
    const std::string hostPart = takePath(takeUser(takeScheme(address)));
    if (takeHost(hostPart))
    {
        return 1;
    }
    host.clear();
    port = 0;
    KORVAN_LOG(1, kSource) << "parse uri info failed " << hostPart;
    return 0;
}

std::string DevUri::takeScheme(const std::string& address)
{
    const std::string::size_type mark = address.find(kSchemeMark);
    if (mark == std::string::npos)
    {
        scheme.clear();
        return address;
    }
    scheme = address.substr(0, address.find(':'));
    const std::locale locale;
    for (char& letter : scheme)
    {
        letter = std::tolower(letter, locale);
    }
    for (const SchemeProtocol& known : kSchemes)
    {
        if (scheme == known.scheme)
        {
            protocol = known.protocol;
            break;
        }
    }
    return address.substr(mark + sizeof(kSchemeMark) - 1);
}

// The last "@" counts, so that a password may hold one.
std::string DevUri::takeUser(const std::string& rest)
{
    const std::string::size_type at = rest.rfind('@');
    if (at == std::string::npos)
    {
        user.clear();
        password.clear();
        return rest;
    }
    const std::string userPart = rest.substr(0, at);
    const std::string::size_type colon = userPart.find(':');
    user = userPart.substr(0, colon);
    password = colon == std::string::npos ? std::string() : userPart.substr(colon + 1);
    return rest.substr(at + 1);
}

std::string DevUri::takePath(const std::string& hostPart)
{
    const std::string::size_type slash = hostPart.find('/');
    path = slash == std::string::npos ? std::string() : hostPart.substr(slash);
    return hostPart.substr(0, slash);
}

bool DevUri::takeHost(const std::string& hostPart)
{
    isIpv6 = hostPart.empty() || hostPart.front() == '[';
    if (hostPart.empty())
    {
        return false;
    }
    if (!isIpv6)
    {
        const std::string::size_type colon = hostPart.find(':');
        host = hostPart.substr(0, colon);
        port = colon == std::string::npos ? 0 : leadingNumber(hostPart.substr(colon + 1));
        return true;
    }
    const std::string::size_type bracket = hostPart.find(']');
    if (bracket == std::string::npos)
    {
        return false;
    }
    host = hostPart.substr(1, bracket - 1);
    const std::string::size_type colon = hostPart.find(':', bracket);
    if (colon != std::string::npos)
    {
        port = leadingNumber(hostPart.substr(colon + 1));
    }
    return true;
}
