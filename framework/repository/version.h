#pragma once

#include <string>

// The one comparison of versions (docs/versions.md). Free of state; any thread, any bytes.
namespace repository
{
enum class VersionOrder
{
    Newer, // the left one is newer
    Same,
    Older,
    NotComparable, // an order would be a guess
};

enum class VersionStyle
{
    Decimal,
    Hexadecimal, // the parts between separators are hexadecimal numbers
};

// Antisymmetric, and transitive wherever it says Newer or Older. Takes time linear in the texts.
VersionOrder compareVersions(const std::string& left, const std::string& right, VersionStyle style);
} // namespace repository
