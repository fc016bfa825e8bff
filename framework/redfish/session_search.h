#pragma once

#include "redfish/transport.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace redfish
{
// Performs one request with the time limits set; redirects are followed.
using Perform = std::function<Exchange(const Request& request)>;

// One session of a service's collection, as the schema Session of DMTF DSP8010 describes it.
struct ListedSession
{
    std::string path;
    std::optional<std::chrono::seconds> created; // CreatedTime, by the service's clock
    std::string origin;                          // the client's address, ClientOriginIPAddress; empty when untold
};

// A request of a session that ends, also after an interrupt.
Request farewell(const std::string& method, const std::string& path, const std::string& token);

// True for a whole answer of success.
bool isOk(const Exchange& answer);

// The sessions of one user. Nothing when the collection or one of its sessions cannot be read, or it has very many.
std::vector<ListedSession> sessionsOf(const std::string& user, const std::string& collection, const std::string& token,
                                      const Perform& perform);

// The newest of them; null when it cannot be told from another.
const ListedSession* newest(const std::vector<ListedSession>& sessions);

// Those that the same client has opened at most `earlier` before its session at `own`, without that one.
std::vector<std::string> openedBefore(const std::string& own, std::chrono::seconds earlier,
                                      const std::vector<ListedSession>& sessions);
} // namespace redfish
