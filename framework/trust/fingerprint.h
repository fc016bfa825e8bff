#pragma once

#include <string>

// Fingerprints of certificates: the SHA-256 of the certificate's DER encoding as 64 lower-case hexadecimal digits.
namespace trust
{
// The fingerprint as people write it, in either case and with or without a colon between all bytes. Empty when it is
// none.
std::string readFingerprint(const std::string& value);
} // namespace trust
