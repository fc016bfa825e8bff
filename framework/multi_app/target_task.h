#pragma once

#include "korvan_result.h"
#include "multi_command/target_set.h"
#include "nova/server_info.h"

#include <functional>
#include <string>

// One target's part of a run: its folder, its task, its name in the log.
namespace target_task
{
using Task = std::function<KorvanResult(const nova::ServerInfo& server, const std::string& folder)>;

// Removes the target's folders of earlier runs, makes a new one, runs the task in it and renames the folder to
// SUCCESS-NAME or FAILURE-NAME. Never throws: an exception of the task is code 17, a folder that cannot be made code 8.
KorvanResult run(const multi_command::Target& target, const std::string& outputDir, const Task& task);

// For a target that never starts: removes its folders of earlier runs, so that no report takes them for this run's.
KorvanResult skip(const multi_command::Target& target, const std::string& outputDir);

// The target whose task runs on this thread; null outside of a task.
const nova::ServerInfo* current();
} // namespace target_task
