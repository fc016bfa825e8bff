#pragma once

#include <cstddef>
#include <string>

namespace text
{
// Decodes the character at `position`, which lies inside the text. The number of its bytes, and 0 when the bytes there
// are no well-formed UTF-8 (RFC 3629: no overlong forms, no surrogates, nothing above U+10FFFF).
std::size_t decodeUtf8(const std::string& value, std::size_t position, char32_t& character);
} // namespace text
