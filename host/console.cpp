#include "console.h"

#include "text/text.h"

#include <iostream>

namespace console
{
void complain(const std::string& text)
{
    std::cerr << "korvan: " + text::visible(text::trim(text)) + "\n" << std::flush;
}

std::string quotedIfHarmless(const std::string& word)
{
    constexpr std::size_t kLongestWord = 30;
    const bool harmless = word.size() <= kLongestWord && word.find_first_of("@:=") == std::string::npos;
    return harmless ? " '" + word + "'" : std::string();
}
} // namespace console
