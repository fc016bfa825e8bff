#pragma once

#include "support/process.h"
#include "support/scratch_folder.h"

#include <boost/filesystem/operations.hpp>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

// Names that the tests of this folder use throughout.
namespace end_to_end
{
namespace fs = boost::filesystem;
using nlohmann::json;
using test_support::ProcessOutcome;
using test_support::readFile;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using Words = std::vector<std::string>;

constexpr int kTargetFailed = 58; // the exit status
} // namespace end_to_end
