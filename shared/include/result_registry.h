#pragma once

#include "korvan_framework_export.h"

#include <cstdint>
#include <string>

// Texts of the result codes, one set of tables for the whole process.
//
// A registered code holds its category in bits 16 to 31 and its number within the category, below 256, in bits 0 to
// 15. Codes of the update and flash layer are a space of their own: 16-bit values with a group in bits 8 to 15.
// result_codes.h names every code.

// Registers a text and returns the composite code; a later text replaces an earlier one. Not for use while other
// threads look up texts.
KORVAN_FRAMEWORK_EXPORT std::uint32_t RegisterErrorCode(std::int32_t category, std::uint32_t number,
                                                        const char* message);

// The registered text, or "Unknow error" when there is none; the spelling is kept, scripts match it.
KORVAN_FRAMEWORK_EXPORT std::string FindErrorMessage(std::uint32_t code, std::int32_t category);

// The text of any code: registered ones as FindErrorMessage, flash-layer ones from their table or "Unknown error". Safe
// to call from several threads.
KORVAN_FRAMEWORK_EXPORT std::string GetErrorMessage(std::uint32_t code);
