#pragma once

#include "korvan_result.h"
#include "multi_app/multi_configure.h"

#include <map>
#include <string>

// What a run takes over from an earlier one in the same output directory.
namespace earlier_run
{
// Moves the targets that have a folder "SUCCESS-NAME" to `doneBefore`, in their order.
void setAside(nova::MultiConfigure& configure);

// The results of the targets set aside: success, with a text that says when.
void addResults(const nova::MultiConfigure& configure, std::map<std::string, KorvanResult>& results);
} // namespace earlier_run
