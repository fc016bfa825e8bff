#pragma once

#include "connect_option.h"
#include "redfish/transport.h"

#include <cstddef>
#include <memory>

namespace redfish
{
// The transport over libcurl: HTTP/1.1 and 1.0, kept-alive connections, gzip and chunked bodies, TLS 1.2 or later (older
// only when the option asks) with the certificate verified as the option says, before anything is sent. Proxies of the environment are not used: management networks are
// reached directly, and a login must not pass through a third party.
class CurlTransport : public Transport
{
  public:
    // `largestBody`: bytes of a decoded body; more ends the exchange.
    CurlTransport(const ConnectOption& option, std::size_t largestBody);
    ~CurlTransport() override;
    CurlTransport(const CurlTransport&) = delete;
    CurlTransport& operator=(const CurlTransport&) = delete;

    Exchange perform(const Request& request) override;

  private:
    struct State;
    std::unique_ptr<State> state_;
};
} // namespace redfish
