#include "simulator/fleet_config.h"
#include "simulator/loopback.h"
#include "simulator/simulated.h"
#include "simulator/simulator_error.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace simulator_tests
{
namespace
{
using simulator::SimulatorError;

class Configuration : public Simulated
{
  protected:
    std::vector<simulator::ControllerConfig> load(const std::string& content) const
    {
        return simulator::loadFleet(folder.write("fleet.json", content));
    }

    std::string errorOf(const std::string& content) const
    {
        try
        {
            load(content);
        }
        catch (const SimulatorError& error)
        {
            return error.what();
        }
        return "";
    }
};

TEST_F(Configuration, RefusesAddressesBeyondLoopback)
{
    for (const char* address : {"0.0.0.0", "192.0.2.1", "10.0.0.1", "::", "::ffff:127.0.0.1", "localhost", "",
                                "128.0.0.1", "127.0.0.1 ", "2001:db8::1"})
    {
        config.address = address;
        EXPECT_THROW(start(), SimulatorError) << address;
    }
    EXPECT_THROW(simulator::parseListenPlace("0.0.0.0:8443"), SimulatorError);
    EXPECT_THROW(simulator::parseListenPlace("127.0.0.1"), SimulatorError);
    EXPECT_THROW(simulator::parseListenPlace("127.0.0.1:65536"), SimulatorError);
    EXPECT_EQ(simulator::parseListenPlace("[::1]:80").address, "::1");
}

TEST_F(Configuration, MakesCopiesOnConsecutiveAddressesOrPorts)
{
    config.address = "127.0.1.254";
    config.port = 8443;
    const auto byAddress = simulator::copies(config, 3, simulator::CopyStep::Address);
    EXPECT_EQ(byAddress[2].address, "127.0.2.0");
    EXPECT_EQ(byAddress[2].name, "one-3");
    EXPECT_EQ(byAddress[2].port, 8443);
    const auto byPort = simulator::copies(config, 3, simulator::CopyStep::Port);
    EXPECT_EQ(byPort[2].address, "127.0.1.254");
    EXPECT_EQ(byPort[2].port, 8445);
    config.port = 65534;
    EXPECT_THROW(simulator::copies(config, 3, simulator::CopyStep::Port), SimulatorError);
    config.address = "127.255.255.253";
    EXPECT_THROW(simulator::copies(config, 3, simulator::CopyStep::Address), SimulatorError);
}

TEST_F(Configuration, MergesDefaultsFolderAndEntry)
{
    folder.write("simulator.json", R"({"latency_ms":7,"behaviour":{"page_size":3,"expand":"ignored"}})");
    const auto fleet = load(R"({"defaults":{"user":"u","password":"p","latency_ms":1,"behaviour":{"page_size":9}},
        "controllers":[{"folder":".","name":"x","behaviour":{"expand":"broken_json"},"count":2}]})");
    ASSERT_EQ(fleet.size(), 2U);
    EXPECT_EQ(fleet[1].name, "x-2");
    EXPECT_EQ(fleet[1].user, "u");
    EXPECT_EQ(fleet[1].latency.count(), 7);
    EXPECT_EQ(fleet[1].behaviour.pageSize, 3U);
    EXPECT_EQ(fleet[1].behaviour.expand, simulator::Expand::BrokenJson);
}

TEST_F(Configuration, NamesWhatIsWrong)
{
    const std::string base = R"({"controllers":[{"folder":".","user":"u","password":"Hidden-9",)";
    EXPECT_THAT(errorOf(base + R"("lattency_ms":1}]})"), testing::HasSubstr("\"lattency_ms\" is not known"));
    EXPECT_THAT(errorOf(base + R"("port":70000}]})"), testing::HasSubstr("\"port\" must be"));
    EXPECT_THAT(errorOf(base + R"("behaviour":{"expand":"maybe"}}]})"), testing::HasSubstr("works, ignored"));
    EXPECT_THAT(errorOf(base + R"("faults":[{"action":"status","path":"("}]}]})"),
                testing::AllOf(testing::HasSubstr("fault 1"), testing::HasSubstr("regular expression")));
    EXPECT_THAT(errorOf(base + R"("faults":[{"path":"x"}]}]})"), testing::HasSubstr("\"action\" is missing"));
    EXPECT_THAT(errorOf(R"({"controllers":[{"folder":"."}]})"), testing::HasSubstr("\"user\""));
    EXPECT_THAT(errorOf(R"({"controllers":[]})"), testing::HasSubstr("fleet.json"));
    EXPECT_THAT(errorOf("{"), testing::HasSubstr("not valid JSON"));
    EXPECT_THAT(errorOf(base + R"("password":1}]})"), testing::Not(testing::HasSubstr("Hidden-9")));
}

TEST_F(Configuration, NamesAMissingOrBrokenResource)
{
    config.folder = folder.path() + "/nowhere";
    EXPECT_THROW(start(), SimulatorError);
    config.folder = folder.path();
    folder.write("redfish/v1/Broken/index.json", "{");
    try
    {
        start();
        FAIL() << "started";
    }
    catch (const SimulatorError& error)
    {
        EXPECT_THAT(error.what(), testing::HasSubstr("Broken"));
    }
}

TEST_F(Configuration, NamesAnAddressThatIsTaken)
{
    start();
    config.port = server->endpoints().front().port;
    EXPECT_THROW(simulator::FleetServer({config}), SimulatorError);
}

TEST_F(Configuration, OfTheSampleServersIsComplete)
{
    const std::string samples = std::string(KORVAN_SOURCE_DIR) + "/samples/";
    auto fleet = simulator::loadFleet(samples + "fleet.json");
    ASSERT_EQ(fleet.size(), 5U);
    for (auto& entry : fleet)
    {
        entry.port = 0;
        EXPECT_EQ(simulator::loadSingle(entry.folder + "/").name, entry.name);
    }
    EXPECT_NO_THROW(simulator::FleetServer{fleet});
}
} // namespace
} // namespace simulator_tests
