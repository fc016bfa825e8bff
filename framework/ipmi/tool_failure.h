#pragma once

#include "connect_option.h"
#include "ipmi/child_process.h"
#include "korvan_result.h"

#include <string>

namespace ipmi
{
// Why ipmitool gave no answer.
enum class ToolFault
{
    None,
    CipherSuite, // the controller refused the cipher suite
    Login,
    NoAnswer,
    NameNotFound,
    Session, // another failure to set up the session
    Command, // the session stood, the command failed
    Run,     // the program could not be run to its end
};

// Judges by how the program ended and by what it wrote with -v; None for a success.
ToolFault faultOf(const ChildOutcome& outcome);

// The result for the user: code, target, stage and what to do. Holds no password.
KorvanResult failureResult(ToolFault fault, const ChildOutcome& outcome, const ConnectOption& option,
                           const std::string& stage);

// The same for what is known before anything is run.
KorvanResult passwordTooLong(const ConnectOption& option);
KorvanResult toolMissing(const ConnectOption& option, const std::vector<std::string>& folders);
} // namespace ipmi
