#include "multi_command/credentials.h"

#include "support/environment.h"
#include "support/file_rights.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <filesystem>

using multi_command::fillCredentials;
using multi_command::StandardInput;
using testing::HasSubstr;
using testing::Not;

namespace
{
using test_support::Readers;

// The environment is this process's own; CTest gives each test a process.
class Credentials : public testing::Test
{
  protected:
    Credentials()
    {
        test_support::clearVariable("KORVAN_USERNAME");
        test_support::clearVariable("KORVAN_PASSWORD");
    }
    ~Credentials() override
    {
        test_support::clearVariable("KORVAN_USERNAME");
        test_support::clearVariable("KORVAN_PASSWORD");
    }

    static nova::ServerInfo server(const std::string& user, const std::string& password,
                                   const std::string& kind = "bmc")
    {
        nova::ServerInfo made;
        made.option = kind;
        made.host = "h";
        made.user = user;
        made.password = password;
        return made;
    }

    // "user:password" of a target that is given with these.
    std::string filled(const std::string& user, const std::string& password, const std::string& kind = "bmc") const
    {
        std::vector<nova::ServerInfo> servers = {server(user, password, kind)};
        const KorvanResult result = fillCredentials(context_, StandardInput::Taken, servers);
        EXPECT_TRUE(result.succeeded()) << result;
        return servers[0].user + ":" + servers[0].password;
    }

    KorvanResult failure() const
    {
        std::vector<nova::ServerInfo> servers = {server("", "")};
        const KorvanResult result = fillCredentials(context_, StandardInput::Taken, servers);
        EXPECT_FALSE(result.succeeded());
        EXPECT_THAT(result.message, Not(HasSubstr("s3cret")));
        EXPECT_EQ(servers[0].user + servers[0].password, "");
        return result;
    }

    std::string passwordFile(const std::string& content, Readers readers = Readers::OwnerAlone) const
    {
        const std::string path = folder_.write("secret", content);
        test_support::setReaders(path, readers);
        return path;
    }

    const test_support::ScratchFolder folder_;
    UserContext context_;
};
} // namespace

TEST_F(Credentials, AreTakenFromTheTargetThenTheOptionsThenTheEnvironment)
{
    test_support::setVariable("KORVAN_USERNAME", "eu");
    test_support::setVariable("KORVAN_PASSWORD", "ep");
    EXPECT_EQ(filled("", ""), "eu:ep");
    EXPECT_EQ(filled("u", ""), "u:ep");
    context_.options = {{"bmc-username", "ou"}};
    EXPECT_EQ(filled("", ""), "ou:ep");
    context_.options = {{"bmc-username", "ou"}, {"bmc-password", "op"}};
    EXPECT_EQ(filled("", ""), "ou:op");
    EXPECT_EQ(filled("u", ""), "u:op");
    EXPECT_EQ(filled("u", "p"), "u:p");
    context_.options = {{"bmc-password", "op"}};
    EXPECT_EQ(filled("", ""), "eu:op");
}

TEST_F(Credentials, StayAwayFromTargetsThatNeedNone)
{
    context_.options = {{"bmc-password", "op"}};
    EXPECT_EQ(filled("", ""), ":") << "a password without a user is of no use";
    context_.options["bmc-username"] = "ou";
    EXPECT_EQ(filled("", "", "local"), ":");
}

TEST_F(Credentials, TakeTheFirstLineOfThePasswordFile)
{
    for (const char* content : {"p w\n", "p w\r\nnot this", "p w"})
    {
        context_.options = {{"bmc-username", "ou"}, {"password-file", passwordFile(content)}};
        EXPECT_EQ(filled("", ""), "ou:p w");
        EXPECT_EQ(filled("u", "p"), "u:p");
    }
}

TEST_F(Credentials, RefuseAPasswordFileThatOthersCanRead)
{
    context_.options = {{"bmc-username", "ou"}, {"password-file", passwordFile("s3cret", Readers::Everybody)}};
    const KorvanResult result = failure();
    EXPECT_EQ(result.code, 7U);
    EXPECT_THAT(result.message, HasSubstr(test_support::closingCommand(folder_.file("secret"))));
    context_.options["allow-open-files"] = "";
    EXPECT_EQ(filled("", ""), "ou:s3cret");
}

TEST_F(Credentials, NameThePasswordFileThatIsNone)
{
    context_.options = {{"password-file", folder_.file("none")}};
    EXPECT_EQ(failure().code, 6U);
    EXPECT_THAT(failure().message, HasSubstr("none"));
    context_.options = {{"password-file", folder_.path()}};
    EXPECT_EQ(failure().code, 7U);
    context_.options = {{"password-file", passwordFile("\ns3cret")}};
    EXPECT_THAT(failure().message, HasSubstr("empty"));
    context_.options = {{"password-file", passwordFile("s3cret\x01")}};
    EXPECT_THAT(failure().message, HasSubstr("--password-file: the password holds a control"));
    context_.options = {{"password-file", ""}};
    EXPECT_EQ(failure().code, 5U);
}

TEST_F(Credentials, ComeFromOneOptionOnly)
{
    context_.options = {{"bmc-password", "s3cret"}, {"password-stdin", ""}};
    EXPECT_EQ(failure().code, 5U);
    EXPECT_THAT(failure().message, HasSubstr("--bmc-password and --password-stdin"));
}

TEST_F(Credentials, LeaveStandardInputToTheTargets)
{
    context_.options = {{"password-stdin", ""}};
    EXPECT_EQ(failure().code, 5U);
    EXPECT_THAT(failure().message, HasSubstr("--password-stdin: standard input gives the targets"));
}

TEST_F(Credentials, AreCheckedInTheEnvironmentToo)
{
    test_support::setVariable("KORVAN_PASSWORD", "s3cret\n");
    EXPECT_THAT(failure().message, HasSubstr("KORVAN_PASSWORD"));
    test_support::setVariable("KORVAN_PASSWORD", "");
    test_support::setVariable("KORVAN_USERNAME", "a:b");
    EXPECT_THAT(failure().message, HasSubstr("KORVAN_USERNAME"));
}
