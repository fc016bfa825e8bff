#include "simulator/http_client.h"
#include "simulator/simulated.h"

#include <curl/curl.h>

#include <chrono>
#include <thread>

namespace simulator_tests
{
namespace
{
using nlohmann::json;

class Faults : public Simulated
{
  protected:
    Answer withFault(const json& fault, const Call& call = {})
    {
        config.faults.clear();
        addFault(fault);
        start();
        return request(url(kSystems), call);
    }
};

TEST_F(Faults, AreCountedByPath)
{
    addFault(
        {{"path", "/Systems$"}, {"skip", 1}, {"times", 2}, {"action", "status"}, {"status", 503}, {"retry_after", 3}});
    start();
    EXPECT_EQ(request(url(kSystems)).status, 200);
    EXPECT_EQ(request(url(std::string(kSystems) + "/S1")).status, 200);
    const Answer busy = request(url(kSystems));
    EXPECT_EQ(busy.status, 503);
    EXPECT_EQ(busy.headers.at("retry-after"), "3");
    EXPECT_EQ(request(url(kSystems)).status, 503);
    EXPECT_EQ(request(url(kSystems)).status, 200);
    EXPECT_EQ(statistics().faults, 2U);
}

TEST_F(Faults, GoOnForEverAfterTheSkippedRequests)
{
    EXPECT_EQ(withFault({{"skip", 1}, {"action", "status"}, {"status", 404}}).status, 200);
    EXPECT_EQ(request(url(kSystems)).status, 404);
    EXPECT_EQ(request(url(kSystems)).status, 404);
}

TEST_F(Faults, ApplyToTheirMethodOnly)
{
    EXPECT_EQ(withFault({{"method", "POST"}, {"action", "status"}, {"status", 500}}).status, 200);
    EXPECT_EQ(withFault({{"method", "GET"}, {"action", "status"}, {"status", 429}}).status, 429);
}

TEST_F(Faults, DelayAnswers)
{
    config.latency = std::chrono::milliseconds(40);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(withFault({{"action", "slow"}, {"delay_ms", 60}}).status, 200);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(100));
}

TEST_F(Faults, HangUntilTheClientGivesUp)
{
    Call hasty;
    hasty.timeoutMs = 200;
    EXPECT_EQ(withFault({{"action", "hang"}}, hasty).transport, CURLE_OPERATION_TIMEDOUT);
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (statistics().requestsNow != 0 && std::chrono::steady_clock::now() < limit)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_EQ(statistics().requestsNow, 0U);
}

TEST_F(Faults, CutTheConnection)
{
    const Answer before = withFault({{"action", "cut_before_headers"}});
    EXPECT_TRUE(before.transport == CURLE_RECV_ERROR || before.transport == CURLE_GOT_NOTHING) << before.transport;
    EXPECT_EQ(withFault({{"action", "empty_reply"}}).transport, CURLE_GOT_NOTHING);
    const Answer head = withFault({{"action", "cut_in_headers"}});
    // The client library may take such an answer for one without a body.
    EXPECT_EQ(head.headers.count("content-length"), 0U);
    EXPECT_EQ(head.bodyBytes, 0U);
    const Answer body = withFault({{"action", "cut_in_body"}});
    EXPECT_EQ(body.transport, CURLE_PARTIAL_FILE);
    EXPECT_GT(body.bodyBytes, 0U);
    const Answer nine = withFault({{"action", "cut_after_bytes"}, {"bytes", 9}});
    EXPECT_NE(nine.transport, CURLE_OK);
}

TEST_F(Faults, CutALongBodyAfterSomeBytes)
{
    config.behaviour.chunked = true;
    const Answer answer = withFault({{"action", "cut_after_bytes"}, {"bytes", 400}});
    EXPECT_NE(answer.transport, CURLE_OK);
    EXPECT_GT(answer.bodyBytes, 0U);
    EXPECT_LT(answer.bodyBytes, 400U);
}

TEST_F(Faults, SpoilTheBody)
{
    const Answer broken = withFault({{"action", "broken_json"}});
    EXPECT_EQ(broken.status, 200);
    EXPECT_TRUE(parsed(broken.body).is_discarded());
    const Answer empty = withFault({{"action", "empty_body"}});
    EXPECT_EQ(empty.status, 200);
    EXPECT_EQ(empty.headers.at("content-length"), "0");
    EXPECT_EQ(withFault({{"action", "content_type"}, {"content_type", "text/html"}}).headers.at("content-type"),
              "text/html");
}

TEST_F(Faults, ChangeTheJson)
{
    const json bare = parsed(withFault({{"action", "without_members"}}).body);
    EXPECT_TRUE(bare.contains("@odata.id"));
    EXPECT_FALSE(bare.contains("Members"));
    const json annotated = parsed(withFault({{"action", "annotated_members"}}).body);
    EXPECT_TRUE(annotated.at("Members").at(0).contains("@odata.type"));
    const json both = parsed(withFault({{"action", "with_error"}}).body);
    EXPECT_TRUE(both.contains("Members"));
    EXPECT_TRUE(both.at("error").contains("@Message.ExtendedInfo"));
}

TEST_F(Faults, SendAHugeBody)
{
    const Answer huge = withFault({{"action", "huge_body"}, {"mib", 3}});
    EXPECT_EQ(huge.transport, CURLE_OK);
    EXPECT_GT(huge.bodyBytes, 3U << 20U);
    EXPECT_EQ(parsed(huge.body).at("Filler").get<std::string>().size(), 3U << 20U);
    config.behaviour.httpVersion = simulator::HttpVersion::Http10;
    EXPECT_EQ(withFault({{"action", "huge_body"}, {"mib", 3}}).bodyBytes, huge.bodyBytes);
}

TEST_F(Faults, SendAHugeCollectionWhoseMembersExist)
{
    const Answer huge = withFault({{"path", "/Systems($|\\?)"}, {"action", "huge_collection"}, {"members", 2500}});
    const json members = parsed(huge.body).at("Members");
    ASSERT_EQ(members.size(), 2500U);
    EXPECT_EQ(members.at(0).size(), 1U);
    const Answer last = request(url(members.at(2499).at("@odata.id").get<std::string>()));
    EXPECT_EQ(parsed(last.body).at("Version"), "1.0.2500");
    const json expanded = parsed(request(url(std::string(kSystems) + "?$expand=.")).body);
    EXPECT_EQ(expanded.at("Members").at(2499).at("SoftwareId"), "Generated-2500");
}

TEST_F(Faults, Redirect)
{
    const Answer away =
        withFault({{"action", "redirect"}, {"status", 308}, {"location", "https://elsewhere.invalid/"}});
    EXPECT_EQ(away.status, 308);
    EXPECT_EQ(away.headers.at("location"), "https://elsewhere.invalid/");
    const Answer plain = withFault({{"action", "redirect_to_http"}});
    EXPECT_EQ(plain.headers.at("location"), url(kSystems));
}

TEST_F(Faults, IncludeTooManyRequestsAtOnce)
{
    config.behaviour.maxParallelRequests = 1;
    config.latency = std::chrono::milliseconds(300);
    start();
    Answer first;
    std::thread other([&] { first = request(url(kSystems)); });
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (statistics().requestsNow == 0 && std::chrono::steady_clock::now() < limit)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    const Answer second = request(url(kSystems));
    other.join();
    EXPECT_EQ(first.status, 200);
    EXPECT_EQ(second.status, 503);
    EXPECT_EQ(statistics().mostParallelRequests, 2U);
}
} // namespace
} // namespace simulator_tests
