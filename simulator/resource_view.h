#pragma once

#include "behaviour.h"
#include "reply.h"
#include "request_target.h"
#include "resource_store.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>

namespace simulator
{
// A resource as a controller with this behaviour shows it: its page of a collection, its way with $expand (DMTF
// DSP0266, "Query parameters").
Reply showResource(const nlohmann::json& resource, const ResourceStore& store, const Behaviour& behaviour,
                   const RequestTarget& target);

// A collection of `members` invented firmware items, made while it is sent. `expanded` ones carry their values.
enum class MemberForm
{
    Reference,
    Expanded,
};
Reply hugeCollection(const std::string& path, std::uint64_t members, MemberForm form);

// The item that hugeCollection named "PATH/Generated-N"; empty for other paths.
std::string generatedMember(const std::string& path);
} // namespace simulator
