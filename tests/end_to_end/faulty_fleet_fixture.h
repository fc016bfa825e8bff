#pragma once

#include "end_to_end/fleet_fixture.h"

#include <map>
#include <string>
#include <vector>

// A controller that does something wrong beside one that works, through the real program: each fault costs its own
// target's result and nothing else.
class FaultyFleet : public FleetFixture
{
  protected:
    static constexpr char kFaulty[] = "rack-a";
    static constexpr char kGood[] = "rack-b";

    // The comparisons when nothing is wrong; made once.
    void SetUp() override;

    // `entry`: keys of the faulty controller's entry of the fleet file.
    void serveBeside(const nlohmann::json& entry);

    test_support::ProcessOutcome compareBoth(const std::vector<std::string>& more) const;

    // The good one's files are whole and say what they say without a faulty one beside it.
    void expectGoodUntouched(const test_support::ProcessOutcome& outcome) const;

    // `message`: a piece of the target's line on the screen.
    void expectFailed(const test_support::ProcessOutcome& outcome, int code, const std::string& message) const;
    void expectLivedThrough(const test_support::ProcessOutcome& outcome) const;

    std::string comparisonOfFaulty() const;

    // Whether the faulty one's comparison is the one without a fault.
    bool lostNothing() const { return comparisonOfFaulty() == undisturbed_[kFaulty]; }

  private:
    static std::map<std::string, std::string> undisturbed_;
};
