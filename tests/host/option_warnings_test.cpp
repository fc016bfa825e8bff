#include "option_warnings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

TEST(OptionWarnings, NameWhatASavedQueryLeavesWithoutEffect)
{
    UserContext context;
    context.options = {{"queryxml", "q.xml"}, {"forceid", "a"}, {"excludeid", "b"}, {"pattern", "nic"}};
    EXPECT_THAT(optionWarnings(context), ElementsAre(EndsWith(": --excludeid, --forceid")));
    context.options = {{"queryxml", "q.xml"}, {"scope", "latest"}};
    EXPECT_THAT(optionWarnings(context), ElementsAre(EndsWith(": --scope")));
}

TEST(OptionWarnings, AreNotMadeWithoutReason)
{
    UserContext context;
    context.options = {{"forceid", "a"}, {"excludeid", "b"}};
    EXPECT_THAT(optionWarnings(context), IsEmpty());
    // These are read elsewhere too.
    context.options = {{"queryxml", "q.xml"}, {"mt", "7X20"}, {"type", "fw"}, {"noreq", ""}, {"psu", "1"}};
    EXPECT_THAT(optionWarnings(context), IsEmpty());
}
