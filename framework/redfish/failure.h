#pragma once

#include "redfish/reply.h"
#include "redfish/transport.h"

#include <string>

namespace redfish
{
// Builds replies for failures: the result code and a text that names target, stage and what to do. `stage` says what
// was being done, "reading /redfish/v1/Systems". No text holds a password or a session token.
Reply transportFailure(const Exchange& exchange, const std::string& target, const std::string& stage,
                       const std::string& caCert);
Reply statusFailure(const Exchange& exchange, const std::string& target, const std::string& stage);
Reply unreadableFailure(const std::string& reason, const std::string& target, const std::string& stage);
Reply redirectFailure(const Exchange& exchange, const std::string& target, const std::string& stage);
Reply interruptedFailure(const std::string& target, const std::string& stage);
Reply deadlineFailure(const std::string& target, const std::string& stage);
// A user without a password, who is not tried.
Reply noPasswordFailure(const std::string& target);

Reply noServiceFailure(const std::string& target, const std::string& why);
} // namespace redfish
