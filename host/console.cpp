#include "console.h"

#include "text/text.h"

#include <iostream>

namespace console
{
void complain(const std::string& text)
{
    std::cerr << "korvan: " + text::visible(text::trim(text)) + "\n" << std::flush;
}
} // namespace console
