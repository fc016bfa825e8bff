#pragma once

#include "korvan_framework_export.h"

#include <cstdint>
#include <string>
#include <vector>

// One operating system or processor architecture: its code and the two names that users and reports give it.
struct PlatformName
{
    std::uint32_t code;
    const char* displayName;
    const char* key;
};

// The rows in look-up order. Codes are neither unique nor ascending; both are meant.
KORVAN_FRAMEWORK_EXPORT const std::vector<PlatformName>& OsNames();
KORVAN_FRAMEWORK_EXPORT const std::vector<PlatformName>& OsArchNames();

// The code of the first row whose display name equals the text, else of the first whose key does; all bits set (-1)
// when none does. Letter case and blanks count.
KORVAN_FRAMEWORK_EXPORT std::uint32_t GetOsTypeCode(const std::string& text);
KORVAN_FRAMEWORK_EXPORT std::uint32_t GetOsArchCode(const std::string& text);
