#include "multi_app/run_summary.h"

#include <gtest/gtest.h>

#include <sstream>

namespace
{
std::string printed(const std::map<std::string, KorvanResult>& results)
{
    std::ostringstream out;
    run_summary::print(out, results, "/out");
    return out.str();
}
} // namespace

TEST(RunSummary, PrintsFailuresLast)
{
    const std::map<std::string, KorvanResult> results = {
        {"10.0.0.1", KorvanResult()},
        {"a", KorvanResult(13, "no\nanswer")},
        {"b", KorvanResult(47)},
        {"long-name.example", KorvanResult(0x10068, "nothing")},
        {"c", KorvanResult(0, "the inventory has gaps")},
        {"z", KorvanResult(0, "Succeed.")},
    };
    EXPECT_EQ(printed(results), "\n"
                                "10.0.0.1           OK          0  Succeed.\n"
                                "z                  OK          0  Succeed.\n"
                                "c                  OK          0  the inventory has gaps\n"
                                "b                  SKIPPED    47  Interrupted by user.\n"
                                "a                  FAILED     13  no\\x0Aanswer\n"
                                "long-name.example  FAILED    104  nothing\n"
                                "6 targets: 3 succeeded, 2 failed, 1 skipped. Results: /out\n");
}

TEST(RunSummary, CountsOneTargetAndNone)
{
    EXPECT_EQ(printed({{"a", KorvanResult()}}),
              "\na  OK          0  Succeed.\n1 target: 1 succeeded, 0 failed, 0 skipped. Results: /out\n");
    EXPECT_EQ(printed({}), "\nNo target was named; name controllers with --bmc or --pmx, or several and this machine "
                           "in a list with --config. Results: /out\n");
}

TEST(RunSummary, FailureOutweighsSkipOutweighsSuccess)
{
    EXPECT_EQ(run_summary::overall({}).code, 0U);
    EXPECT_EQ(run_summary::overall({{"a", KorvanResult(0x10000)}}).code, 0U);
    EXPECT_EQ(run_summary::overall({{"a", KorvanResult()}, {"b", KorvanResult(47)}}).code, 59U);
    EXPECT_EQ(run_summary::overall({{"a", KorvanResult(1)}, {"b", KorvanResult(47)}}).code, 58U);
}
