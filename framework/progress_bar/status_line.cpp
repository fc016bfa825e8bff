#include "progress_bar/status_line.h"

#include "progress_bar/terminal.h"
#include "text/text.h"
#include "text/utf8.h"

#include <algorithm>
#include <atomic>
#include <iostream>

namespace
{
constexpr char kClearLine[] = "\r\x1B[K";
std::atomic<int> owners{0};
} // namespace

namespace status_line
{
std::string fitted(const std::string& value, std::size_t columns)
{
    const std::string clean = text::visible(value);
    std::size_t used = 0;
    std::size_t position = 0;
    while (position < clean.size())
    {
        char32_t character = 0;
        const std::size_t length = std::max<std::size_t>(text::decodeUtf8(clean, position, character), 1);
        used += text::displayWidth(clean.substr(position, length));
        if (used > columns)
        {
            break;
        }
        position += length;
    }
    return clean.substr(0, position);
}

void draw(const std::string& value)
{
    // The last column stays free: some terminals begin a new line as soon as it is written.
    const std::size_t columns = std::max<std::size_t>(terminal::errorColumns(), 2) - 1;
    std::cerr << kClearLine + fitted(value, columns) << std::flush;
}

void clear()
{
    std::cerr << kClearLine << std::flush;
}

Owner::Owner()
{
    ++owners;
}

Owner::~Owner()
{
    --owners;
}

bool owned()
{
    return owners.load() > 0;
}
} // namespace status_line
