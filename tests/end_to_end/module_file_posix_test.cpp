#include "support/process.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace
{
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
    constexpr char kSummarizeResult[] =
        "_ZN13BasicMultiApp15SummarizeResultERKSt3mapINSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"
        "12KorvanResultSt4lessIS6_ESaISt4pairIKS6_S7_EEE";
    const Names imported = symbols({"--undefined-only"});
    for (const char* name :
         {"_ZN13BasicMultiAppC2Ev", "_ZN13BasicMultiApp10InitializeERK11UserContext", "_ZN13BasicMultiApp7RunningEv",
          "_ZN13BasicMultiApp7CleanupEv", "_ZN13BasicMultiApp15CreateConfigureEv",
          "_ZNK13BasicMultiApp20InheritParentContextEb", kSummarizeResult})
    {
        EXPECT_EQ(imported.count(name), 1U) << name;
    }
}
} // namespace
