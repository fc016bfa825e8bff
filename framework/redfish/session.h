#pragma once

#include "connect_option.h"
#include "redfish/session_search.h"

#include <chrono>
#include <optional>
#include <string>

namespace redfish
{
// A login session of a Redfish service (DSP0266, section "Redfish session login authentication"). The owner must close
// it: services have few sessions to give, and a leaked one locks out others.
class Session
{
  public:
    // Logs in at the collection. The exchange tells why it failed; `active` says whether it worked: it did as soon as the
    // token has arrived, whatever became of the rest of the answer. After a lost login, the next one that works also
    // deletes the session that the lost one has left.
    Exchange open(const std::string& collection, const ConnectOption& option, const Perform& perform);

    // Deletes the session when there is one; a failure is logged and told as a remark on the target.
    void close(const std::string& target, const Perform& perform);

    // As close, for a session that the service seems to have ended by itself: nothing is said.
    void drop(const Perform& perform);

    bool active() const { return !token_.empty(); }
    const std::string& token() const { return token_; }

    // Logins whose answer broke off before the token: the service may hold a session that nobody knows.
    int lost() const { return lost_; }

  private:
    void find(const Perform& perform);
    void forget();

    std::string collection_;
    std::string user_;
    std::string token_;
    std::string location_;
    int lost_ = 0;
    std::optional<std::chrono::steady_clock::time_point>
        firstLost_; // when the first lost login began, until it is cleaned
};
} // namespace redfish
