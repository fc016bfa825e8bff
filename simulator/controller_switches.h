#pragma once

#include "behaviour.h"
#include "fault_rules.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace simulator
{
// The "behaviour" object and one object of the "faults" list, as docs/simulator.md describes them. `where` begins the
// text of the SimulatorError for what is wrong in them.
Behaviour readBehaviour(const nlohmann::json& object, const std::string& where);
FaultRule readFault(const nlohmann::json& object, const std::string& where);
} // namespace simulator
