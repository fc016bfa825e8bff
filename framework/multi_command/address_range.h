#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace multi_command
{
// More targets than this are refused, for a slip of the pen in a range soon names millions.
constexpr std::size_t kMostTargets = 100000;

// The addresses of a list that commas separate; commas in a range do not. Pieces are as they stand, also empty ones.
std::vector<std::string> splitAddresses(const std::string& list);

// Writes out the ranges behind an address's user and password: "10.0.0.[1-3,7]" names four addresses, "node[08-10]" keeps
// its zeros, several ranges multiply, the last one running fastest. Brackets around a text with a colon are an IPv6
// address and stay.
//
// False, with a reason that quotes nothing of the address, when a range cannot be read or more than `most` addresses
// come of it; `expanded` is then left alone, otherwise they are appended.
bool expandAddress(const std::string& address, std::size_t most, std::vector<std::string>& expanded,
                   std::string& error);
} // namespace multi_command
