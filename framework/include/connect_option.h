#pragma once

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
    std::chrono::seconds targetTimeout{900}; // for everything asked of this target
    std::string knownControllers;            // file of trusted fingerprints; empty: there is none
    bool trustOnFirstUse = false;            // an unknown controller's fingerprint goes into that file
    std::string fingerprint; // SHA-256 of the one certificate to trust, lower-case hex; empty: none is set
    bool oldTls = false;     // TLS 1.0 and 1.1 and their ciphers will do
    std::uint32_t ipmiPort = 623;
    std::int32_t ipmiCipherSuite = -1; // negative: the usual ones in turn
};
