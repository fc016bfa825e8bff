#include "end_to_end/fleet_fixture.h"

#include "end_to_end/names.h"

#include <algorithm>

using namespace end_to_end;

json FleetFixture::controller(const std::string& name)
{
    return {{"name", name},           {"folder", std::string(KORVAN_SOURCE_DIR) + "/samples/servers/" + name},
            {"address", "127.0.0.1"}, {"port", 0},
            {"user", kUser},          {"password", kPassword}};
}

json FleetFixture::controller(const std::string& name, const json& more)
{
    json made = controller(name);
    made.update(more);
    return made;
}

void FleetFixture::serveEntries(const std::vector<json>& controllers)
{
    simulator_.reset();
    const std::string fleet = tree_.write("fleet.json", json{{"controllers", controllers}}.dump(2));
    simulator_ = std::make_unique<test_support::BackgroundProcess>(
        KORVAN_SIMULATOR, Words{"--config", fleet, "--cert-out", tree_.file("ca.pem"), "--ready-file",
                                tree_.file("ready.json"), "--stats", tree_.file("statistics.json"), "--stop-on-eof"});
    std::string line;
    while (simulator_->readLine(line, std::chrono::seconds(20)) && line != "ready")
    {
        const std::string::size_type blank = line.find(' ');
        addresses_[line.substr(0, blank)] = line.substr(blank + 1);
    }
    ASSERT_EQ(line, "ready");
}

void FleetFixture::serve(const Words& names, const Words& hanging)
{
    std::vector<json> controllers;
    for (const std::string& name : names)
    {
        controllers.push_back(controller(name));
        if (std::find(hanging.begin(), hanging.end(), name) != hanging.end())
        {
            controllers.back()["faults"] = json::array({{{"path", ".*"}, {"action", "hang"}}});
        }
    }
    serveEntries(controllers);
}

json FleetFixture::statistics()
{
    simulator_->closeInput();
    ProcessOutcome outcome;
    EXPECT_TRUE(simulator_->wait(std::chrono::seconds(20), outcome));
    return json::parse(readFile(tree_.file("statistics.json")));
}

std::string FleetFixture::address(const std::string& name) const
{
    const std::string& url = addresses_.at(name);
    return url.substr(url.find("://") + 3);
}

std::string FleetFixture::folder(const std::string& name) const
{
    std::string result = address(name);
    std::replace(result.begin(), result.end(), ':', '_');
    return result;
}

std::string FleetFixture::login(const std::string& name, const std::string& password) const
{
    return std::string(kUser) + ":" + password + "@" + address(name);
}

std::string FleetFixture::targetList(const Words& names, const std::string& password) const
{
    json targets = json::array();
    for (const std::string& name : names)
    {
        targets.push_back({{"kind", "bmc"}, {"address", address(name)}, {"user", kUser}, {"password", password}});
    }
    return tree_.write("targets-" + password + ".json", json{{"targets", targets}}.dump());
}

Words FleetFixture::compareWords(const Words& more)
{
    Words words = {"--cacert", "ca.pem"};
    words.insert(words.end(), more.begin(), more.end());
    return ProgramTree::compareWords(words);
}

ProcessOutcome FleetFixture::compare(const Words& more) const
{
    return tree_.korvan(compareWords(more));
}

bool FleetFixture::exists(const std::string& name) const
{
    return fs::exists(tree_.file(name));
}

void FleetFixture::expectNoSecret(const std::string& screen, const std::string& secret) const
{
    tree_.expectNoSecret(screen, secret);
}
