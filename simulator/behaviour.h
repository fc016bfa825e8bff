#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

// How one management controller speaks. The order of each enumeration is the order of its names in controller_switches.cpp.
namespace simulator
{
enum class Authentication
{
    BasicAndSessions,
    BasicOnly,
    SessionsOnly,
    None,
};

enum class TrailingSlash
{
    Both,
    Redirect301,
    Redirect308,
    OnlyWithout,
    OnlyWith,
};

enum class CanonicalPath
{
    WithoutSlash,
    WithSlash,
};

enum class Expand
{
    Works,
    Ignored,
    BrokenJson,
    Refused,
};

enum class MembersCount
{
    Right,
    Wrong,
    Missing,
};

enum class HttpVersion
{
    Http11,
    Http10,
};

enum class TlsVersion
{
    Any,
    Tls10,
    Tls11,
    Tls12,
    Tls13,
};

enum class CertificateKind
{
    Valid,
    Expired,
    WrongHost,
    SelfSigned,
};

enum class CimService
{
    Off,
    Works,
    AccessDenied,
    UnknownClass,
    Failing,
    NoChassis,
    BrokenXml,
    DeepXml,
};

struct Behaviour
{
    Authentication authentication = Authentication::BasicAndSessions;
    bool passwordChangeRequired = false;

    unsigned sessionStatus = 201;
    bool sessionLocation = true;
    bool sessionNeedsBasic = false;
    std::size_t maxSessions = 16;

    TrailingSlash trailingSlash = TrailingSlash::Both;
    CanonicalPath canonicalPath = CanonicalPath::WithoutSlash; // where the redirects lead

    Expand expand = Expand::Works;
    std::size_t pageSize = 0; // 0: a collection is one page
    MembersCount membersCount = MembersCount::Right;
    bool cyclicPaging = false;

    HttpVersion httpVersion = HttpVersion::Http11;
    bool keepAlive = true;
    bool chunked = false;
    bool gzip = false;
    std::string contentType = "application/json; charset=utf-8"; // empty: no such header
    std::size_t maxParallelRequests = 0;                         // above it 503; 0: no limit

    TlsVersion maxTls = TlsVersion::Any;
    bool oldCipher = false; // AES256-SHA over TLS 1.2 and nothing else
    CertificateKind certificate = CertificateKind::Valid;
    bool noRedfish = false;

    CimService cim = CimService::Off;
    // Properties of its chassis by name; one that is missing has no value there.
    std::map<std::string, std::string> cimChassis = {
        {"Manufacturer", "Example Works"}, {"Model", "Node X20"}, {"PartNumber", "SN00X20"}, {"SKU", "7X20CTO1WW"}};
};
} // namespace simulator
