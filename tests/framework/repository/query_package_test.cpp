#include "query_package.h"

#include "descriptor_text.h"
#include "repository/repository.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace
{
using XModule::OSInfo;
using XModule::QueryPackage;

bool supported(const std::string& directory, const std::vector<OSInfo>& systems, const std::string& machineType)
{
    QueryPackage query;
    query.SetPlatform(systems, machineType);
    return query.CheckIsVelpakSupport(directory);
}

TEST(QueryPackage, AnswersForAnyOfTheSystems)
{
    const test_support::ScratchFolder folder;
    folder.write("p.xml", descriptor_text::velpak("p", "7Y41", "rhel6", "<UPDATEID>a</UPDATEID>"));
    const std::string directory = folder.path() + "\\";
    EXPECT_FALSE(supported(directory, {OSInfo(402, 2, "")}, "7Y41"));
    EXPECT_TRUE(supported(directory, {OSInfo(402, 2, ""), OSInfo(208, 2, "")}, "7Y41"));
    EXPECT_FALSE(supported(directory, {OSInfo(208, 2, "")}, "7X20"));
    EXPECT_FALSE(supported(directory, {}, "7Y41"));
    repository::Repository::forget();
}

TEST(QueryPackage, AMissingDirectoryThrowsWithItsName)
{
    const test_support::ScratchFolder folder;
    try
    {
        supported(folder.path() + "/nothing", {OSInfo(402, 2, "")}, "7Y41");
        FAIL() << "no exception";
    }
    catch (const std::runtime_error& error)
    {
        EXPECT_THAT(error.what(), testing::HasSubstr(folder.path() + "/nothing"));
    }
}
} // namespace
