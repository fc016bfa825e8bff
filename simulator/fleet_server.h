#pragma once

#include "fleet_config.h"
#include "statistics.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace simulator
{
struct Endpoint
{
    std::string name;
    std::string address;
    std::uint16_t port = 0;
    bool tls = true;
    std::string url; // "https://127.0.0.11:8443"
};

enum class Control
{
    Off,
    On, // the statistics are served without login under /simulator/statistics
};

// Management controllers in this process, on one event loop of one thread. The constructor opens all of them or throws
// SimulatorError; from then on they answer until stop() or the destructor. All methods are for the owner's thread.
class FleetServer
{
  public:
    explicit FleetServer(const std::vector<ControllerConfig>& fleet, Control control = Control::Off);
    ~FleetServer();
    FleetServer(const FleetServer&) = delete;
    FleetServer& operator=(const FleetServer&) = delete;

    // In the order of the fleet, with the ports that the system chose.
    const std::vector<Endpoint>& endpoints() const;

    // The certificate of the authority that signed the controllers' certificates.
    const std::string& authorityPem() const;

    // Also after stop().
    std::vector<NamedStatistics> statistics() const;

    // Breaks all connections. A second call does nothing.
    void stop();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

// {"controllers":[{"name","url","address","port","tls"}]}
std::string endpointsJson(const std::vector<Endpoint>& endpoints);
} // namespace simulator
