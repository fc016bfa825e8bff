#include "support/process.h"
#include "support/scratch_folder.h"

#include <boost/filesystem/operations.hpp>
#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace
{
namespace fs = boost::filesystem;
using Names = std::set<std::string>;

// Symbol names as nm prints them, with `flags` to choose among them.
Names symbols(const std::vector<std::string>& flags)
{
    std::vector<std::string> arguments = {"-D", "--format=posix"};
    arguments.insert(arguments.end(), flags.begin(), flags.end());
    arguments.emplace_back(KORVAN_MODULE);
    const test_support::ProcessOutcome outcome = test_support::runProcess("/usr/bin/nm", arguments);
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.err;
    Names names;
    std::istringstream lines(outcome.out);
    for (std::string line; std::getline(lines, line);)
    {
        names.insert(line.substr(0, line.find_first_of(" @")));
    }
    return names;
}

TEST(ModuleFile, ExportsItsFactoryAndTheInlineBodiesOfItsBaseOnly)
{
    const Names allowed = {"create_instance",
                           "_ZN13BasicMultiAppD0Ev",
                           "_ZN13BasicMultiAppD1Ev",
                           "_ZN13BasicMultiAppD2Ev",
                           "_ZN13BasicMultiApp12HandleResultEv",
                           "_ZNK13BasicMultiApp14ConfirmMessageERK11UserContext",
                           "_ZNK13BasicMultiApp14ConfirmMessageB5cxx11ERK11UserContext",
                           "_ZTV13BasicMultiApp"};
    const Names exported = symbols({"--defined-only"});
    EXPECT_EQ(exported.count("create_instance"), 1U);
    EXPECT_EQ(exported.count("_ZNK13BasicMultiApp14ConfirmMessageB5cxx11ERK11UserContext"), 1U);
    for (const std::string& name : exported)
    {
        EXPECT_EQ(allowed.count(name), 1U) << name << " is exported";
    }
}

TEST(ModuleFile, ImportsTheFrameworksPartOfItsBase)
{
    const Names imported = symbols({"--undefined-only"});
    for (const char* name :
         {"_ZN13BasicMultiAppC2Ev", "_ZN13BasicMultiApp10InitializeERK11UserContext", "_ZN13BasicMultiApp7RunningEv",
          "_ZN13BasicMultiApp7CleanupEv", "_ZN13BasicMultiApp15CreateConfigureEv",
          "_ZNK13BasicMultiApp20InheritParentContextEb",
          "_ZN13BasicMultiApp15SummarizeResultERKSt3mapINSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"
          "12KorvanResultSt4lessIS6_ESaISt4pairIKS6_S7_EEE"})
    {
        EXPECT_EQ(imported.count(name), 1U) << name;
    }
}

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
