#pragma once

#include "korvan_result.h"
#include "repository/package_descriptor.h"

#include <functional>
#include <string>

namespace repository
{
constexpr std::uint32_t kInvalidFolderNumber = 38;
constexpr std::uint32_t kInterruptedNumber = 47;

// A repository's folder as users write it, ready to be opened: without trailing separators, "." for an empty one.
std::string walkPath(const std::string& directory);

// Reads the descriptors of a folder one after the other, in the order of their names, and hands each of them over. `left`
// is how many there are above the limit. Failures: 38 with the reason, 47.
KorvanResult walk(const std::string& path, const std::function<void(const std::string&, Descriptor&&)>& take,
                  std::size_t& left);
} // namespace repository
