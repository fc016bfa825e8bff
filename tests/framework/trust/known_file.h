#pragma once

#include "support/scratch_folder.h"
#include "trust/known_controllers.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <string>

// What the tests of the file of known controllers share.
namespace known_file
{
const std::string kOne(64, '1'); // fingerprints
const std::string kTwo(64, '2');

inline std::ptrdiff_t linesOf(const std::string& content)
{
    return std::count(content.begin(), content.end(), '\n');
}

// Adds `count` controllers of one writer; false when one of them was not added.
inline bool addMany(const std::string& path, const std::string& writer, int count)
{
    bool added = true;
    for (int index = 0; index < count; ++index)
    {
        const std::string controller = writer + "-" + std::to_string(index) + ":443";
        added = trust::KnownControllers(path).addIfUnknown(controller, kOne).added && added;
    }
    return added;
}
} // namespace known_file
