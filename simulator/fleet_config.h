#pragma once

#include "behaviour.h"
#include "fault_rules.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace simulator
{
struct ControllerConfig
{
    std::string name;
    std::string folder;
    std::string address = "127.0.0.1"; // a literal loopback address
    std::uint16_t port = 0;            // 0: chosen by the system
    bool tls = true;
    std::string user;
    std::string password;
    std::chrono::milliseconds latency{0};
    Behaviour behaviour;
    std::vector<FaultRule> faults;
};

// The controllers of a fleet file, copies spelt out; format in docs/simulator.md. Throws SimulatorError.
std::vector<ControllerConfig> loadFleet(const std::string& path);

// One folder as a controller named like the folder, with the habits of its simulator.json. Throws SimulatorError.
ControllerConfig loadSingle(const std::string& folder);

// `count` copies: on one port and consecutive addresses, or on one address and consecutive ports (0 stays 0). They are
// called NAME-1, NAME-2 and so on. Throws SimulatorError when they leave the loopback network or the port range.
enum class CopyStep
{
    Address,
    Port,
};
std::vector<ControllerConfig> copies(const ControllerConfig& first, std::size_t count, CopyStep step);
} // namespace simulator
