#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace simulator
{
struct ControllerStatistics
{
    std::uint64_t connections = 0;
    std::uint64_t failedHandshakes = 0;
    std::uint64_t requests = 0;
    std::uint64_t requestsNow = 0;
    std::uint64_t mostParallelRequests = 0;
    std::uint64_t refusedLogins = 0;
    std::uint64_t faults = 0;
    std::uint64_t sessionsOpen = 0;
    std::uint64_t sessionsCreated = 0;
    std::uint64_t sessionsDeleted = 0;
    std::map<unsigned, std::uint64_t> statuses; // answers by status code
    std::map<std::string, std::uint64_t> paths; // requests by "METHOD path", at most 1000 kinds
};

// What happened at one controller. The event loop writes, any thread may read.
class Statistics
{
  public:
    template <class Change>
    void update(Change change)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        change(values_);
    }

    ControllerStatistics snapshot() const
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return values_;
    }

    void requestBegins(const std::string& method, const std::string& path);
    void requestEnds();

  private:
    mutable std::mutex mutex_;
    ControllerStatistics values_;
};

struct NamedStatistics
{
    std::string name;
    std::string url;
    ControllerStatistics values;
};

// {"controllers":[...]}, with totals; keys as docs/simulator.md lists them.
std::string statisticsJson(const std::vector<NamedStatistics>& all);
} // namespace simulator
