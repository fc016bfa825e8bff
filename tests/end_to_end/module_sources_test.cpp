#include "support/scratch_folder.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>

#include <sstream>

namespace
{
namespace fs = boost::filesystem;

// Names of the headers that a file includes in quotes.
std::vector<std::string> quotedIncludes(const fs::path& path)
{
    std::vector<std::string> headers;
    std::istringstream lines(test_support::readFile(path.string()));
    const std::string mark = "#include \"";
    for (std::string line; std::getline(lines, line);)
    {
        if (line.compare(0, mark.size(), mark) == 0)
        {
            headers.push_back(line.substr(mark.size(), line.find('"', mark.size()) - mark.size()));
        }
    }
    return headers;
}

TEST(ModuleSources, IncludeTheirOwnHeadersAndTheContractsOnly)
{
    const fs::path root(KORVAN_SOURCE_DIR);
    const fs::path places[] = {
        root / "apps/update/multicompare", root / "include",       root / "service", root / "Update", root / "Utility",
        root / "framework/include",        root / "shared/include"};
    std::size_t checked = 0;
    for (const fs::path& folder : {places[0], places[1], places[2], places[3], places[4]})
    {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
        {
            for (const std::string& header : quotedIncludes(entry.path()))
            {
                bool found = header.find("..") == std::string::npos && header == "korvan_framework_export.h";
                for (const fs::path& place : places)
                {
                    found = found || (header.find("..") == std::string::npos && fs::exists(place / header));
                }
                EXPECT_TRUE(found) << entry.path() << " includes " << header;
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 80U);
}
} // namespace
