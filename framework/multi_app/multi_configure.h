#pragma once

#include "korvan_result.h"
#include "multi_command/target_set.h"

#include <cstddef>
#include <string>
#include <vector>

namespace nova
{
// What a run works on: made by BasicMultiApp::CreateConfigure from the parent context, read only while tasks run.
class MultiConfigure
{
  public:
    KorvanResult status; // why the context is no good; then the rest is not to be used
    std::vector<multi_command::Target> targets;
    std::size_t parallel = 1;
    int logLevel = 0;
    bool resume = false;
    std::vector<multi_command::Target> doneBefore; // not run again, the output directory has their results
    std::string outputDir;                         // as the user gave it, empty: a new folder; absolute once it is made
};
} // namespace nova
