#pragma once

#include "compare_package.h"

#include <boost/regex_fwd.hpp>

#include <cstdint>
#include <iosfwd>
#include <set>
#include <string>

class TableStream;

// Texts that explain why packages are not selected: sorted, each once.
using Footnotes = std::set<std::string>;

constexpr int kCompareTableColumns = 9;
constexpr char kCompareTableTitle[] = "Compare Result";
constexpr int kCompareTableIndent = 4;

// The cross-target table's head row.
void AddHeaderRow(TableStream& stream);

// Writes the rows of one host's package and counts them. Rows are numbered from `counter`, which starts at 0 for the
// first host. A package that did not match the pattern shows only those detected children whose software id does. Its
// reason joins the footnotes whether or not it gives a row.
//
// Throws std::out_of_range for a package version without "Version " that has fewer than seven characters.
void AddPackageRows(TableStream& stream, std::int32_t& counter, const std::string& host, const ComparePackage& package,
                    Footnotes& footnotes, const boost::regex& pattern, bool packageMatched);

void PrintFootnotes(std::ostream& out, const Footnotes& footnotes);
