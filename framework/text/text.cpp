#include "text/text.h"

#include "text/utf8.h"

#include <algorithm>

namespace
{
constexpr char kBlanks[] = " \t\r\n\v\f";
constexpr char kReplacement[] = "\xEF\xBF\xBD"; // U+FFFD

bool isControl(char32_t character)
{
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

// Characters that steer the direction or the order of a terminal's text: U+202A..U+202E and U+2066..U+2069 let a name
// look like another one; U+2028 and U+2029 are line ends to some programs.
bool isLayoutControl(char32_t character)
{
    return (character >= 0x2028 && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069) ||
           character == 0x200E || character == 0x200F || character == 0xFEFF;
}

void appendEscaped(std::string& out, unsigned char byte)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    out += "\\x";
    out += kDigits[byte >> 4U];
    out += kDigits[byte & 0xFU];
}

bool allowedInXml(char32_t character)
{
    return character == 0x9 || character == 0xA || character == 0xD || (character >= 0x20 && character <= 0xD7FF) ||
           (character >= 0xE000 && character <= 0xFFFD) || character >= 0x10000;
}
} // namespace

namespace text
{
std::vector<std::string> split(const std::string& value, char separator)
{
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    for (std::size_t end = value.find(separator); end != std::string::npos; end = value.find(separator, begin))
    {
        pieces.push_back(value.substr(begin, end - begin));
        begin = end + 1;
    }
    pieces.push_back(value.substr(begin));
    return pieces;
}

std::string join(const std::vector<std::string>& pieces, const std::string& separator)
{
    std::string joined;
    for (std::size_t index = 0; index < pieces.size(); ++index)
    {
        if (index > 0)
        {
            joined += separator;
        }
        joined += pieces[index];
    }
    return joined;
}

std::string trim(const std::string& value)
{
    const std::size_t first = value.find_first_not_of(kBlanks);
    if (first == std::string::npos)
    {
        return std::string();
    }
    return value.substr(first, value.find_last_not_of(kBlanks) - first + 1);
}

std::string toLower(const std::string& value)
{
    std::string lower = value;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

std::string toUpper(const std::string& value)
{
    std::string upper = value;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return upper;
}

bool startsWith(const std::string& value, const std::string& prefix)
{
    return value.compare(0, prefix.size(), prefix) == 0;
}

std::string visible(const std::string& value)
{
    std::string out;
    out.reserve(value.size());
    for (std::size_t position = 0; position < value.size();)
    {
        char32_t character = 0;
        const std::size_t length = decodeUtf8(value, position, character);
        if (length > 0 && !isControl(character) && !isLayoutControl(character))
        {
            out.append(value, position, length);
        }
        else
        {
            for (std::size_t offset = 0; offset < std::max<std::size_t>(length, 1); ++offset)
            {
                appendEscaped(out, static_cast<unsigned char>(value[position + offset]));
            }
        }
        position += std::max<std::size_t>(length, 1);
    }
    return out;
}

std::string validXml(const std::string& value)
{
    std::string out;
    out.reserve(value.size());
    for (std::size_t position = 0; position < value.size();)
    {
        char32_t character = 0;
        const std::size_t length = decodeUtf8(value, position, character);
        if (length > 0 && allowedInXml(character))
        {
            out.append(value, position, length);
        }
        else
        {
            out += kReplacement;
        }
        position += std::max<std::size_t>(length, 1);
    }
    return out;
}

std::string quotedIfHarmless(const std::string& word)
{
    constexpr std::size_t kLongestWord = 30;
    const bool harmless = word.size() <= kLongestWord && word.find_first_of("@:=") == std::string::npos;
    return harmless ? " '" + word + "'" : std::string();
}
} // namespace text
