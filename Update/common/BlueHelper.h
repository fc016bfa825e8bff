#pragma once

#include "user_context.h"

#include <string>

// Tells whether a target is a legacy, Tolmar-branded system, which the update services do not serve.
//
// Keeps no state; calls for different targets may run at once. Nothing throws or fails: a machine type that cannot be
// found is empty, and an unknown machine type is not legacy. The log says why.
class BlueHelper
{
  public:
    // The target's machine type: from the saved scan ("scanxml"), else from "mt" (the first of several), else asked of
    // the target over REST, CIM or IPMI.
    static std::string GetMt(const UserContext& context);

    static bool IsBLUE(const UserContext& context);
};
