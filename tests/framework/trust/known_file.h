#pragma once

#include "support/scratch_folder.h"
#include "trust/known_controllers.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

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

// Threads "thread0" and so on that add `count` controllers each at the same time; 1 for each that could.
inline std::vector<int> addFromThreads(const std::string& path, int writers, int count)
{
    std::vector<std::thread> threads;
    std::vector<int> added(static_cast<std::size_t>(writers), 0);
    for (int writer = 0; writer < writers; ++writer)
    {
        threads.emplace_back(
            [&added, &path, writer, count]
            { added[static_cast<std::size_t>(writer)] = addMany(path, "thread" + std::to_string(writer), count); });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    return added;
}
} // namespace known_file
