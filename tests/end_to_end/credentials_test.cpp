#include "end_to_end/fleet_fixture.h"

#include <boost/filesystem/operations.hpp>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{
namespace fs = boost::filesystem;
using test_support::ProcessOutcome;
using test_support::readFile;
using Words = std::vector<std::string>;

class Login : public FleetFixture
{
  protected:
    void SetUp() override { serve({"rack-a"}); }

    std::string login(const std::string& password) const { return kUser + (":" + password) + "@" + address("rack-a"); }

    void expectCompared(const ProcessOutcome& outcome) const
    {
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.out << outcome.err;
        EXPECT_TRUE(exists("out/SUCCESS-" + folder("rack-a") + "/Korvan-update-compare.xml"));
        expectNoSecret(outcome.out + outcome.err, kPassword);
    }

    // Refused before anything was made.
    void expectRefused(const ProcessOutcome& outcome, int status, const std::string& reason) const
    {
        EXPECT_EQ(outcome.exitStatus, status) << outcome.out << outcome.err;
        EXPECT_NE(outcome.err.find(reason), std::string::npos) << outcome.err;
        EXPECT_EQ((outcome.out + outcome.err).find(kPassword), std::string::npos);
        EXPECT_FALSE(exists("out"));
    }
};

TEST_F(Login, OfAListThatOthersCanReadIsRefused)
{
    const std::string list =
        tree_.write("targets.json", R"({"targets": [{"kind": "bmc", "address": ")" + address("rack-a") +
                                        R"(", "user": "admin", "password": "Sample-Passw0rd"}]})");
    fs::permissions(list, fs::owner_read | fs::owner_write | fs::group_read);
    expectRefused(compare({"--config", list}), 7, "chmod 600 " + list);
    expectCompared(compare({"--config", list, "--allow-open-files"}));
}

TEST_F(Login, StandsInAListOfStandardInput)
{
    tree_.options.input = "# one\n" + login(kPassword) + "\n";
    expectCompared(compare({"--bmc", "-", "--log", "4"}));
}

TEST_F(Login, OfAWrongLineIsNotShown)
{
    tree_.options.input = "\n" + login(kPassword) + "x:y\n";
    expectRefused(compare({"--bmc", "@-"}), 7, "standard input, line 2: ");
}

TEST_F(Login, ComesFromAPasswordFile)
{
    expectCompared(compare({"--bmc", address("rack-a"), "--bmc-username", kUser, "--password-file",
                            tree_.write("password", std::string(kPassword) + "\n"), "--log", "4"}));
}

TEST_F(Login, ComesFromStandardInput)
{
    tree_.options.input = std::string(kPassword) + "\n";
    expectCompared(compare({"--bmc", "admin@" + address("rack-a"), "--password-stdin", "--log", "4"}));
}

TEST_F(Login, ComesFromTheEnvironment)
{
    tree_.options.environment = {{"KORVAN_USERNAME", kUser}, {"KORVAN_PASSWORD", kPassword}};
    expectCompared(compare({"--bmc", address("rack-a"), "--log", "4"}));
}

TEST_F(Login, OfTheAddressWinsOverTheOthers)
{
    tree_.options.environment = {{"KORVAN_USERNAME", "nobody"}, {"KORVAN_PASSWORD", kWrongPassword}};
    const ProcessOutcome outcome =
        compare({"--bmc", login(kPassword), "--bmc-username", "none", "--bmc-password", kWrongPassword, "--log", "4"});
    expectCompared(outcome);
    expectNoSecret(outcome.out + outcome.err, kWrongPassword);
}

TEST_F(Login, IsNotAskedForWithoutATerminal)
{
    tree_.options.timeout = std::chrono::seconds(10);
    const ProcessOutcome outcome = compare({"--bmc", "admin@" + address("rack-a")});
    EXPECT_FALSE(outcome.timedOut);
    EXPECT_EQ(outcome.exitStatus, 58) << outcome.out;
    EXPECT_EQ(outcome.err.find("Password"), std::string::npos);
}

TEST_F(Login, IsHiddenInTheProcessTitle)
{
    serve({"rack-a"}, {"rack-a"});
    Words words = {"update",
                   "compare",
                   "--output",
                   tree_.file("out"),
                   "--never-check-trust",
                   "--bmc",
                   login(kPassword) + ",u:" + kWrongPassword + "@127.0.0.2",
                   "--pmx=u:" + std::string(kPassword) + "@127.0.0.3",
                   "--bmc-password",
                   kWrongPassword};
    const test_support::BackgroundProcess program(tree_.bin("korvan"), words);
    const std::string file = "/proc/" + std::to_string(program.pid()) + "/cmdline";
    std::string title;
    const auto covered = [&title]
    {
        return title.find("--bmc-password") != std::string::npos && title.find(kPassword) == std::string::npos &&
               title.find(kWrongPassword) == std::string::npos;
    };
    for (int attempt = 0; attempt < 100 && !covered(); ++attempt)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        title = readFile(file);
    }
    EXPECT_TRUE(covered()) << title;
    EXPECT_NE(title.find("*@127.0.0.2"), std::string::npos) << title;
}

// The program on a terminal of its own, at which the test types.
class Terminal
{
  public:
    Terminal(const ProgramTree& tree, const Words& arguments)
    {
        Words words = {tree.bin("korvan")};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<char*> pointers;
        for (std::string& word : words)
        {
            pointers.push_back(&word[0]);
        }
        pointers.push_back(nullptr);
        const std::string folder = tree.file("");
        pid_ = ::forkpty(&master_, nullptr, nullptr, nullptr);
        if (pid_ == 0)
        {
            if (::chdir(folder.c_str()) == 0)
            {
                ::execv(pointers[0], pointers.data());
            }
            ::_exit(127);
        }
    }
    ~Terminal()
    {
        ::close(master_);
        if (pid_ > 0)
        {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    // Reads until the screen shows the text; false when the program ends or nothing comes before.
    bool waitFor(const std::string& text)
    {
        while (screen.find(text) == std::string::npos)
        {
            if (!readMore())
            {
                return false;
            }
        }
        return true;
    }

    void type(const std::string& text) const
    {
        EXPECT_EQ(::write(master_, text.data(), text.size()), ssize_t(text.size()));
    }

    // Reads to the program's end; its exit status.
    int finish()
    {
        while (readMore())
        {
        }
        int status = 0;
        ::waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::string screen;

  private:
    bool readMore()
    {
        constexpr int kLongestWaitMs = 20000;
        pollfd entry{master_, POLLIN, 0};
        char buffer[4096];
        const ssize_t got = ::poll(&entry, 1, kLongestWaitMs) > 0 ? ::read(master_, buffer, sizeof buffer) : -1;
        screen.append(buffer, got > 0 ? static_cast<std::size_t>(got) : 0);
        return got > 0;
    }

    pid_t pid_ = -1;
    int master_ = -1;
};

TEST_F(Login, IsAskedForOnATerminalWithoutEcho)
{
    Terminal terminal(tree_, compareWords({"--bmc", address("rack-a"), "--log", "4"}));
    ASSERT_TRUE(terminal.waitFor("User for " + folder("rack-a"))) << terminal.screen;
    terminal.type("admin\n");
    ASSERT_TRUE(terminal.waitFor("Password for " + folder("rack-a") + ": ")) << terminal.screen;
    terminal.type(std::string(kPassword) + "\n");
    EXPECT_EQ(terminal.finish(), 0) << terminal.screen;
    expectNoSecret(terminal.screen, kPassword);
}

TEST_F(Login, IsAskedForOnceForAllTargetsThatLackIt)
{
    serve({"rack-a", "rack-b", "node-d"});
    Terminal terminal(tree_, compareWords({"--bmc", "admin@" + address("rack-a"), "--bmc", "admin@" + address("rack-b"),
                                           "--bmc", kUser + (":" + std::string(kPassword)) + "@" + address("node-d")}));
    ASSERT_TRUE(terminal.waitFor("Password for 2 targets that have none: ")) << terminal.screen;
    terminal.type(std::string(kPassword) + "\n");
    EXPECT_EQ(terminal.finish(), 0) << terminal.screen;
    EXPECT_EQ(terminal.screen.find("Password"), terminal.screen.rfind("Password"));
}

TEST_F(Login, IsNotAskedForWhenThatIsForbidden)
{
    Terminal terminal(tree_, compareWords({"--bmc", "admin@" + address("rack-a"), "--no-input"}));
    EXPECT_EQ(terminal.finish(), 58) << terminal.screen;
    EXPECT_EQ(terminal.screen.find("Password"), std::string::npos);
}

TEST_F(Login, QuestionEndsAtCtrlC)
{
    Terminal terminal(tree_, compareWords({"--bmc", "admin@" + address("rack-a")}));
    ASSERT_TRUE(terminal.waitFor("Password for ")) << terminal.screen;
    terminal.type("\x03");
    EXPECT_EQ(terminal.finish(), 47) << terminal.screen;
    EXPECT_FALSE(exists("out"));
}
} // namespace
