#include "process_title.h"

#include "secret_words.h"
#include "text/wide_text_win32.h"

#include <windows.h>

#include <algorithm>
#include <cwchar>

namespace
{
constexpr wchar_t kCover = L'*';

// The system shows others the very text that GetCommandLineW gives.
void coverInCommandLine(const std::wstring& secret)
{
    wchar_t* const line = ::GetCommandLineW();
    wchar_t* const end = line + std::wcslen(line);
    wchar_t* place = std::search(line, end, secret.begin(), secret.end());
    if (place == end)
    {
        // A quotation mark in the word stands there with a backslash in front: cover all the options.
        wchar_t* const options = std::wcsstr(line, L" --");
        std::fill(options == nullptr ? line : options, end, kCover);
        return;
    }
    while (place != end)
    {
        place = std::fill_n(place, secret.size(), kCover);
        place = std::search(place, end, secret.begin(), secret.end());
    }
}
} // namespace

namespace process_title
{
void hideSecrets(int argc, char** argv)
{
    for (const secret_words::Part& part : secret_words::parts(argc, argv))
    {
        if (part.first != part.second)
        {
            coverInCommandLine(wide_text::fromUtf8(std::string(part.first, part.second)));
            std::fill(part.first, part.second, '*');
        }
    }
}
} // namespace process_title
