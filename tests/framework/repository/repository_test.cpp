#include "repository/repository.h"

#include "descriptor_text.h"
#include "log/log_control.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace
{
using repository::Repository;
using testing::Contains;
using testing::HasSubstr;

std::string packageText(const std::string& id)
{
    descriptor_text::Package package;
    package.id = id;
    return descriptor_text::text(package);
}

class RepositoryTest : public testing::Test
{
  protected:
    RepositoryTest()
    {
        log_control::observe(2, [this](int level, const std::string&, int, const std::string& text)
                             { records_.push_back(std::to_string(level) + " " + text); });
    }

    ~RepositoryTest() override
    {
        log_control::observe(0, log_control::Observer());
        Repository::forget();
    }

    std::shared_ptr<const Repository> open() { return Repository::open(folder_.path(), error_); }

    test_support::ScratchFolder folder_;
    std::string error_;
    std::vector<std::string> records_;
};

TEST_F(RepositoryTest, ReadsTheDescriptorsOfItsFolderOnlyInNameOrder)
{
    folder_.write("b.xml", packageText("b"));
    folder_.write("a.XML", packageText("a"));
    folder_.write("c.txt", packageText("c"));
    folder_.write("sub/d.xml", packageText("d"));
    const auto repository = open();
    ASSERT_NE(repository, nullptr);
    ASSERT_EQ(repository->packages().size(), 2U);
    EXPECT_EQ(repository->packages()[0].info.updateId, "a");
    EXPECT_EQ(repository->find("b"), &repository->packages()[1]);
    EXPECT_EQ(repository->find("d"), nullptr);
    EXPECT_TRUE(records_.empty());
}

TEST_F(RepositoryTest, ABrokenDescriptorIsReportedAndSkipped)
{
    folder_.write("a.xml", "<PACKAGE>");
    folder_.write("b.xml", packageText("b"));
    folder_.write("c.xml", "<SCAN/>");
    ASSERT_EQ(open()->packages().size(), 1U);
    EXPECT_THAT(records_, Contains(testing::AllOf(testing::StartsWith("1 "), HasSubstr("a.xml"), HasSubstr("line 1"))));
    EXPECT_THAT(records_, Contains(testing::AllOf(testing::StartsWith("2 "), HasSubstr("c.xml"))));
}

TEST_F(RepositoryTest, TheLaterOfTwoEqualUpdateIdsIsReportedAndSkipped)
{
    folder_.write("a.xml", packageText("same"));
    folder_.write("b.xml", packageText("same"));
    const auto repository = open();
    ASSERT_EQ(repository->packages().size(), 1U);
    EXPECT_EQ(repository->packages()[0].info.packageXml, "a.xml");
    EXPECT_THAT(records_, Contains(testing::AllOf(testing::StartsWith("1 "), HasSubstr("b.xml"), HasSubstr("a.xml"))));
}

TEST_F(RepositoryTest, SeparatorsAtTheEndNameTheSameDirectory)
{
    folder_.write("a.xml", packageText("a"));
    const auto repository = open();
    EXPECT_EQ(Repository::open(folder_.path() + "\\", error_), repository);
    EXPECT_EQ(Repository::open(folder_.path() + "/", error_), repository);
}

TEST_F(RepositoryTest, ADotWithABackslashIsTheWorkingDirectory)
{
    folder_.write("a.xml", packageText("a"));
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder_.path());
    const auto repository = Repository::open(".\\", error_);
    std::filesystem::current_path(before);
    ASSERT_NE(repository, nullptr) << error_;
    EXPECT_EQ(repository->packages().size(), 1U);
}

TEST_F(RepositoryTest, AMissingDirectoryIsAnErrorUntilItIsThere)
{
    const std::string path = folder_.path() + "/later";
    EXPECT_EQ(Repository::open(path, error_), nullptr);
    EXPECT_FALSE(error_.empty());
    folder_.write("later/a.xml", packageText("a"));
    EXPECT_NE(Repository::open(path, error_), nullptr);
}

TEST_F(RepositoryTest, ManyTargetsAtOnceReadItOnce)
{
    for (int index = 0; index < 20; ++index)
    {
        folder_.write(std::to_string(index) + ".xml", packageText("id" + std::to_string(index)));
    }
    const std::size_t before = Repository::descriptorsRead();
    std::vector<std::shared_ptr<const Repository>> seen(50);
    std::vector<std::thread> threads;
    for (auto& result : seen)
    {
        threads.emplace_back(
            [this, &result]
            {
                std::string error;
                result = Repository::open(folder_.path(), error);
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(Repository::descriptorsRead() - before, 20U);
    EXPECT_THAT(seen, testing::Each(seen.front()));
    EXPECT_NE(seen.front(), nullptr);
}

TEST_F(RepositoryTest, FiveThousandDescriptorsTakeAboutASecond)
{
    const std::string text = packageText("ID");
    for (int index = 0; index < 5000; ++index)
    {
        std::string own = text;
        own.replace(own.find(">ID<") + 1, 2, "id" + std::to_string(index));
        folder_.write(std::to_string(index) + ".xml", own);
    }
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(open()->packages().size(), 5000U);
    // Generous for sanitizers and busy machines; it is about a fifth of a second without.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST_F(RepositoryTest, TheNewestUpdatePackOfThePlatformCounts)
{
    const std::string ids = "<UPDATEID>a</UPDATEID>";
    folder_.write("p1.xml", descriptor_text::velpak("p1", "7Y41", "platform", ids, "2026-02-01"));
    folder_.write("p2.xml", descriptor_text::velpak("p2", "7Y41", "platform", ids, "2026-01-01"));
    folder_.write("p3.xml", descriptor_text::velpak("p3", "7X20", "platform", ids, "2026-03-01"));
    const auto repository = open();
    const auto* pack = repository->findVelpak({{402, 2, ""}}, "7y41", false);
    ASSERT_NE(pack, nullptr);
    EXPECT_EQ(pack->id, "p1");
    EXPECT_EQ(repository->findVelpak({{212, 2, ""}}, "7Y41", false), nullptr);
    EXPECT_EQ(repository->findVelpak({{212, 2, ""}}, "7Y41", true)->id, "p3");
}

TEST_F(RepositoryTest, TheSamplesAreReadWithoutARemark)
{
    const auto repository = Repository::open(std::string(KORVAN_SOURCE_DIR) + "/samples/repository", error_);
    ASSERT_NE(repository, nullptr) << error_;
    EXPECT_EQ(repository->packages().size(), 16U);
    EXPECT_EQ(repository->velpaks().size(), 1U);
    EXPECT_THAT(records_, testing::IsEmpty());
    for (const std::string& id : repository->velpaks().front().updateIds)
    {
        EXPECT_NE(repository->find(id), nullptr) << id;
    }
}
} // namespace
