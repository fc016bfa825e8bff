#include "ipmi/controller_product.h"

#include "framework/ipmi/simulated_ipmi.h"
#include "interrupt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace
{
using testing::HasSubstr;
using testing::Not;
using Clock = std::chrono::steady_clock;

ConnectOption optionFor(unsigned port, const std::string& password = SimulatedIpmi::kPassword)
{
    interrupt::reset();
    ConnectOption option;
    option.host = "127.0.0.1";
    option.port = 8443;
    option.ipmiPort = port;
    option.user = SimulatedIpmi::kUser;
    option.password = password;
    option.connectTimeout = std::chrono::seconds(2);
    option.targetTimeout = std::chrono::seconds(20);
    return option;
}

// A folder with a script in the place of ipmitool, for what no controller does on demand.
class ScriptedTool
{
  public:
    explicit ScriptedTool(const std::string& script)
    {
        std::filesystem::permissions(folder_.write("ipmitool", "#!/bin/sh\n" + script),
                                     std::filesystem::perms::owner_all);
    }

    KorvanResult read(const ConnectOption& option) { return ipmi::readProduct(option, product, {folder_.path()}); }
    std::string file(const std::string& name) const { return folder_.file(name); }

    ipmi::Product product;

  private:
    test_support::ScratchFolder folder_;
};
} // namespace

TEST(IpmiController, GivesTheProductOfItsFru)
{
    const SimulatedIpmi controller("Node X20", "7X20CTO1WW");
    ipmi::Product product;
    const KorvanResult result = ipmi::readProduct(optionFor(controller.port()), product);
    EXPECT_EQ(0U, result.number()) << result;
    EXPECT_EQ(SimulatedIpmi::kManufacturer, product.manufacturer);
    EXPECT_EQ("Node X20", product.name);
    EXPECT_EQ("7X20CTO1WW", product.partNumber);
}

TEST(IpmiController, WithoutAFruAnswersButSaysNothing)
{
    const SimulatedIpmi controller;
    ipmi::Product product;
    const KorvanResult result = ipmi::readProduct(optionFor(controller.port()), product);
    EXPECT_EQ(0U, result.number()) << result;
    EXPECT_EQ("", product.name);
}

TEST(IpmiController, RefusesAWrongLogin)
{
    const SimulatedIpmi controller("Node X20", "7X20CTO1WW");
    ConnectOption wrongUser = optionFor(controller.port());
    wrongUser.user = "nobody";
    ConnectOption longUser = optionFor(controller.port());
    longUser.user = "a-user-name-of-over-16-characters";
    for (const ConnectOption& option : {optionFor(controller.port(), "Hidden-1"), wrongUser, longUser})
    {
        ipmi::Product product;
        const KorvanResult result = ipmi::readProduct(option, product);
        EXPECT_EQ(63U, result.number()) << result;
        EXPECT_THAT(result.message, HasSubstr("127.0.0.1:" + std::to_string(controller.port())));
        EXPECT_THAT(result.message, HasSubstr("reading FRU 0"));
        EXPECT_THAT(result.message, HasSubstr("user name or password was refused"));
        EXPECT_THAT(result.message, Not(HasSubstr(option.password)));
        EXPECT_EQ("", product.name);
    }
}

TEST(IpmiController, RefusesACipherSuiteThatItDoesNotHave)
{
    const SimulatedIpmi controller("Node X20", "7X20CTO1WW");
    ConnectOption option = optionFor(controller.port());
    option.ipmiCipherSuite = 17;
    ipmi::Product product;
    const KorvanResult result = ipmi::readProduct(option, product);
    EXPECT_EQ(63U, result.number()) << result;
    EXPECT_THAT(result.message, HasSubstr("--ipmi-cipher-suite"));
    option.ipmiCipherSuite = 3;
    EXPECT_EQ(0U, ipmi::readProduct(option, product).number());
}

TEST(IpmiController, ThatDoesNotAnswerEndsInBoundedTime)
{
    const LoopbackUdp silent; // takes every packet and answers none
    const unsigned ports[] = {silent.port(), freeUdpPort()};
    for (const unsigned port : ports)
    {
        const Clock::time_point begin = Clock::now();
        ipmi::Product product;
        const KorvanResult result = ipmi::readProduct(optionFor(port), product);
        EXPECT_EQ(18U, result.number()) << result;
        EXPECT_THAT(result.message, HasSubstr(std::to_string(port)));
        EXPECT_LT(Clock::now() - begin, std::chrono::seconds(6));
    }
}

TEST(IpmiTool, IsNotAskedWithAPasswordThatIpmiCannotTake)
{
    ScriptedTool tool("touch \"$(dirname \"$0\")/asked\"\n");
    const KorvanResult result = tool.read(optionFor(1, "123456789012345678901"));
    EXPECT_EQ(51U, result.number()) << result;
    EXPECT_THAT(result.message, HasSubstr("127.0.0.1:1"));
    EXPECT_THAT(result.message, Not(HasSubstr("123456789012345678901")));
    EXPECT_FALSE(std::filesystem::exists(tool.file("asked")));
}

TEST(IpmiTool, GetsThePasswordInItsEnvironmentOnly)
{
    ScriptedTool tool("here=${0%/*}\nprintf '%s\\n' \"$@\" > \"$here/words\"\n"
                      "printf '%s' \"$IPMI_PASSWORD\" > \"$here/secret\"\n");
    EXPECT_EQ(0U, tool.read(optionFor(7623, "Hidden-1")).number());
    EXPECT_EQ("Hidden-1", test_support::readFile(tool.file("secret")));
    EXPECT_EQ("-v\n-I\nlanplus\n-H\n127.0.0.1\n-p\n7623\n-U\nadmin\n-E\n-L\nUSER\n-C\n3\n-N\n1\n-R\n1\nfru\nprint\n0\n",
              test_support::readFile(tool.file("words")));
}

TEST(IpmiTool, TriesCipherSuite17Where3IsRefusedAndNoneIsNamed)
{
    ScriptedTool tool("case \"$*\" in *'-C 17 '*) echo 'Product Name : Node X20'; exit 0;; esac\n"
                      "echo 'Error in open session response message : invalid authentication algorithm' >&2\nexit 1\n");
    ConnectOption option = optionFor(1);
    EXPECT_EQ(0U, tool.read(option).number());
    EXPECT_EQ("Node X20", tool.product.name);
    option.ipmiCipherSuite = 3;
    EXPECT_EQ(63U, tool.read(option).number());
    EXPECT_EQ("", tool.product.name);
}

TEST(IpmiTool, ThatHangsIsStoppedAtTheTargetsTimeLimit)
{
    ScriptedTool tool("exec sleep 60\n");
    ConnectOption option = optionFor(1);
    option.targetTimeout = std::chrono::seconds(1);
    const Clock::time_point begin = Clock::now();
    EXPECT_EQ(18U, tool.read(option).number());
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5));
}

TEST(IpmiTool, ThatWritesWithoutEndIsStopped)
{
    ScriptedTool tool("while :; do echo 'Product Name : Node X20'; done\n");
    EXPECT_EQ(63U, tool.read(optionFor(1)).number());
    EXPECT_EQ("", tool.product.name);
}

TEST(IpmiTool, StopsWhenTheUserWishesTo)
{
    ScriptedTool tool("exec sleep 60\n");
    const ConnectOption option = optionFor(1);
    interrupt::request();
    EXPECT_EQ(47U, tool.read(option).number());
    interrupt::reset();
}

TEST(IpmiTool, DoesNotCarryThePasswordIntoAMessage)
{
    ScriptedTool tool("echo \"odd: $IPMI_PASSWORD\" >&2; exit 1\n");
    const KorvanResult result = tool.read(optionFor(1, "Hidden-1"));
    EXPECT_EQ(63U, result.number());
    EXPECT_THAT(result.message, Not(HasSubstr("Hidden-1")));
    ScriptedTool plain("printf 'odd \\033[1m thing\\n' >&2; exit 1\n");
    EXPECT_THAT(plain.read(optionFor(1)).message, HasSubstr("odd \\x1B[1m thing"));
}

TEST(IpmiTool, ThatIsMissingIsNamedWithItsPackage)
{
    ipmi::Product product;
    const KorvanResult result = ipmi::readProduct(optionFor(1), product, {"/nowhere", "/nowhere/else"});
    EXPECT_EQ(63U, result.number());
    EXPECT_THAT(result.message, HasSubstr("install the package ipmitool"));
    EXPECT_THAT(result.message, HasSubstr("/nowhere, /nowhere/else"));
    EXPECT_THAT(result.message, HasSubstr("127.0.0.1:1"));
}
