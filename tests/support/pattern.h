#pragma once

#include <gmock/gmock.h>

#include <regex>
#include <string>

// Regular expressions (ECMAScript) in expectations. GoogleTest's own are the system's, and those of Windows know no brackets.
namespace test_support
{
MATCHER_P(HasPattern, pattern, std::string("holds what fits ") + pattern)
{
    return std::regex_search(arg, std::regex(pattern));
}

MATCHER_P(FitsPattern, pattern, std::string("fits ") + pattern)
{
    return std::regex_match(arg, std::regex(pattern));
}
} // namespace test_support
