#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>

// How to reach one target's management controller.
struct ConnectOption
{
    std::string address;    // the connection URL, as nova::make_url gives it; holds the password
    std::string kind;       // the option that named the target: "bmc", ..., "local"
    std::string scheme;     // "https" or "http"
    std::string host;       // IPv6 without brackets
    std::uint32_t port = 0; // 0: the scheme's own
    std::string user;
    std::string password;
    std::string caCert;     // PEM file to verify against; empty: the system's store
    bool checkTrust = true; // false: any certificate will do
    std::chrono::seconds connectTimeout{20};
    std::chrono::seconds requestTimeout{120}; // for one answer; slow controllers need minutes for one inventory
    std::chrono::seconds targetTimeout{900};  // for everything asked of this target
    std::string knownControllers;             // file of trusted fingerprints; empty: there is none
    bool trustOnFirstUse = false;             // an unknown controller's fingerprint goes into that file
    std::string fingerprint; // SHA-256 of the one certificate to trust, lower-case hex; empty: none is set
    bool oldTls = false;     // TLS 1.0 and 1.1 and their ciphers will do
    std::uint32_t ipmiPort = 623;
    std::int32_t ipmiCipherSuite = -1; // negative: the usual ones in turn
    // When everything asked of this target must be over; not set: `targetTimeout` after the first request.
    std::chrono::steady_clock::time_point deadline{};
    bool machineTypeStated = false; // the user names it, so the target need not
    std::uint32_t cimPort = 0;      // 0: 5989 for https, 5988 for http
};

// What is left of the target's time; never negative.
inline std::chrono::milliseconds timeLeft(const ConnectOption& option)
{
    using std::chrono::milliseconds;
    if (option.deadline == std::chrono::steady_clock::time_point())
    {
        return option.targetTimeout;
    }
    const auto left = option.deadline - std::chrono::steady_clock::now();
    return std::max(milliseconds(0), std::chrono::duration_cast<milliseconds>(left));
}
