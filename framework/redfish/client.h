#pragma once

#include "connect_option.h"
#include "redfish/reply.h"

#include <nlohmann/json_fwd.hpp>

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace redfish
{
class Transport;

// Bounds of one client. The limits of connecting, of one request and of the target as a whole
// come from the connection's option.
struct ClientLimits
{
    std::chrono::milliseconds backOff{1000};      // before the first retry; doubles with each
    std::chrono::milliseconds longestWait{30000}; // of the back-off; a Retry-After counts as it is
    int retries = 3;
    int redirects = 4;
    std::size_t largestBody = std::size_t{16} * 1024 * 1024; // bytes, decoded
};

// Asks one target's Redfish service (DMTF DSP0266).
//
// One request at a time over one kept-alive connection, because controllers serve few at once. A GET is repeated a
// bounded number of times when the service is busy (429, 502, 503, 504; Retry-After is honoured) or the connection was
// cut. Redirects are followed to the same scheme, host and port only. The target's time limit is the
// option's deadline, or begins with the first request. A requested interrupt ends any wait.
//
// Login: HTTP Basic; where the service refuses that and offers sessions, a session, which is deleted in the
// destructor, also after a failure or an interrupt.
//
// After a failure that will not go away (login, certificate, time limit, interrupt, target gone) every further
// request fails at once with the same result. Used by one thread at a time.
class Client
{
  public:
    explicit Client(const ConnectOption& option, const ClientLimits& limits = ClientLimits());

    // Over another transport, for tests.
    Client(const ConnectOption& option, const ClientLimits& limits, std::unique_ptr<Transport> transport);
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    // Reads one resource. `path` is a path on the service, with or without query; a fragment is dropped. `document`
    // is null unless the reply is ok.
    Reply getJson(const std::string& path, nlohmann::json& document);

    // Where the service takes new sessions; from then on a refused Basic login leads there.
    void offerSessions(const std::string& sessionsPath);

    // False when further requests cannot succeed.
    bool usable() const;

    // The target as texts name it, "host:port".
    const std::string& target() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

// The target of an option as texts name it: host and, when given, port; IPv6 hosts in brackets.
std::string targetName(const ConnectOption& option);

// A link as a request path: no fragment, blanks encoded. Empty when it is no absolute path on the service.
std::string requestPath(const std::string& link);
} // namespace redfish
