#pragma once

#include "redfish/transport.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

// A service in memory: answers by path, records what was asked. Rules come before the plain resources.
class FakeTransport : public redfish::Transport
{
  public:
    using Rule = std::function<bool(const redfish::Request& request, redfish::Exchange& answer)>;

    // What a test keeps in hand while the client owns the transport.
    struct Service
    {
        std::map<std::string, std::string> resources; // path to JSON
        std::vector<Rule> rules;
        std::vector<redfish::Request> requests;

        std::size_t count(const std::string& method, const std::string& path) const
        {
            std::size_t found = 0;
            for (const redfish::Request& request : requests)
            {
                found += request.method == method && request.path == path ? 1 : 0;
            }
            return found;
        }
    };

    explicit FakeTransport(Service& service) : service_(service) {}

    redfish::Exchange perform(const redfish::Request& request) override
    {
        service_.requests.push_back(request);
        redfish::Exchange answer;
        for (const Rule& rule : service_.rules)
        {
            if (rule(request, answer))
            {
                return answer;
            }
        }
        const auto found = service_.resources.find(request.path);
        answer.status = found == service_.resources.end() ? 404 : 200;
        answer.body = found == service_.resources.end() ? "" : found->second;
        return answer;
    }

  private:
    Service& service_;
};

inline redfish::Exchange answerWith(int status, const std::string& body = "")
{
    redfish::Exchange answer;
    answer.status = status;
    answer.body = body;
    return answer;
}

// The first `times` requests for the path get the answer.
inline FakeTransport::Rule firstTimes(const std::string& path, int times, const redfish::Exchange& given)
{
    return [path, given, left = times](const redfish::Request& request, redfish::Exchange& answer) mutable
    {
        if (request.path != path || left-- <= 0)
        {
            return false;
        }
        answer = given;
        return true;
    };
}
