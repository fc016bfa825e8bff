#pragma once

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

// Files under tests/golden that say what an output must be.
namespace golden
{
// Rows of a tab-separated file; a missing file fails the test that reads it.
inline std::vector<std::vector<std::string>> rows(const std::string& name)
{
    const std::string path = std::string(KORVAN_SOURCE_DIR) + "/tests/golden/" + name;
    std::ifstream file(path);
    if (!file)
    {
        throw std::runtime_error("cannot open " + path);
    }
    std::vector<std::vector<std::string>> result;
    for (std::string line; std::getline(file, line);)
    {
        std::vector<std::string> cells;
        std::size_t begin = 0;
        for (std::size_t tab = line.find('\t'); tab != std::string::npos; tab = line.find('\t', begin))
        {
            cells.push_back(line.substr(begin, tab - begin));
            begin = tab + 1;
        }
        cells.push_back(line.substr(begin));
        result.push_back(cells);
    }
    return result;
}
} // namespace golden
