#pragma once

#include "service/update_query.h"

#include <string>

namespace repository
{
enum class PayloadState
{
    Good,
    Missing,
    NoRegularFile,
    Unreadable,
    WrongSize,
    WrongDigest,
    Interrupted,
};

struct PayloadFinding
{
    PayloadState state = PayloadState::Good;
    std::string text; // for the user, when there is something to say
};

// Compares the payload beside a descriptor with what the descriptor states of it: presence, then size, then SHA-256. Only a
// stated digest makes it read the file. Good when the package names no payload. Any thread.
PayloadFinding checkPayload(const std::string& directory, const service::PackageInfo& info);
} // namespace repository
