#include "target_run/target_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(TargetRun, HasOneDeadlineHoweverOftenItIsAskedFor)
{
    const target_run::Scope scope;
    const auto first = target_run::deadline(seconds(10));
    std::this_thread::sleep_for(milliseconds(20));
    EXPECT_EQ(target_run::deadline(seconds(10)), first);
    EXPECT_EQ(target_run::deadline(seconds(11)), first + seconds(1));
}

TEST(TargetRun, BeginsNowWhereNoTargetIsWorkedOn)
{
    const auto before = steady_clock::now();
    std::this_thread::sleep_for(milliseconds(20));
    EXPECT_GE(target_run::deadline(seconds(10)), before + seconds(10) + milliseconds(20));
}

TEST(TargetRun, KeepsEachRemarkOnTheRunOnceForAllTargets)
{
    target_run::takeRunRemarks();
    target_run::remarkOnRun("outside");
    const auto work = []
    {
        const target_run::Scope scope;
        target_run::remarkOnRun("of all");
        EXPECT_THAT(scope.remarks(), IsEmpty());
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    EXPECT_THAT(target_run::takeRunRemarks(), ElementsAre("outside", "of all"));
    EXPECT_THAT(target_run::takeRunRemarks(), IsEmpty());
}

TEST(TargetRun, KeepsEachRemarkOnceForItsOwnTarget)
{
    target_run::remark("before");
    {
        const target_run::Scope scope;
        target_run::remark("one");
        std::thread([] { target_run::remark("of another target's thread"); }).join();
        target_run::remark("two");
        target_run::remark("one");
        EXPECT_THAT(scope.remarks(), ElementsAre("one", "two"));
    }
    const target_run::Scope next;
    EXPECT_THAT(next.remarks(), IsEmpty());
}
