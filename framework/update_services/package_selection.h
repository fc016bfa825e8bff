#pragma once

#include "service/update_compare.h"
#include "update_services/child_comparison.h"

// Which packages of a query are to be applied to a target, and why the others are not (docs/compare.md).
namespace update_services
{
// One ComparedPackage for each package of the query, in its order.
std::vector<service::ComparedPackage> selectPackages(const service::QueryReport& query, const InstalledItems& installed,
                                                     const service::CompareOptions& options);
} // namespace update_services
