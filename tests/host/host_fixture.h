#pragma once

#include "support/process.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

// A copy of the program and the framework's library in a folder of its own, without any module.
class HostTest : public testing::Test
{
  protected:
    HostTest()
    {
        std::filesystem::create_directories(folder_.file("bin"));
        copy(KORVAN_TEST_PROGRAM);
        copy(KORVAN_TEST_FRAMEWORK);
    }

    void copy(const std::string& file) const
    {
        const std::filesystem::path from(file);
        std::filesystem::copy_file(from, std::filesystem::path(folder_.file("bin")) / from.filename());
    }

    std::string program() const { return folder_.file("bin/korvan"); }

    test_support::ProcessOutcome run(const std::vector<std::string>& arguments,
                                     test_support::ProcessOptions options = test_support::ProcessOptions()) const
    {
        options.workingFolder = folder_.path();
        return test_support::runProcess(program(), arguments, options);
    }

    const test_support::ScratchFolder folder_;
};
