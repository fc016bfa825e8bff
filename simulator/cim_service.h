#pragma once

#include "behaviour.h"
#include "reply.h"

namespace simulator
{
constexpr const char* kCimPath = "/cimom";

// What the CIM service of a controller answers to a request whose login is right: EnumerateInstances of CIM_Chassis in
// root/cimv2 (DMTF DSP0200 and DSP0201), and the errors that those documents have for everything else.
Reply cimAnswer(const Request& request, const Behaviour& behaviour);
} // namespace simulator
