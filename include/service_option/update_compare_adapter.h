#pragma once

#include "korvan_result.h"
#include "service/update_compare.h"
#include "user_context.h"

namespace service
{
namespace adapter
{
// Fills the settings of a comparison from the user's options. Always a success, without a message of its own.
KorvanResult convert_to(const UserContext& context, CompareOptions& options);
} // namespace adapter
} // namespace service
