#include "text/utf8.h"

namespace
{
unsigned byteAt(const std::string& value, std::size_t position)
{
    return static_cast<unsigned char>(value[position]);
}

// The sequence's length by its first byte, 0 for a byte that begins none; `lowest` is the smallest character that
// needs so many bytes.
std::size_t sequenceLength(unsigned first, char32_t& lowest)
{
    if (first < 0x80U)
    {
        lowest = 0;
        return 1;
    }
    if (first >= 0xC2U && first <= 0xDFU)
    {
        lowest = 0x80;
        return 2;
    }
    if (first >= 0xE0U && first <= 0xEFU)
    {
        lowest = 0x800;
        return 3;
    }
    if (first >= 0xF0U && first <= 0xF4U)
    {
        lowest = 0x10000;
        return 4;
    }
    return 0;
}
} // namespace

namespace text
{
std::size_t decodeUtf8(const std::string& value, std::size_t position, char32_t& character)
{
    char32_t lowest = 0;
    const unsigned first = byteAt(value, position);
    const std::size_t length = sequenceLength(first, lowest);
    if (length == 0 || length > value.size() - position)
    {
        return 0;
    }
    if (length == 1)
    {
        character = first;
        return 1;
    }
    char32_t decoded = first & (0xFFU >> (length + 1));
    for (std::size_t offset = 1; offset < length; ++offset)
    {
        const unsigned next = byteAt(value, position + offset);
        if ((next & 0xC0U) != 0x80U)
        {
            return 0;
        }
        decoded = (decoded << 6U) | (next & 0x3FU);
    }
    if (decoded < lowest || decoded > 0x10FFFF || (decoded >= 0xD800 && decoded <= 0xDFFF))
    {
        return 0;
    }
    character = decoded;
    return length;
}
} // namespace text
