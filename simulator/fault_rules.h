#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace simulator
{
// The order is the order of the names in controller_switches.cpp.
enum class FaultAction
{
    Status,
    Slow,
    Hang,
    CutBeforeHeaders,
    CutInHeaders,
    CutInBody,
    CutAfterBytes,
    EmptyReply,
    EmptyBody,
    BrokenJson,
    HugeBody,
    HugeCollection,
    ContentType,
    Redirect,
    RedirectToHttp,
    WithoutMembers,
    WithError,
    AnnotatedMembers,
};

// A regular expression over path and query as they were sent. An empty one matches everything.
class PathPattern
{
  public:
    PathPattern() = default;

    // std::invalid_argument when it is no valid expression.
    explicit PathPattern(const std::string& expression);

    // An expression that takes unreasonably long on this target does not match.
    bool matches(const std::string& target) const;

  private:
    struct Compiled;
    std::shared_ptr<const Compiled> compiled_;
};

struct FaultRule
{
    std::string method; // empty: every method
    PathPattern path;
    std::uint64_t skip = 0;
    std::uint64_t times = 0; // 0: always
    FaultAction action = FaultAction::Status;
    unsigned status = 500;
    std::optional<unsigned> retryAfter; // seconds
    std::chrono::milliseconds delay{0};
    std::uint64_t amount = 0; // bytes, MiB or members, by the action
    std::string text;         // a location, a content type or a message id, by the action
};

// The faults that one request meets: delays add up, of the others the first rule that matches counts.
struct FaultHit
{
    std::chrono::milliseconds delay{0};
    const FaultRule* rule = nullptr; // owned by the plan
};

// The rules of one controller with their counters. For one thread at a time.
class FaultPlan
{
  public:
    explicit FaultPlan(std::vector<FaultRule> rules);

    FaultHit next(const std::string& method, const std::string& target);

    bool has(FaultAction action) const;

  private:
    std::vector<FaultRule> rules_;
    std::vector<std::uint64_t> matches_;
};
} // namespace simulator
