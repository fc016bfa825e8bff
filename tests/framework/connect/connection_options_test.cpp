#include "korvan_connect.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

using testing::HasSubstr;
using testing::Not;

namespace
{
UserContext contextOf(std::map<std::string, std::string> options)
{
    UserContext context;
    context.options = std::move(options);
    return context;
}

ConnectOption optionOf(std::map<std::string, std::string> options)
{
    ConnectOption option;
    EXPECT_TRUE(ConvertUserContextToConnectOption(contextOf(std::move(options)), option).succeeded());
    return option;
}
} // namespace

TEST(ConnectionMode, IsInBandForTheLocalSystemOrNoTarget)
{
    EXPECT_EQ(kConnectInBand, FetchConnectionMode(contextOf({})));
    EXPECT_EQ(kConnectInBand, FetchConnectionMode(contextOf({{"local", ""}})));
    EXPECT_EQ(kConnectInBand, FetchConnectionMode(contextOf({{"local", ""}, {"bmc", "host"}})));
    for (const char* name : {"bmc", "pmx", "esxi", "cmm", "smm"})
    {
        EXPECT_EQ(kConnectOutOfBand, FetchConnectionMode(contextOf({{name, ""}}))) << name;
    }
}

TEST(ConnectOptions, AreReadFromTheTargetsUrl)
{
    const ConnectOption option = optionOf({{"bmc", "http://us:p:a@s%40@192.0.2.3:8080"}});
    EXPECT_EQ("bmc", option.kind);
    EXPECT_EQ("http", option.scheme);
    EXPECT_EQ("us", option.user);
    EXPECT_EQ("p:a@s%40", option.password);
    EXPECT_EQ("192.0.2.3", option.host);
    EXPECT_EQ(8080U, option.port);
    EXPECT_EQ("http://us:p:a@s%40@192.0.2.3:8080", option.address);
}

TEST(ConnectOptions, TakeBracketsOffAnIpv6Host)
{
    const ConnectOption option = optionOf({{"pmx", "https://u:p@[2001:db8::7]:443"}});
    EXPECT_EQ("2001:db8::7", option.host);
    EXPECT_EQ("https://u:p@[2001:db8::7]:443", option.address);
}

TEST(ConnectOptions, TakeTheLoginFromTheOptionsWhenTheAddressHasNone)
{
    const std::map<std::string, std::string> login = {{"bmc-username", "root"}, {"bmc-password", "pw"}};
    auto options = login;
    options["bmc"] = "host.example";
    const ConnectOption option = optionOf(options);
    EXPECT_EQ("root", option.user);
    EXPECT_EQ("pw", option.password);
    EXPECT_EQ("https", option.scheme);
    options["bmc"] = "other:word@host.example";
    EXPECT_EQ("other", optionOf(options).user);
    EXPECT_EQ("word", optionOf(options).password);
}

TEST(ConnectOptions, HoldTrustAndTimeLimits)
{
    UserContext context = contextOf({{"bmc", "h"}, {"cacert", "/etc/ca.pem"}});
    context.connectTimeout = 7;
    context.targetTimeout = 90;
    ConnectOption option;
    ASSERT_TRUE(ConvertUserContextToConnectOption(context, option).succeeded());
    EXPECT_TRUE(option.checkTrust);
    EXPECT_EQ("/etc/ca.pem", option.caCert);
    EXPECT_EQ(std::chrono::seconds(7), option.connectTimeout);
    EXPECT_EQ(std::chrono::seconds(90), option.targetTimeout);
    EXPECT_FALSE(optionOf({{"bmc", "h"}, {"never-check-trust", ""}}).checkTrust);
}

TEST(ConnectOptions, HoldHowAControllerBecomesKnown)
{
    const ConnectOption plain = optionOf({{"bmc", "h"}});
    EXPECT_THAT(plain.knownControllers, testing::AnyOf("", testing::EndsWith("/.korvan/known_controllers")));
    EXPECT_FALSE(plain.trustOnFirstUse);
    EXPECT_EQ("", plain.fingerprint);
    EXPECT_FALSE(plain.oldTls);
    const ConnectOption option = optionOf({{"bmc", "h"},
                                           {"known-controllers", "mine"},
                                           {"trust-on-first-use", ""},
                                           {"fingerprint", "ab"},
                                           {"old-tls", ""}});
    EXPECT_EQ("mine", option.knownControllers);
    EXPECT_TRUE(option.trustOnFirstUse);
    EXPECT_EQ("ab", option.fingerprint);
    EXPECT_TRUE(option.oldTls);
}

TEST(ConnectOptions, LocalComesBeforeEveryOtherTarget)
{
    EXPECT_EQ("local", optionOf({{"local", ""}, {"bmc", "h"}}).kind);
    EXPECT_EQ("local", optionOf({}).kind);
    EXPECT_EQ("bmc", optionOf({{"smm", "a"}, {"bmc", "b"}}).kind);
}

TEST(ConnectOptions, AnAddressThatCannotBeReadNamesTheOptionAndNoPassword)
{
    ConnectOption option;
    const KorvanResult result =
        ConvertUserContextToConnectOption(contextOf({{"cmm", "user:Hidden-1@[2001:db8::7"}}), option);
    EXPECT_EQ(56U, result.number());
    EXPECT_THAT(result.message, HasSubstr("--cmm"));
    EXPECT_THAT(result.message, Not(HasSubstr("Hidden-1")));
    EXPECT_EQ("cmm", option.kind);
}

TEST(ConnectOptions, TakeThePortAndCipherSuiteOfIpmi)
{
    EXPECT_EQ(623U, optionOf({{"bmc", "h"}}).ipmiPort);
    EXPECT_GT(0, optionOf({{"bmc", "h"}}).ipmiCipherSuite);
    const ConnectOption option = optionOf({{"bmc", "h:443"}, {"ipmi-port", "7623"}, {"ipmi-cipher-suite", "17"}});
    EXPECT_EQ(443U, option.port);
    EXPECT_EQ(7623U, option.ipmiPort);
    EXPECT_EQ(17, option.ipmiCipherSuite);
}

TEST(ConnectOptions, TakeThePortOfTheCimService)
{
    EXPECT_EQ(0U, optionOf({{"bmc", "h"}}).cimPort) << "the standard one";
    EXPECT_EQ(7989U, optionOf({{"bmc", "h:443"}, {"bmc-cim-port", "7989"}}).cimPort);
}

TEST(ConnectOptions, RefuseAPortOrCipherSuiteOutOfBounds)
{
    for (const char* name : {"bmc-cim-port", "ipmi-port", "ipmi-cipher-suite"})
    {
        for (const char* value : {"", "-1", "65536", "3x", " 3", "99999999999999999999"})
        {
            ConnectOption option;
            const KorvanResult result =
                ConvertUserContextToConnectOption(contextOf({{"bmc", "h"}, {name, value}}), option);
            EXPECT_EQ(56U, result.number()) << name << " " << value;
            EXPECT_THAT(result.message, HasSubstr(std::string("--") + name));
        }
    }
}
