#pragma once

#include <map>
#include <optional>
#include <string>

namespace simulator
{
// A request's target (RFC 9112, section 3.2.1) in parts.
struct RequestTarget
{
    std::string path; // percent signs decoded, without the slash at the end
    bool endsWithSlash = false;
    std::map<std::string, std::string> query; // decoded
    std::string rawQuery;
};

// Nothing for targets that are no plain absolute path or hold broken percent signs or control characters.
std::optional<RequestTarget> parseTarget(const std::string& target);
} // namespace simulator
