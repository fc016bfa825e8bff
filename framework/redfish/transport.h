#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace redfish
{
// How one request proves who asks.
enum class Login
{
    None,
    Basic,
    Token,
};

enum class InterruptUse
{
    Abort,  // a requested interrupt ends the exchange
    Finish, // it ends the exchange some seconds later: broken off, a login would leave a session that nobody can delete
    Ignore, // the exchange runs on to its time limit, for cleaning up
};

enum class ConnectionUse
{
    Reuse,
    Fresh,
};

struct Request
{
    std::string method = "GET";       // "GET", "POST" or "DELETE"
    std::string path;                 // absolute path on the service, with its query
    std::string body;                 // may hold a password
    std::vector<std::string> headers; // "Name: value", instead of those of a Redfish request; none for a login
    Login login = Login::None;
    std::string token; // for Login::Token
    std::chrono::milliseconds connectLimit{0};
    std::chrono::milliseconds timeLimit{0};
    InterruptUse interruptUse = InterruptUse::Abort;
    ConnectionUse connectionUse = ConnectionUse::Reuse;
};

enum class TransportFault
{
    None,
    Interrupted,
    TimeLimit,
    NameNotFound,
    Unreachable,
    Certificate, // the service's certificate was refused
    CaFile,      // the file to verify against cannot be used
    Tls,
    Cut, // the connection ended before the answer was whole
    TooLarge,
    Malformed, // no HTTP answer, or one that cannot be decoded
};

// How long a login may still take when its target's time is over or the user has interrupted the run.
constexpr std::chrono::seconds kFinishTime{15};

// What came back. `fault` None means that a whole HTTP answer arrived, whatever its status. With another fault the fields
// hold what had arrived until then; each header counts only when its line was whole.
struct Exchange
{
    TransportFault fault = TransportFault::None;
    std::string detail;  // the library's words for the fault
    std::string refusal; // with Certificate: why it is not trusted and what to do, when that is known better
    int status = 0;
    std::string body;
    std::string location;        // path on the same service; empty when there is none or it leads elsewhere
    bool leadsElsewhere = false; // a Location of another host, port or scheme
    std::string token;           // X-Auth-Token
    std::string authenticate;    // WWW-Authenticate, lower case
    std::chrono::seconds retryAfter{0};
    bool reusedConnection = false;
    bool connected = false; // the connection stood, so that the service may have got the request
    std::chrono::milliseconds duration{0};
};

// One HTTP exchange with one service; redirects are reported, never followed. Used by one thread at a time.
class Transport
{
  public:
    virtual ~Transport() = default;

    virtual Exchange perform(const Request& request) = 0;
};
} // namespace redfish
