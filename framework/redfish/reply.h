#pragma once

#include "korvan_result.h"

namespace redfish
{
// Why a request gave nothing.
enum class Fault
{
    None,
    Interrupted,
    TimeLimit,
    Unreachable,
    Certificate,
    Login,          // user name or password refused
    Forbidden,      // logged in, but not for this resource
    PasswordChange, // logged in, but only to change the password
    Missing,        // no such resource
    Busy,           // still "come back later" after all retries
    Status,         // another HTTP error
    Redirected,     // to a place that is not followed
    Unreadable,     // an answer that is no usable JSON
};

// The outcome of one request with all its retries. `result` carries code and text for the user.
struct Reply
{
    Fault fault = Fault::None;
    int status = 0;
    KorvanResult result;

    bool ok() const { return fault == Fault::None; }
};
} // namespace redfish
