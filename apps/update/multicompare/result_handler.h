#pragma once

#include <string>

// Builds the comparison of all targets from the compare reports below the output directory: prints the cross-target
// table and its footnotes, and writes "compare_result.json". Whatever goes wrong is printed or logged; nothing throws.
//
// `pattern`: a case-insensitive regular expression in Perl syntax that narrows the table, not the JSON file.
void HandleCompareResult(const std::string& pattern, const std::string& outputDirectory);
