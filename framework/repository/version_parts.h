#pragma once

#include "repository/version.h"

#include <cstddef>
#include <string>
#include <vector>

namespace repository
{
enum class PartKind
{
    Number,
    Letters,
};

struct VersionPart
{
    PartKind kind = PartKind::Number;
    std::string value; // a number without leading zeros (zero is empty), letters in lower case
};

using VersionParts = std::vector<VersionPart>;

// The runs of digits and of letters of a version (with Hexadecimal: the pieces between separators).
VersionParts splitVersion(const std::string& version, VersionStyle style);

// By the first difference. Not comparable when that is a number against letters, or when one of them goes on with more
// than zeros where the other ends. Two empty lists are the same.
VersionOrder compareVersionParts(const VersionParts& left, const VersionParts& right);

// How far a version is on the way to its release: "1.0-alpha", "1.0-beta", "1.0-RC1", "1.0" and "1.0-GA".
enum class ReleaseStage
{
    Alpha,
    Beta,
    Candidate,
    Release,
};

// A version that says its stage in a part behind its numbers; without such a word it is a release.
struct StagedVersion
{
    VersionParts numbers; // all in front of the word
    ReleaseStage stage = ReleaseStage::Release;
    VersionParts rest; // behind it
};

StagedVersion splitAtStage(VersionParts parts);
} // namespace repository
