#pragma once

#include "korvan_result.h"
#include "service/update_query.h"
#include "user_context.h"

namespace service
{
namespace adapter
{
// Lays the user's options over a query that the scan has filled: what the user states wins. Decides the scope when the
// user gives none; some machine types always query every update type at the latest level.
//
// Always a success: what is missing or wrong is logged, and the conversion goes on. An empty "dir" value leaves by the
// string's out-of-range exception.
KorvanResult convert_to(const UserContext& context, QueryOptions& options);
} // namespace adapter
} // namespace service
