#pragma once

#include "korvan_result.h"
#include "multi_app/multi_configure.h"

#include <cstddef>
#include <map>
#include <string>

// What a run takes over from an earlier one in the same output directory.
namespace earlier_run
{
// Moves the targets that have a folder "SUCCESS-NAME" to `doneBefore`, in their order.
void setAside(nova::MultiConfigure& configure);

// The results of the targets set aside: success, with a text that says when, and what of the inventory was not read then.
void addResults(const nova::MultiConfigure& configure, std::map<std::string, KorvanResult>& results);

// How many compare reports the output directory holds that are of none of the run's targets; the table over all targets
// shows them too. 0 where the directory cannot be read.
std::size_t countOtherReports(const nova::MultiConfigure& configure);
} // namespace earlier_run
