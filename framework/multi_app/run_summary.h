#pragma once

#include "korvan_result.h"

#include <iosfwd>
#include <map>
#include <string>

// What a run tells at its end.
namespace run_summary
{
enum class Outcome
{
    Succeeded,
    Skipped,
    Failed,
};

Outcome outcomeOf(const KorvanResult& result);

// True for a success that has more to say than that, such as an inventory with gaps.
bool hasRemark(const KorvanResult& result);

// "OK", "SKIPPED" or "FAILED".
const char* wordOf(Outcome outcome);

// Prints a blank line, one line a target (what went well first, the remarkable last of it, then what was skipped, then what
// failed, so that the failures stand right above the prompt) and the closing count.
void print(std::ostream& out, const std::map<std::string, KorvanResult>& results, const std::string& outputDir);

// Code 58 when a target failed, else 59 when one was skipped, else 0.
KorvanResult overall(const std::map<std::string, KorvanResult>& results);
} // namespace run_summary
