#include "redfish/service_reader.h"

#include "framework/redfish/fake_transport.h"
#include "interrupt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using redfish::Client;
using redfish::Identity;
using redfish::ServiceRoot;
using testing::HasSubstr;

namespace
{
class ServiceReaderTest : public testing::Test
{
  protected:
    ServiceReaderTest()
    {
        interrupt::reset();
        option_.host = "bmc.example";
        limits_.backOff = std::chrono::milliseconds(1);
        limits_.retries = 1;
        put("/redfish/v1/", R"({"RedfishVersion": "1.15.0", "Systems": {"@odata.id": "/s"},
            "Managers": {"@odata.id": "/m"}, "Chassis": {"@odata.id": "/c"}, "UpdateService": {"@odata.id": "/u"}})");
        put("/s", R"({"Members": [{"@odata.id": "/s/1"}]})");
        put("/m", R"({"Members": [{"@odata.id": "/m/1"}]})");
        put("/s/1", R"({"@odata.id": "/s/1", "SKU": "7X20", "Model": "Halvorsen H2"})");
        put("/m/1", R"({"@odata.id": "/m/1", "Model": "PMX3"})");
        put("/u", R"({"FirmwareInventory": {"@odata.id": "/u/f"}, "SoftwareInventory": {"@odata.id": "/u/s"}})");
        put("/u/f", R"({"Members": [{"@odata.id": "/u/f/a"}, {"@odata.id": "/u/f/b"}]})");
        put("/u/f/a", R"({"@odata.id": "/u/f/a", "Id": "A", "Version": "1"})");
        put("/u/f/b", R"({"@odata.id": "/u/f/b", "Id": "B", "Version": "2"})");
    }

    void put(const std::string& path, const std::string& json) { service_.resources[path] = json; }

    KorvanResult open()
    {
        client_ = std::make_unique<Client>(option_, limits_, std::make_unique<FakeTransport>(service_));
        return redfish::openService(*client_, root_);
    }

    KorvanResult identify()
    {
        EXPECT_TRUE(open().succeeded());
        return redfish::readIdentity(*client_, root_, redfish::ManagerUse::Read, identity_);
    }

    KorvanResult readItems()
    {
        EXPECT_TRUE(open().succeeded());
        items_.clear();
        return redfish::readItems(*client_, root_, nullptr, items_);
    }

    std::string ids() const
    {
        std::string joined;
        for (const service::ScanItem& item : items_)
        {
            joined += item.id + " ";
        }
        return joined;
    }

    ConnectOption option_;
    redfish::ClientLimits limits_;
    FakeTransport::Service service_;
    std::unique_ptr<Client> client_;
    ServiceRoot root_;
    Identity identity_;
    std::vector<service::ScanItem> items_;
};
} // namespace

TEST_F(ServiceReaderTest, OpensAServiceThatKnowsItsRootOnlyWithoutTheSlash)
{
    service_.resources["/redfish/v1"] = service_.resources["/redfish/v1/"];
    service_.resources.erase("/redfish/v1/");
    EXPECT_TRUE(open().succeeded());
    EXPECT_EQ("/s", root_.systems);
}

TEST_F(ServiceReaderTest, SaysThatThereIsNoRedfishService)
{
    for (const char* body : {"<html></html>", "{}", "[]", "{\"Name\": \"web\"}", ""})
    {
        put("/redfish/v1/", body);
        EXPECT_EQ(52U, open().number()) << body;
    }
    service_.resources.clear();
    const KorvanResult result = open();
    EXPECT_EQ(52U, result.number());
    EXPECT_THAT(result.message, HasSubstr("bmc.example: opening the Redfish service"));
}

TEST_F(ServiceReaderTest, TakesTheFirstSystemWithAMachineTypeAndTheManagerOfIt)
{
    put("/s", R"({"Members": [{"@odata.id": "/s/0"}, {"@odata.id": "/s/1"}]})");
    put("/s/0", R"({"@odata.id": "/s/0", "SKU": "....", "Links": {"ManagedBy": [{"@odata.id": "/m/0"}]}})");
    put("/m", R"({"Members": [{"@odata.id": "/m/0"}, {"@odata.id": "/m/1"}]})");
    put("/m/0", R"({"@odata.id": "/m/0", "Model": "DPU", "Links": {"ManagerForServers": [{"@odata.id": "/s/0"}]}})");
    put("/m/1", R"({"@odata.id": "/m/1", "Model": "PMX2", "Links": {"ManagerForServers": [{"@odata.id": "/s/1/"}]}})");
    EXPECT_TRUE(identify().succeeded());
    EXPECT_EQ("7X20", identity_.machineType);
    EXPECT_EQ("Halvorsen H2", identity_.model);
    EXPECT_EQ("PMX2", identity_.bmcType);
}

TEST_F(ServiceReaderTest, AManagerThatTheSystemNamesCountsFirst)
{
    put("/s/1", R"({"@odata.id": "/s/1", "SKU": "7X20", "Links": {"ManagedBy": [{"@odata.id": "/m/9"}]}})");
    put("/m/9", R"({"@odata.id": "/m/9", "Model": "AMI"})");
    EXPECT_TRUE(identify().succeeded());
    EXPECT_EQ("AMI", identity_.bmcType);
}

TEST_F(ServiceReaderTest, TheChassisMayHoldTheMachineType)
{
    put("/s/1", R"({"@odata.id": "/s/1", "SKU": "123456", "Links": {"Chassis": [{"@odata.id": "/c/1"}]}})");
    put("/c/1", R"({"@odata.id": "/c/1", "PartNumber": "7Y41CTO1WW"})");
    EXPECT_TRUE(identify().succeeded());
    EXPECT_EQ("7Y41", identity_.machineType);
}

TEST_F(ServiceReaderTest, MissingManagersAreNoFailure)
{
    service_.resources.erase("/m");
    EXPECT_TRUE(identify().succeeded());
    EXPECT_EQ("", identity_.bmcType);
}

TEST_F(ServiceReaderTest, ReadsPagesAndBreaksACircleOfThem)
{
    put("/u/f",
        R"({"Members": [{"@odata.id": "/u/f/a"}], "Members@odata.count": 99, "Members@odata.nextLink": "/u/f?2"})");
    put("/u/f?2",
        R"({"Members": [{"@odata.id": "/u/f/b"}, {"@odata.id": "/u/f/a"}], "Members@odata.nextLink": "/u/f"})");
    EXPECT_TRUE(readItems().succeeded());
    EXPECT_EQ("A B ", ids());
    EXPECT_EQ(1U, service_.count("GET", "/u/f"));
}

TEST_F(ServiceReaderTest, TakesNoneOfACollectionThatIsTooLargeToBeTrue)
{
    nlohmann::json members = nlohmann::json::array();
    for (int i = 0; i <= 5000; ++i)
    {
        members.push_back({{"@odata.id", "/u/f/" + std::to_string(i)}, {"Id", std::to_string(i)}});
    }
    put("/u/f", nlohmann::json{{"Members", members}}.dump());
    const KorvanResult result = readItems();
    EXPECT_EQ(60U, result.number());
    EXPECT_THAT(result.message, testing::HasSubstr("/u/f: the answer cannot be read, the collection has more than"));
    EXPECT_EQ("", ids());
    members.erase(members.begin());
    put("/u/f", nlohmann::json{{"Members", members}}.dump());
    EXPECT_TRUE(readItems().succeeded());
    EXPECT_EQ(5000U, items_.size());
}

TEST_F(ServiceReaderTest, ACollectionMayBeMissingOrHaveNoMembers)
{
    service_.resources.erase("/u/s");
    EXPECT_TRUE(readItems().succeeded());
    EXPECT_EQ("A B ", ids());
    put("/u/f", R"({"Name": "empty"})");
    EXPECT_TRUE(readItems().succeeded());
    EXPECT_EQ("", ids());
}

TEST_F(ServiceReaderTest, TellsThatOnlySoftwareIsThere)
{
    put("/u/s", R"({"Members": [{"@odata.id": "/u/s/x"}]})");
    put("/u/s/x", R"({"Id": "X"})");
    const auto expectTold = [this](const char* how)
    {
        const KorvanResult result = readItems();
        EXPECT_EQ(60U, result.number()) << how;
        EXPECT_THAT(result.messageText(), testing::HasSubstr("the service has no firmware inventory under /u/f"))
            << how;
        EXPECT_EQ("X ", ids()) << how;
        EXPECT_EQ("Software", items_.front().category) << how;
    };
    service_.resources.erase("/u/f/a");
    service_.resources.erase("/u/f/b");
    expectTold("no member is there");
    put("/u/f", R"({"Members": null})");
    expectTold("no members");
    service_.resources.erase("/u/f");
    expectTold("no collection");
}

TEST_F(ServiceReaderTest, ASystemThatIsNotThereIsTheReasonForHavingNoMachineType)
{
    service_.resources.erase("/s/1");
    const KorvanResult result = identify();
    EXPECT_EQ(60U, result.number());
    EXPECT_THAT(result.messageText(), testing::HasSubstr("reading /s/1: the service does not have it"));
}

TEST_F(ServiceReaderTest, AsksWithASlashWhereTheServiceWantsOne)
{
    const std::map<std::string, std::string> plain = service_.resources;
    service_.resources.clear();
    for (const auto& [path, json] : plain)
    {
        service_.resources[path.back() == '/' ? path : path + "/"] = json;
    }
    EXPECT_TRUE(readItems().succeeded());
    EXPECT_EQ("A B ", ids());
    EXPECT_EQ(1U, service_.count("GET", "/u")) << "once is enough to know";
    EXPECT_EQ(0U, service_.count("GET", "/u/f"));
}

TEST_F(ServiceReaderTest, ExpandsOnlyWhereThatIsAdvertised)
{
    EXPECT_TRUE(readItems().succeeded());
    EXPECT_EQ(0U, service_.count("GET", "/u/f?$expand=."));
    put("/redfish/v1/", R"({"RedfishVersion": "1.15.0", "UpdateService": {"@odata.id": "/u"},
        "ProtocolFeaturesSupported": {"ExpandQuery": {"NoLinks": true}}})");
    put("/u/f?$expand=.", R"({"Members": [{"@odata.id": "/u/f/a", "Id": "A"}, {"@odata.id": "/u/f/b", "Id": "B"}]})");
    service_.requests.clear();
    EXPECT_TRUE(readItems().succeeded());
    EXPECT_EQ("A B ", ids());
    EXPECT_EQ(0U, service_.count("GET", "/u/f/a"));
}

TEST_F(ServiceReaderTest, ReadsMembersSinglyWhenExpandIsIgnoredOrBroken)
{
    put("/redfish/v1/", R"({"RedfishVersion": "1.15.0", "UpdateService": {"@odata.id": "/u"},
        "ProtocolFeaturesSupported": {"ExpandQuery": {"ExpandAll": true}}})");
    for (const char* answer :
         {R"({"Members": [{"@odata.id": "/u/f/a"}, {"@odata.id": "/u/f/b"}]})", "{\"Members\": [{"})
    {
        put("/u/f?$expand=*", answer);
        EXPECT_TRUE(readItems().succeeded());
        EXPECT_EQ("A B ", ids()) << answer;
    }
    put("/u/s", R"({"Members": []})");
    service_.requests.clear();
    EXPECT_TRUE(readItems().succeeded());
    EXPECT_EQ(0U, service_.count("GET", "/u/s?$expand=*"));
    EXPECT_EQ(1U, service_.count("GET", "/u/s"));
}

TEST_F(ServiceReaderTest, KeepsWhatWasReadWhenAPartFails)
{
    put("/u/f/a", "{\"Id\": ");
    const KorvanResult result = readItems();
    EXPECT_EQ(60U, result.number());
    EXPECT_THAT(result.message, HasSubstr("/u/f/a"));
    EXPECT_EQ("B ", ids());
}

TEST_F(ServiceReaderTest, AMemberThatIsGoneIsNoFailure)
{
    service_.resources.erase("/u/f/a");
    EXPECT_TRUE(readItems().succeeded());
    EXPECT_EQ("B ", ids());
}

TEST_F(ServiceReaderTest, TheLoginShowsAtAResourceThatNeedsOne)
{
    ASSERT_TRUE(open().succeeded());
    EXPECT_TRUE(redfish::checkLogin(*client_, root_).succeeded());
    service_.rules.push_back(firstTimes("/s", 1, answerWith(401)));
    EXPECT_EQ(12U, redfish::checkLogin(*client_, root_).number());
}

TEST_F(ServiceReaderTest, OddShapesAreReadWithoutHarm)
{
    put("/s", R"({"Members": {"a": 1}})");
    put("/m", R"([1, 2, 3])");
    put("/u/f",
        R"({"Members": [7, null, "text", {"@odata.id": 3}, {"@odata.id": "/u/f/a"}], "Members@odata.nextLink": 9})");
    put("/u/f/a", R"(["not an object"])");
    EXPECT_TRUE(identify().succeeded());
    EXPECT_EQ("", identity_.machineType);
    EXPECT_TRUE(readItems().succeeded());
    EXPECT_EQ("", ids());
}
