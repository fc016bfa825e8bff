#include "service_runner/legacy_process.h"

#include "interrupt.h"

#include <gtest/gtest.h>

TEST(LegacyProcess, ThatASignalEndedHasNotSucceeded)
{
    EXPECT_NE(RunCommandLine("kill -9 $$"), 0);
}

TEST(LegacyProcess, PassesOnTheWishOfAUserWhoInterruptsIt)
{
    interrupt::reset();
    EXPECT_NE(RunCommandLine("kill -INT $$"), 0);
    EXPECT_TRUE(interrupt::requested());
    interrupt::reset();
    EXPECT_EQ(RunCommandLine("exit 3"), 3);
    EXPECT_FALSE(interrupt::requested());
}
