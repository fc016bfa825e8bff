#pragma once

#include <cstdint>
#include <string>

namespace multi_command
{
// The pieces of "[scheme://][user[:password]@]host[:port]".
struct TargetAddress
{
    std::string scheme; // "https", "http" or empty: not given
    std::string user;
    std::string password;
    std::string host;       // IPv6 without brackets
    std::uint32_t port = 0; // 0: not given
};

// Reads an address as users write it and as nova::make_url gives it. The last '@' ends user and password, the first ':'
// of these two separates them, and neither is percent-decoded. IPv6 hosts stand in brackets (RFC 3986, section 3.2.2).
// Control characters are refused everywhere, blanks everywhere but in the password.
//
// False, with `address` left alone and a reason that says what to do, when the text is no address. The reason may name
// the host, and never a piece that could be a password.
bool parseTargetAddress(const std::string& value, TargetAddress& address, std::string& error);

// True for text without control characters; `user` must hold no ':' besides and no blank.
bool isValidUser(const std::string& user);
bool isValidPassword(const std::string& password);
} // namespace multi_command
