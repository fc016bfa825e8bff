#include "end_to_end/login_fixture.h"
#include "end_to_end/names.h"

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{
using namespace end_to_end;

TEST_F(Login, IsHiddenInTheProcessTitle)
{
    serve({"rack-a"}, {"rack-a"});
    Words words = {"update",
                   "compare",
                   "--output",
                   tree_.file("out"),
                   "--never-check-trust",
                   "--bmc",
                   login("rack-a") + ",u:" + kWrongPassword + "@127.0.0.2",
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
                                           "--bmc", login("node-d")}));
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
