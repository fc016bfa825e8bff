#include "simulator/http_client.h"
#include "simulator/simulated.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <set>
#include <thread>

namespace simulator_tests
{
namespace
{
using nlohmann::json;

class Fleet : public Simulated
{
};

// Every resource that the sample servers link to is there, but for what they promise and do not have on purpose.
void collectLinks(const json& value, std::set<std::string>& links)
{
    for (const auto& item : value.items())
    {
        if (item.key() == "@odata.id" && item.value().is_string())
        {
            const std::string link = item.value().get<std::string>();
            links.insert(link.substr(0, link.find('#')));
        }
        else if (item.value().is_structured())
        {
            collectLinks(item.value(), links);
        }
    }
}

TEST_F(Fleet, OfAHundredControllersAnswersAtOnce)
{
    config.tls = true;
    config.address = "127.0.3.1";
    config.latency = std::chrono::milliseconds(50);
    server = std::make_unique<simulator::FleetServer>(simulator::copies(config, 100, simulator::CopyStep::Address));
    ASSERT_EQ(server->endpoints().size(), 100U);
    EXPECT_EQ(server->endpoints().back().address, "127.0.3.100");
    Call checking;
    checking.authorityFile = folder.write("authority.pem", server->authorityPem());

    constexpr std::size_t kClients = 25;
    std::atomic<int> good{0};
    std::vector<std::thread> clients;
    for (std::size_t client = 0; client < kClients; ++client)
    {
        clients.emplace_back(
            [&, client]
            {
                for (std::size_t i = client; i < 100; i += kClients)
                {
                    good += request(server->endpoints()[i].url + kSystems, checking).status == 200 ? 1 : 0;
                }
            });
    }
    for (std::thread& client : clients)
    {
        client.join();
    }
    EXPECT_EQ(good, 100);
    for (const auto& one : server->statistics())
    {
        EXPECT_EQ(one.values.requests, 1U) << one.name;
        EXPECT_EQ(one.values.connections, 1U) << one.name;
    }
}

TEST_F(Fleet, KeepsItsCountersApartForCopies)
{
    addFault({{"times", 1}, {"action", "status"}, {"status", 503}});
    server = std::make_unique<simulator::FleetServer>(simulator::copies(config, 2, simulator::CopyStep::Port));
    EXPECT_NE(server->endpoints()[0].port, server->endpoints()[1].port);
    for (const auto& endpoint : server->endpoints())
    {
        EXPECT_EQ(request(endpoint.url + kSystems).status, 503);
        EXPECT_EQ(request(endpoint.url + kSystems).status, 200);
    }
}

TEST_F(Fleet, OffersStatisticsOnlyWhenAsked)
{
    Call nobody;
    nobody.user.clear();
    start();
    EXPECT_EQ(request(url("/simulator/statistics"), nobody).status, 401);
    start(simulator::Control::On);
    request(url(kSystems));
    const json values = parsed(request(url("/simulator/statistics"), nobody).body).at("controllers").at(0);
    EXPECT_EQ(values.at("requests"), 1);
    EXPECT_EQ(values.at("statuses").at("200"), 1);
    EXPECT_EQ(values.at("paths").at("GET /redfish/v1/Systems"), 1);
    EXPECT_THAT(values.dump(), testing::Not(testing::HasSubstr(config.password)));
}

TEST_F(Fleet, StopsWhileClientsWait)
{
    addFault({{"action", "hang"}});
    start();
    std::thread client([target = url(kSystems)] { EXPECT_NE(request(target).transport, 0); });
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (statistics().requestsNow == 0 && std::chrono::steady_clock::now() < limit)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    server->stop();
    server->stop();
    EXPECT_EQ(statistics().requests, 1U);
    server.reset();
    client.join();
}

TEST_F(Fleet, OfTheSampleServersHasNoDeadLinks)
{
    auto fleet = simulator::loadFleet(std::string(KORVAN_SOURCE_DIR) + "/samples/fleet.json");
    std::set<std::string> dead;
    for (auto& entry : fleet)
    {
        entry.port = 0;
        entry.tls = false;
        entry.faults.clear();
        entry.behaviour = simulator::Behaviour{};
    }
    server = std::make_unique<simulator::FleetServer>(fleet);
    Call call;
    call.password = "Sample-Passw0rd";
    for (const auto& endpoint : server->endpoints())
    {
        std::set<std::string> known{"/redfish/v1"};
        std::vector<std::string> open{"/redfish/v1"};
        while (!open.empty())
        {
            const std::string path = open.back();
            open.pop_back();
            const Answer answer = request(endpoint.url + path, call);
            if (answer.status != 200)
            {
                dead.insert(endpoint.name + " " + path);
                continue;
            }
            std::set<std::string> links;
            collectLinks(parsed(answer.body), links);
            for (const std::string& link : links)
            {
                if (known.insert(link).second)
                {
                    open.push_back(link);
                }
            }
        }
        EXPECT_GT(known.size(), 15U) << endpoint.name;
    }
    EXPECT_THAT(dead, testing::ElementsAre("edge-e /redfish/v1/UpdateService/SoftwareInventory"));
}
} // namespace
} // namespace simulator_tests
