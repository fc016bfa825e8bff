#pragma once

#include "service/update_scan.h"
#include "user_context.h"

namespace service
{
namespace adapter
{
// Lays the user's options over the settings of a scan. Never fails: what is missing takes its default and no value is
// checked. `commandLine` then holds the password that the user gave as an option.
void convert_to(const UserContext& context, UpdateScanOption& option);

// The update type alone: sets `type` when the user gave one, else leaves it.
void convert_update_type(const UserContext& context, UpdateScanOption& option);
} // namespace adapter
} // namespace service
