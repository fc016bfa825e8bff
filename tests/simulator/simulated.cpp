#include "simulator/simulated.h"

#include "simulator/controller_switches.h"

#include <filesystem>
#include <fstream>
#include <random>

namespace simulator_tests
{
namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder()
    : path_((fs::temp_directory_path() / ("simulator_test_" + std::to_string(std::random_device{}()))).string())
{
    fs::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(const std::string& name, const std::string& content) const
{
    const fs::path file = fs::path(path_) / name;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file.string();
}

Simulated::Simulated()
{
    folder.write("redfish/v1/index.json",
                 R"({"@odata.id":"/redfish/v1","Systems":{"@odata.id":"/redfish/v1/Systems"}})");
    nlohmann::json members = nlohmann::json::array();
    for (int i = 1; i <= 5; ++i)
    {
        const std::string id = "S" + std::to_string(i);
        const std::string path = std::string(kSystems) + "/" + id;
        folder.write("redfish/v1/Systems/" + id + "/index.json",
                     nlohmann::json{{"@odata.id", path}, {"Id", id}, {"Name", "System"}}.dump());
        members.push_back({{"@odata.id", path}});
    }
    folder.write("redfish/v1/Systems/index.json",
                 nlohmann::json{{"@odata.id", kSystems}, {"Name", "Systems"}, {"Members", members}}.dump());
    folder.write("outside.json", R"({"Id":"outside"})");
    config.name = "one";
    config.folder = folder.path();
    config.tls = false;
    config.user = "admin";
    config.password = "Secret-1";
}

void Simulated::start(simulator::Control control)
{
    server = std::make_unique<simulator::FleetServer>(std::vector<simulator::ControllerConfig>{config}, control);
}

std::string Simulated::url(const std::string& path) const
{
    return server->endpoints().front().url + path;
}

simulator::ControllerStatistics Simulated::statistics() const
{
    return server->statistics().front().values;
}

void Simulated::addFault(const nlohmann::json& fault)
{
    config.faults.push_back(simulator::readFault(fault, "test"));
}

nlohmann::json parsed(const std::string& text)
{
    return nlohmann::json::parse(text, nullptr, false);
}
} // namespace simulator_tests
