#include "statistics.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace simulator
{
namespace
{
constexpr std::size_t kMostPaths = 1000;
} // namespace

void Statistics::requestBegins(const std::string& method, const std::string& path)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    ++values_.requests;
    ++values_.requestsNow;
    values_.mostParallelRequests = std::max(values_.mostParallelRequests, values_.requestsNow);
    const std::string key = method + " " + path;
    if (values_.paths.size() < kMostPaths || values_.paths.count(key) != 0)
    {
        ++values_.paths[key];
    }
}

void Statistics::requestEnds()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    --values_.requestsNow;
}

std::string statisticsJson(const std::vector<NamedStatistics>& all)
{
    nlohmann::json controllers = nlohmann::json::array();
    std::uint64_t requests = 0;
    std::uint64_t sessionsOpen = 0;
    for (const NamedStatistics& one : all)
    {
        const ControllerStatistics& values = one.values;
        requests += values.requests;
        sessionsOpen += values.sessionsOpen;
        nlohmann::json statuses = nlohmann::json::object();
        for (const auto& entry : values.statuses)
        {
            statuses[std::to_string(entry.first)] = entry.second;
        }
        controllers.push_back({{"name", one.name},
                               {"url", one.url},
                               {"connections", values.connections},
                               {"failed_handshakes", values.failedHandshakes},
                               {"requests", values.requests},
                               {"requests_now", values.requestsNow},
                               {"most_parallel_requests", values.mostParallelRequests},
                               {"refused_logins", values.refusedLogins},
                               {"faults", values.faults},
                               {"sessions_open", values.sessionsOpen},
                               {"sessions_created", values.sessionsCreated},
                               {"sessions_deleted", values.sessionsDeleted},
                               {"statuses", std::move(statuses)},
                               {"paths", values.paths}});
    }
    const nlohmann::json whole = {
        {"controllers", std::move(controllers)}, {"requests", requests}, {"sessions_open", sessionsOpen}};
    return whole.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}
} // namespace simulator
