#include "simulator/http_client.h"
#include "simulator/simulated.h"

#include <gmock/gmock.h>

#include <curl/curl.h>

#include <set>

namespace simulator_tests
{
namespace
{
using nlohmann::json;
using simulator::Authentication;
using simulator::Expand;
using simulator::TrailingSlash;

std::string messageId(const Answer& answer)
{
    const json body = parsed(answer.body);
    const auto place = json::json_pointer("/error/@Message.ExtendedInfo/0/MessageId");
    return body.is_object() && body.contains(place) ? body.at(place).get<std::string>() : "";
}

class Resources : public Simulated
{
  protected:
    // The ids of all members, page after page, and the number of pages; stops after 20 of them.
    std::vector<std::string> follow(std::string path, int& pages)
    {
        std::vector<std::string> ids;
        for (pages = 0; !path.empty() && pages < 20; ++pages)
        {
            const json page = parsed(request(url(path)).body);
            for (const json& member : page.at("Members"))
            {
                ids.push_back(member.at("@odata.id").get<std::string>());
            }
            path = page.value("Members@odata.nextLink", "");
        }
        return ids;
    }
};

TEST_F(Resources, ServeTheRootWithoutLoginAndTheRestOnlyWith)
{
    start();
    Call nobody;
    nobody.user.clear();
    EXPECT_EQ(request(url("/redfish/v1"), nobody).status, 200);
    EXPECT_EQ(request(url("/redfish/v1/"), nobody).status, 200);
    const Answer refused = request(url(kSystems), nobody);
    EXPECT_EQ(refused.status, 401);
    EXPECT_THAT(refused.headers.at("www-authenticate"), testing::StartsWith("Basic "));
    EXPECT_EQ(messageId(refused), "Base.1.4.0.NoValidSession");
    EXPECT_EQ(request(url(kSystems)).status, 200);
    Call wrong;
    wrong.password = "Secret-2";
    EXPECT_EQ(request(url(kSystems), wrong).status, 401);
    EXPECT_EQ(statistics().refusedLogins, 2U);
}

TEST_F(Resources, AnswerUnknownAddressesWithARedfishError)
{
    start();
    const Answer answer = request(url("/redfish/v1/Nothing"));
    EXPECT_EQ(answer.status, 404);
    EXPECT_EQ(messageId(answer), "Base.1.4.0.ResourceMissingAtURI");
    EXPECT_EQ(request(url(std::string(kSystems) + "/S1"),
                      []
                      {
                          Call call;
                          call.method = "DELETE";
                          return call;
                      }())
                  .status,
              405);
}

TEST_F(Resources, NeverLeaveTheFolder)
{
    start();
    for (const char* path :
         {"/redfish/v1/../../outside.json", "/redfish/v1/..%2f..%2foutside.json", "/../outside.json",
          "/redfish/v1/Systems/../../../outside", "//etc/passwd", "/redfish/v1/%00", "/redfish/v1/Systems/index.json"})
    {
        const Answer answer = request(url(path));
        EXPECT_TRUE(answer.status == 404 || answer.status == 400) << path << " gave " << answer.status;
        EXPECT_THAT(answer.body, testing::Not(testing::HasSubstr("outside\""))) << path;
    }
}

TEST_F(Resources, RefuseRequestsThatAreTooLarge)
{
    start();
    Call headers;
    headers.headers.push_back("X-Long: " + std::string(20000, 'x'));
    EXPECT_EQ(request(url(kSystems), headers).status, 431);
    Call body;
    body.method = "POST";
    body.body = std::string(200000, 'x');
    body.headers.emplace_back("Expect:");
    EXPECT_EQ(request(url(kSessions), body).status, 413);
    EXPECT_EQ(request(url("/redfish/v1/" + std::string(5000, 'x'))).status, 414);
}

TEST_F(Resources, ArePagedWithNextLinks)
{
    config.behaviour.pageSize = 2;
    config.behaviour.membersCount = simulator::MembersCount::Wrong;
    start();
    int pages = 0;
    const auto ids = follow(kSystems, pages);
    EXPECT_EQ(pages, 3);
    ASSERT_EQ(ids.size(), 5U);
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), 5U);
    EXPECT_NE(parsed(request(url(kSystems)).body).at("Members@odata.count"), 5);
}

TEST_F(Resources, ArePagedInACircleOnRequest)
{
    config.behaviour.pageSize = 2;
    config.behaviour.cyclicPaging = true;
    start();
    int pages = 0;
    follow(kSystems, pages);
    EXPECT_EQ(pages, 20);
}

TEST_F(Resources, ExpandMembersAsTheSwitchSays)
{
    const std::string path = std::string(kSystems) + "?$expand=.($levels=1)";
    start();
    EXPECT_EQ(parsed(request(url(path)).body).at("Members").at(4).at("Id"), "S5");
    EXPECT_FALSE(parsed(request(url(kSystems)).body).at("Members").at(4).contains("Id"));

    config.behaviour.expand = Expand::Ignored;
    start();
    EXPECT_FALSE(parsed(request(url(path)).body).at("Members").at(4).contains("Id"));

    config.behaviour.expand = Expand::BrokenJson;
    start();
    EXPECT_TRUE(parsed(request(url(path)).body).is_discarded());

    config.behaviour.expand = Expand::Refused;
    start();
    EXPECT_EQ(request(url(path)).status, 501);
}

TEST_F(Resources, ExpandOnlyThePageAndKeepTheWishInTheNextLink)
{
    config.behaviour.pageSize = 2;
    start();
    const json first = parsed(request(url(std::string(kSystems) + "?$expand=.")).body);
    const json second = parsed(request(url(first.at("Members@odata.nextLink").get<std::string>())).body);
    EXPECT_EQ(second.at("Members").at(0).at("Id"), "S3");
    EXPECT_EQ(second.at("Members").size(), 2U);
}

TEST_F(Resources, TreatTheTrailingSlashAsTheSwitchSays)
{
    const std::string without = kSystems;
    const std::string with = without + "/";
    config.behaviour.trailingSlash = TrailingSlash::Redirect301;
    start();
    const Answer moved = request(url(with + "?$skip=1"));
    EXPECT_EQ(moved.status, 301);
    EXPECT_EQ(moved.headers.at("location"), without + "?$skip=1");
    EXPECT_EQ(request(url(without)).status, 200);

    config.behaviour.trailingSlash = TrailingSlash::Redirect308;
    config.behaviour.canonicalPath = simulator::CanonicalPath::WithSlash;
    start();
    EXPECT_EQ(request(url(without)).headers.at("location"), with);
    EXPECT_EQ(request(url(without)).status, 308);
    EXPECT_EQ(request(url(with)).status, 200);

    config.behaviour.trailingSlash = TrailingSlash::OnlyWith;
    start();
    EXPECT_EQ(request(url(without)).status, 404);
    EXPECT_EQ(request(url(with)).status, 200);

    config.behaviour.trailingSlash = TrailingSlash::OnlyWithout;
    start();
    EXPECT_EQ(request(url(without)).status, 200);
    EXPECT_EQ(request(url(with)).status, 404);
}

TEST_F(Resources, ComeInTheTransportFormOfTheSwitches)
{
    start();
    const Answer plain = request(url(kSystems));
    EXPECT_EQ(plain.httpVersion, CURL_HTTP_VERSION_1_1);
    EXPECT_EQ(plain.headers.at("content-length"), std::to_string(plain.body.size()));

    config.behaviour.chunked = true;
    start();
    const Answer chunked = request(url(kSystems));
    EXPECT_EQ(chunked.headers.at("transfer-encoding"), "chunked");
    EXPECT_EQ(chunked.body, plain.body);

    config.behaviour.chunked = false;
    config.behaviour.gzip = true;
    config.behaviour.contentType = "text/html";
    start();
    Call unpacking;
    unpacking.gzip = true;
    const Answer packed = request(url(kSystems), unpacking);
    EXPECT_EQ(packed.headers.at("content-encoding"), "gzip");
    EXPECT_EQ(packed.headers.at("content-type"), "text/html");
    EXPECT_EQ(packed.body, plain.body);
    EXPECT_EQ(request(url(kSystems)).headers.count("content-encoding"), 0U);

    config.behaviour.httpVersion = simulator::HttpVersion::Http10;
    start();
    const Answer old = request(url(kSystems));
    EXPECT_EQ(old.httpVersion, CURL_HTTP_VERSION_1_0);
    EXPECT_EQ(old.headers.at("connection"), "close");
    EXPECT_EQ(old.body, plain.body);
}

TEST_F(Resources, SendNoBodyToHead)
{
    start();
    Call head;
    head.method = "HEAD";
    const Answer answer = request(url(kSystems), head);
    EXPECT_EQ(answer.transport, CURLE_OK);
    EXPECT_EQ(answer.status, 200);
    EXPECT_TRUE(answer.body.empty());
    EXPECT_NE(answer.headers.at("content-length"), "0");
}

TEST_F(Resources, AreMissingOnAServerWithoutRedfish)
{
    config.behaviour.noRedfish = true;
    start();
    const Answer answer = request(url("/redfish/v1"));
    EXPECT_EQ(answer.status, 404);
    EXPECT_TRUE(parsed(answer.body).is_discarded());
}

TEST_F(Resources, AreOpenWithoutAuthentication)
{
    config.behaviour.authentication = Authentication::None;
    start();
    Call nobody;
    nobody.user.clear();
    EXPECT_EQ(request(url(kSystems), nobody).status, 200);
}

TEST_F(Resources, DemandANewPasswordFirst)
{
    config.behaviour.passwordChangeRequired = true;
    start();
    const Answer answer = request(url(kSystems));
    EXPECT_EQ(answer.status, 403);
    EXPECT_EQ(messageId(answer), "Base.1.4.0.PasswordChangeRequired");
    Call wrong;
    wrong.password = "Secret-2";
    EXPECT_EQ(request(url(kSystems), wrong).status, 401);
}
} // namespace
} // namespace simulator_tests
