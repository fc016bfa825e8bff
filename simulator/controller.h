#pragma once

#include "fleet_config.h"
#include "reply.h"
#include "request_target.h"
#include "resource_store.h"
#include "session_store.h"
#include "statistics.h"

#include <memory>
#include <optional>
#include <string>

namespace simulator
{
// What one management controller answers; knows nothing of sockets. For one thread at a time (the event loop); only
// the statistics may be read from elsewhere.
class Controller
{
  public:
    Controller(ControllerConfig config, std::shared_ptr<const ResourceStore> store);

    Reply answer(const Request& request);

    const ControllerConfig& config() const { return config_; }
    Statistics& statistics() { return statistics_; }
    const Statistics& statistics() const { return statistics_; }

  private:
    Reply plainAnswer(const Request& request, const RequestTarget& target);
    Reply resourceAnswer(const Request& request, const RequestTarget& target);
    Reply sessionsAnswer(const Request& request, const RequestTarget& target);
    Reply createSession(const Request& request);
    Reply applyFault(const FaultRule& rule, const Request& request, const std::optional<RequestTarget>& target);

    std::optional<Reply> slashAnswer(const Request& request, const RequestTarget& target) const;
    std::optional<Reply> refusal(const Request& request, const RequestTarget& target);
    bool hasBasic(const Request& request) const;
    Reply unauthorized(bool basicHelps); // whether Basic would be taken in place of what came

    ControllerConfig config_;
    std::shared_ptr<const ResourceStore> store_;
    std::string basicHeader_; // what a right login sends, in Base64
    SessionStore sessions_;
    FaultPlan faults_;
    Statistics statistics_;
};
} // namespace simulator
