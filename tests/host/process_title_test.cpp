#include "process_title.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
using Words = std::vector<std::string>;

Words hidden(Words words)
{
    std::vector<char*> pointers;
    for (std::string& word : words)
    {
        pointers.push_back(&word[0]);
    }
    process_title::hideSecrets(static_cast<int>(pointers.size()), pointers.data());
    return words;
}
} // namespace

TEST(ProcessTitle, HidesPasswords)
{
    EXPECT_EQ(hidden({"korvan", "--bmc-password", "p@w", "--bmc-password=s3", "--bmc-password="}),
              (Words{"korvan", "--bmc-password", "***", "--bmc-password=**", "--bmc-password="}));
    EXPECT_EQ(hidden({"--bmc-password"}), Words{"--bmc-password"});
    EXPECT_EQ(hidden({}), Words{});
}

TEST(ProcessTitle, HidesWhatStandsInFrontOfAnAddress)
{
    for (const char* option : {"--bmc", "--pmx", "--esxi", "--cmm", "--smm", "--exclude"})
    {
        EXPECT_EQ(hidden({option, "u:p@h,i"}), (Words{option, "***@h,i"}));
        EXPECT_EQ(hidden({option + std::string("=u:p,q@h")}), Words{option + std::string("=*****@h")});
    }
    EXPECT_EQ(hidden({"--bmc", "h,i", "--cmm", "@list", "--smm", "-"}),
              (Words{"--bmc", "h,i", "--cmm", "@list", "--smm", "-"}));
}

TEST(ProcessTitle, LeavesOtherWordsAlone)
{
    const Words words = {"u:p@h", "--dir", "a@b", "--output=c@d", "--password-file", "e@f", "--bmc-username", "g"};
    EXPECT_EQ(hidden(words), words);
}
