#pragma once

#include "simulator/fleet_server.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <string>

namespace simulator_tests
{
// A folder of its own for one test, gone with it.
class TemporaryFolder
{
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return path_; }

    // Writes a file below the folder and returns its path.
    std::string write(const std::string& name, const std::string& content) const;

  private:
    std::string path_;
};

// One controller over plain HTTP with a service root, and a collection /redfish/v1/Systems of five members S1..S5.
// Tests change `config` and then call start().
class Simulated : public testing::Test
{
  protected:
    Simulated();

    void start(simulator::Control control = simulator::Control::Off);

    // The URL of a path at the first controller.
    std::string url(const std::string& path) const;

    simulator::ControllerStatistics statistics() const;

    // Adds one of the faults that docs/simulator.md lists.
    void addFault(const nlohmann::json& fault);

    TemporaryFolder folder;
    simulator::ControllerConfig config;
    std::unique_ptr<simulator::FleetServer> server;
};

constexpr const char* kSystems = "/redfish/v1/Systems";
constexpr const char* kSessions = "/redfish/v1/SessionService/Sessions";

// Never throws: broken JSON gives a discarded value.
nlohmann::json parsed(const std::string& text);
} // namespace simulator_tests
