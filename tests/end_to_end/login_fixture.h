#pragma once

#include "end_to_end/fleet_fixture.h"

// One server, and ways to log in to it.
class Login : public FleetFixture
{
  protected:
    void SetUp() override { serve({"rack-a"}); }

    void expectCompared(const test_support::ProcessOutcome& outcome) const
    {
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.out << outcome.err;
        EXPECT_TRUE(exists("out/SUCCESS-" + folder("rack-a") + "/Korvan-update-compare.xml"));
        expectNoSecret(outcome.out + outcome.err, kPassword);
    }

    // Refused before anything was made.
    void expectRefused(const test_support::ProcessOutcome& outcome, int status, const std::string& reason) const
    {
        EXPECT_EQ(outcome.exitStatus, status) << outcome.out << outcome.err;
        EXPECT_NE(outcome.err.find(reason), std::string::npos) << outcome.err;
        EXPECT_EQ((outcome.out + outcome.err).find(kPassword), std::string::npos);
        EXPECT_FALSE(exists("out"));
    }
};
