#pragma once

#include "connect_option.h"
#include "redfish/transport.h"

#include <functional>
#include <string>

namespace redfish
{
// A login session of a Redfish service (DSP0266, section "Redfish session login authentication"). The owner must close
// it: services have few sessions to give, and a leaked one locks out others.
class Session
{
  public:
    // Performs one request with the time limits set; redirects are followed.
    using Perform = std::function<Exchange(const Request& request)>;

    // Logs in at the collection. The exchange tells why it failed; `active` says whether it worked.
    Exchange open(const std::string& collection, const ConnectOption& option, const Perform& perform);

    // Deletes the session when there is one; a failure is logged.
    void close(const std::string& target, const Perform& perform);

    // Forgets a session that the service has ended by itself.
    void forget();

    bool active() const { return !token_.empty(); }
    const std::string& token() const { return token_; }

  private:
    std::string searched(const Perform& perform) const;

    std::string collection_;
    std::string user_;
    std::string token_;
    std::string location_;
};
} // namespace redfish
