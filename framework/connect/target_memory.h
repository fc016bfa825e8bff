#pragma once

#include "connect_option.h"
#include "korvan_result.h"

namespace connect
{
// What this run has learnt about its targets, so that what comes later is not asked in vain or to harm: a refused
// password that is tried over protocol after protocol locks the account. Targets are told apart by host and port as the
// user gave them; passwords are not kept. Any thread may call these.
enum class Finding
{
    Nothing,            // or it answered
    CertificateRefused, // another may be answering in its place
    LoginRefused,
    Silent, // no answer in time
};

enum class Asked
{
    Rest,
    OtherProtocol,
};

// Replaces what was known of the target. `result` is what the user is told of a refused login.
void rememberFinding(const ConnectOption& option, Asked asked, Finding finding, const KorvanResult& result);

// A refused login counts for this user and password alone.
Finding findingOf(const ConnectOption& option);

// The result with which the target refused this login over REST; a success when it did not.
KorvanResult restRefusalOf(const ConnectOption& option);
} // namespace connect
