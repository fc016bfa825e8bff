#pragma once

#include "korvan_result.h"
#include "nova/server_info.h"
#include "user_context.h"

#include <vector>

namespace multi_command
{
enum class StandardInput
{
    Free,
    Taken, // the targets came from it
};

// Fills in the users and passwords that the targets' addresses and lists do not give, each from the first that has it:
//   1. "bmc-username"; "bmc-password", the first line of the file that "password-file" names, or of standard input with
//      "password-stdin"
//   2. the environment's KORVAN_USERNAME and KORVAN_PASSWORD
//   3. the user, asked once for all targets, when there is a terminal and no "no-input"
// Targets of the kind "local" need none and get none; a target without a user gets no password.
//
// Code 5 for a wrong option or value, 6 and 7 for the file, 47 when the user breaks off. No message holds a password.
KorvanResult fillCredentials(const UserContext& context, StandardInput input, std::vector<nova::ServerInfo>& servers);
} // namespace multi_command
