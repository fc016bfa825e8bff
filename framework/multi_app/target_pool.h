#pragma once

#include "korvan_result.h"
#include "multi_app/multi_configure.h"
#include "multi_app/run_progress.h"
#include "multi_app/target_task.h"

#include <map>
#include <string>

// Runs the task of every target, at most `configure.parallel` at once and each on a thread of the pool; returns when
// all have ended. After an interrupt no further target starts. The results stand under the targets' names.
std::map<std::string, KorvanResult> runTargets(const nova::MultiConfigure& configure, const target_task::Task& task,
                                               RunProgress& progress);
