#pragma once

#include "korvan_framework_export.h"

#include <iosfwd>
#include <string>
#include <vector>

// Takes a table's cells one after another, left to right, row after row.
class KORVAN_FRAMEWORK_EXPORT TableStream
{
  public:
    TableStream& operator<<(const std::string& cell);
    TableStream& operator<<(const char* cell);
    TableStream& operator<<(int cell);

    const std::vector<std::string>& cells() const { return cells_; }

  private:
    std::vector<std::string> cells_;
};

// Prints a bordered table: a title, the first row as the head, cells separated by '|' and aligned by display width.
// Control characters in cells are made visible instead of reaching the terminal. Used by one thread at a time.
class KORVAN_FRAMEWORK_EXPORT TableSerializer
{
  public:
    // `indent`: blanks in front of every line. Fewer than one column counts as one.
    TableSerializer(int columns, const std::string& title, int indent);

    TableStream& sstream() { return stream_; }

    // Prints all rows so far; a last row that is not complete is filled with empty cells.
    void PrintTable(std::ostream& out) const;

  private:
    int columns_;
    std::string title_;
    int indent_;
    TableStream stream_;
};
