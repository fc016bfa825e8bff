#pragma once

#include <cstddef>
#include <string>

// The line at the bottom of the terminal (standard error) that is drawn again and again. One thread at a time.
namespace status_line
{
// The text's beginning that fits into the columns; control characters made visible.
std::string fitted(const std::string& value, std::size_t columns);

void draw(const std::string& value);
void clear();

// While a run over many targets draws its own line, the progress bars of single targets stay silent.
class Owner
{
  public:
    Owner();
    ~Owner();
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;
};
bool owned();
} // namespace status_line
