#include "end_to_end/program_tree.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace
{
namespace fs = boost::filesystem;
using nlohmann::json;
using test_support::ProcessOutcome;
using test_support::readFile;
using Texts = std::vector<std::string>;

constexpr char kPassword[] = "Sample-Passw0rd";
constexpr char kWrongPassword[] = "not-the-Passw0rd";

// The sample servers on ports of the system's choice, and the runnable tree to ask them with.
class Fleet : public ::testing::Test
{
  protected:
    // Starts the simulator with these servers; afterwards `address(name)` says where each one is.
    void serve(const json& controllers)
    {
        const std::string fleet = tree_.write("fleet.json", json{{"controllers", controllers}}.dump(2));
        simulator_ = std::make_unique<test_support::BackgroundProcess>(
            KORVAN_SIMULATOR,
            Texts{"--config", fleet, "--cert-out", tree_.file("ca.pem"), "--ready-file", tree_.file("ready.json")});
        std::string line;
        while (simulator_->readLine(line, std::chrono::seconds(20)) && line != "ready")
        {
            const std::string::size_type blank = line.find(' ');
            addresses_[line.substr(0, blank)] = line.substr(blank + 1);
        }
        ASSERT_EQ(line, "ready");
    }

    static json controller(const std::string& name, const json& more = json::object())
    {
        json made = {{"name", name},           {"folder", std::string(KORVAN_SOURCE_DIR) + "/samples/servers/" + name},
                     {"address", "127.0.0.1"}, {"port", 0},
                     {"user", "admin"},        {"password", kPassword}};
        made.update(more);
        return made;
    }

    static json sampleServers()
    {
        return json::array({controller("rack-a"), controller("rack-b"), controller("blade-c"), controller("node-d"),
                            controller("edge-e")});
    }

    // "127.0.0.1:port", as users write it.
    std::string address(const std::string& name) const
    {
        const std::string& url = addresses_.at(name);
        return url.substr(url.find("://") + 3);
    }

    // The name of the target's folder, without how it ended.
    std::string folder(const std::string& name) const
    {
        std::string result = address(name);
        std::replace(result.begin(), result.end(), ':', '_');
        return result;
    }

    std::string targetList(const Texts& names, const std::string& password = kPassword) const
    {
        json targets = json::array();
        for (const std::string& name : names)
        {
            targets.push_back({{"kind", "bmc"}, {"address", address(name)}, {"user", "admin"}, {"password", password}});
        }
        return tree_.write("targets-" + password + ".json", json{{"targets", targets}}.dump());
    }

    ProcessOutcome compare(const Texts& more) const
    {
        Texts words = {"update",   "compare", "--output", "out",
                       "--cacert", "ca.pem",  "--dir",    std::string(KORVAN_SOURCE_DIR) + "/samples/repository"};
        words.insert(words.end(), more.begin(), more.end());
        return tree_.korvan(words);
    }

    bool exists(const std::string& name) const { return fs::exists(tree_.file(name)); }

    static std::size_t count(const std::string& text, const std::string& piece)
    {
        std::size_t found = 0;
        for (std::string::size_type at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
        {
            ++found;
        }
        return found;
    }

    // No file of the run and no line on the screen holds the password.
    void expectNoSecret(const ProcessOutcome& outcome, const std::string& secret) const
    {
        EXPECT_EQ(outcome.out.find(secret), std::string::npos);
        EXPECT_EQ(outcome.err.find(secret), std::string::npos);
        std::size_t files = 0;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree_.file("out")))
        {
            if (fs::is_regular_file(entry.path()))
            {
                ++files;
                EXPECT_EQ(readFile(entry.path().string()).find(secret), std::string::npos) << entry.path();
            }
        }
        EXPECT_GT(files, 1U);
    }

    ProgramTree tree_;

  private:
    std::unique_ptr<test_support::BackgroundProcess> simulator_;
    std::map<std::string, std::string> addresses_;
};

TEST_F(Fleet, ComparesFiveDifferentServers)
{
    serve(sampleServers());
    const Texts names = {"rack-a", "rack-b", "blade-c", "node-d", "edge-e"};
    const ProcessOutcome outcome = compare({"--config", targetList(names), "--pattern", "uefi|bmc|nic", "--log", "4"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out << outcome.err;
    EXPECT_EQ(count(outcome.out, "Compare Result"), 1U);
    for (const std::string& name : names)
    {
        EXPECT_GE(count(outcome.out, "| " + folder(name) + " "), 1U) << name << "\n" << outcome.out;
        for (const char* file : {"Korvan-update-scan.xml", "scan_result.txt", "Korvan-update-query.xml",
                                 "Korvan-update-compare.xml", "compare_result.txt", "common_result.xml"})
        {
            EXPECT_TRUE(exists("out/SUCCESS-" + folder(name) + "/" + file)) << name << " " << file;
        }
    }
    const json result = json::parse(readFile(tree_.file("out/compare_result.json")));
    EXPECT_EQ(result["COMPARISON"].size(), 5U);
    expectNoSecret(outcome, kPassword);
}

TEST_F(Fleet, KnowsEachServersMachineTypeAndController)
{
    serve(sampleServers());
    const Texts names = {"rack-a", "rack-b", "blade-c", "node-d", "edge-e"};
    compare({"--config", targetList(names), "--pattern", "."});
    std::map<std::string, std::pair<std::string, std::string>> seen;
    const json result = json::parse(readFile(tree_.file("out/compare_result.json")));
    for (const json& host : result["COMPARISON"])
    {
        seen[host["HOST"]] = {host["MT"], host["BMCTYPE"]};
    }
    using Kind = std::pair<std::string, std::string>;
    EXPECT_EQ(seen[folder("rack-a")], Kind("7Y41", "PMX3"));
    EXPECT_EQ(seen[folder("rack-b")], Kind("7Y41", "PMX2"));
    EXPECT_EQ(seen[folder("blade-c")], Kind("7X20", "AMI"));
    EXPECT_EQ(seen[folder("node-d")], Kind("7Z90", "AMD"));
    EXPECT_EQ(seen[folder("edge-e")], Kind("7D35", "PMX3"));
}

TEST_F(Fleet, ShowsOneFailedTargetBesideTheOthers)
{
    serve(json::array({controller("rack-a"), controller("rack-b")}));
    const ProcessOutcome outcome =
        compare({"--bmc", "admin:" + std::string(kPassword) + "@" + address("rack-a"), "--bmc",
                 "admin:" + std::string(kWrongPassword) + "@" + address("rack-b"), "--pattern", "uefi"});
    EXPECT_EQ(outcome.exitStatus, 58);
    EXPECT_TRUE(exists("out/SUCCESS-" + folder("rack-a") + "/Korvan-update-compare.xml"));
    EXPECT_TRUE(exists("out/FAILURE-" + folder("rack-b") + "/common_result.xml"));
    EXPECT_FALSE(exists("out/FAILURE-" + folder("rack-b") + "/Korvan-update-compare.xml"));
    EXPECT_EQ(json::parse(readFile(tree_.file("out/compare_result.json")))["COMPARISON"].size(), 1U);
    EXPECT_NE(outcome.out.find("FAILED"), std::string::npos) << outcome.out;
    expectNoSecret(outcome, kPassword);
    expectNoSecret(outcome, kWrongPassword);
}

TEST_F(Fleet, ReplacesTheFoldersOfAnEarlierRun)
{
    serve(json::array({controller("rack-a")}));
    EXPECT_EQ(compare({"--config", targetList({"rack-a"}, kWrongPassword)}).exitStatus, 58);
    EXPECT_TRUE(exists("out/FAILURE-" + folder("rack-a")));
    EXPECT_EQ(compare({"--config", targetList({"rack-a"})}).exitStatus, 0);
    EXPECT_FALSE(exists("out/FAILURE-" + folder("rack-a")));
    EXPECT_TRUE(exists("out/SUCCESS-" + folder("rack-a")));
}

TEST_F(Fleet, DoesNotTrustAnUnknownCertificate)
{
    serve(json::array({controller("rack-a")}));
    const ProcessOutcome outcome =
        tree_.korvan({"update", "compare", "--output", "out", "--config", targetList({"rack-a"})});
    EXPECT_EQ(outcome.exitStatus, 58);
    EXPECT_NE(outcome.out.find("36"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find(address("rack-a")), std::string::npos) << outcome.out;
}

TEST_F(Fleet, SkipsTheTrustWhenToldTo)
{
    serve(json::array({controller("rack-a")}));
    const ProcessOutcome outcome =
        tree_.korvan({"update", "compare", "--output", "out", "--never-check-trust", "--dir",
                      std::string(KORVAN_SOURCE_DIR) + "/samples/repository", "--config", targetList({"rack-a"})});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out;
}

TEST_F(Fleet, ComparesASavedScanAndQueryAsTheLiveRun)
{
    serve(json::array({controller("rack-a")}));
    ASSERT_EQ(compare({"--config", targetList({"rack-a"})}).exitStatus, 0);
    const std::string folderOfRun = "out/SUCCESS-" + folder("rack-a") + "/";
    const std::string live = readFile(tree_.file(folderOfRun + "Korvan-update-compare.xml"));
    fs::copy_file(tree_.file(folderOfRun + "Korvan-update-scan.xml"), tree_.file("scan.xml"));
    fs::copy_file(tree_.file(folderOfRun + "Korvan-update-query.xml"), tree_.file("query.xml"));
    const ProcessOutcome outcome =
        compare({"--config", targetList({"rack-a"}), "--scanxml", "scan.xml", "--queryxml", "query.xml"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.out;
    EXPECT_EQ(readFile(tree_.file(folderOfRun + "Korvan-update-compare.xml")), live);
    EXPECT_NE(live, "");
}

TEST_F(Fleet, RefusesToNameATargetTwice)
{
    const ProcessOutcome outcome = tree_.korvan(
        {"update", "compare", "--output", "out", "--bmc", "u:hush@127.0.0.1", "--pmx", "u:hush@127.0.0.1"});
    EXPECT_EQ(outcome.exitStatus, 5);
    EXPECT_NE(outcome.err.find("127.0.0.1"), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.err.find("hush"), std::string::npos);
    EXPECT_FALSE(exists("out"));
}

TEST_F(Fleet, StopsAtCtrlCAndReportsTheRest)
{
    const json hanging = {{"faults", json::array({{{"path", ".*"}, {"action", "hang"}}})}};
    serve(json::array({controller("rack-a", hanging), controller("rack-b", hanging)}));
    tree_.options.interruptAfter = std::chrono::milliseconds(1500);
    const ProcessOutcome outcome = compare({"--config", targetList({"rack-a", "rack-b"}), "--parallel", "1"});
    EXPECT_FALSE(outcome.timedOut);
    EXPECT_EQ(count(outcome.out, "SKIPPED    47"), 2U) << outcome.out << outcome.err;
    EXPECT_EQ(outcome.exitStatus, 59);
}
} // namespace
