#include "fleet_server.h"

#include "connection.h"
#include "loopback.h"
#include "simulator_error.h"
#include "tls_certificate.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>

#include <nlohmann/json.hpp>

#include <map>
#include <thread>

namespace simulator
{
namespace
{
namespace asio = boost::asio;
using asio::ip::tcp;
using Error = boost::system::error_code;

// Accepts one controller's connections. Owned by the server's state, which outlives the event loop's run.
class Listener
{
  public:
    Listener(asio::io_context& loop, std::shared_ptr<Service> service)
        : acceptor_(loop), pause_(loop), service_(std::move(service))
    {
    }

    tcp::endpoint open()
    {
        const ControllerConfig& config = service_->controller->config();
        const tcp::endpoint place(loopbackAddress(config.address), config.port);
        Error error;
        acceptor_.open(place.protocol(), error);
        if (!error)
        {
            acceptor_.set_option(asio::socket_base::reuse_address(true), error);
        }
        if (!error)
        {
            acceptor_.bind(place, error);
        }
        if (!error)
        {
            acceptor_.listen(asio::socket_base::max_listen_connections, error);
        }
        if (error)
        {
            throw SimulatorError("controller '" + config.name + "' cannot listen on " + config.address + " port " +
                                 std::to_string(config.port) + ": " + error.message());
        }
        return acceptor_.local_endpoint();
    }

    void accept()
    {
        acceptor_.async_accept(
            [this](const Error& error, tcp::socket socket)
            {
                if (error == asio::error::operation_aborted)
                {
                    return;
                }
                if (error)
                {
                    // Mostly a shortage of file descriptors, which needs a moment to pass.
                    pause_.expires_after(std::chrono::milliseconds(50));
                    pause_.async_wait(
                        [this](const Error& stopped)
                        {
                            if (!stopped)
                            {
                                accept();
                            }
                        });
                    return;
                }
                Error ignored;
                socket.set_option(tcp::no_delay(true), ignored);
                serveConnection(std::move(socket), service_);
                accept();
            });
    }

  private:
    tcp::acceptor acceptor_;
    asio::steady_timer pause_;
    std::shared_ptr<Service> service_;
};

std::string urlOf(const tcp::endpoint& place, bool tls)
{
    const std::string address = place.address().to_string();
    return std::string(tls ? "https://" : "http://") + (place.address().is_v6() ? "[" + address + "]" : address) + ":" +
           std::to_string(place.port());
}
} // namespace

struct FleetServer::State
{
    CertificateAuthority authority;
    asio::io_context loop{1};
    std::vector<std::shared_ptr<Service>> services;
    std::vector<std::unique_ptr<Listener>> listeners;
    std::vector<Endpoint> endpoints;
    std::thread thread;

    std::vector<NamedStatistics> statistics() const
    {
        std::vector<NamedStatistics> all;
        for (std::size_t i = 0; i < services.size(); ++i)
        {
            all.push_back({endpoints[i].name, endpoints[i].url, services[i]->controller->statistics().snapshot()});
        }
        return all;
    }
};

FleetServer::FleetServer(const std::vector<ControllerConfig>& fleet, Control control)
    : state_(std::make_unique<State>())
{
    std::map<std::string, std::shared_ptr<const ResourceStore>> stores;
    for (const ControllerConfig& config : fleet)
    {
        std::shared_ptr<const ResourceStore>& store = stores[config.folder];
        if (!store)
        {
            store = ResourceStore::load(config.folder);
        }
        auto service = std::make_shared<Service>();
        service->controller = std::make_shared<Controller>(config, store);
        if (config.tls)
        {
            service->tls = state_->authority.serverContext(config.name, config.address, config.behaviour);
        }
        if (control == Control::On)
        {
            service->control = [state = state_.get()] { return statisticsJson(state->statistics()); };
        }
        auto listener = std::make_unique<Listener>(state_->loop, service);
        const tcp::endpoint place = listener->open();
        state_->endpoints.push_back(
            {config.name, place.address().to_string(), place.port(), config.tls, urlOf(place, config.tls)});
        state_->services.push_back(std::move(service));
        state_->listeners.push_back(std::move(listener));
    }
    for (const auto& listener : state_->listeners)
    {
        listener->accept();
    }
    state_->thread = std::thread([state = state_.get()] { state->loop.run(); });
}

FleetServer::~FleetServer()
{
    stop();
}

const std::vector<Endpoint>& FleetServer::endpoints() const
{
    return state_->endpoints;
}

const std::string& FleetServer::authorityPem() const
{
    return state_->authority.pem();
}

std::vector<NamedStatistics> FleetServer::statistics() const
{
    return state_->statistics();
}

void FleetServer::stop()
{
    state_->loop.stop();
    if (state_->thread.joinable())
    {
        state_->thread.join();
    }
    state_->listeners.clear();
}

std::string endpointsJson(const std::vector<Endpoint>& endpoints)
{
    nlohmann::json controllers = nlohmann::json::array();
    for (const Endpoint& endpoint : endpoints)
    {
        controllers.push_back({{"name", endpoint.name},
                               {"url", endpoint.url},
                               {"address", endpoint.address},
                               {"port", endpoint.port},
                               {"tls", endpoint.tls}});
    }
    return nlohmann::json{{"controllers", std::move(controllers)}}.dump(2) + "\n";
}
} // namespace simulator
