#include "program_words.h"

#include "text/wide_text_win32.h"

#include <windows.h>

#include <shellapi.h>

// The words that main gets went through the system's code page, which not every character survives.
std::vector<std::string> programWords(int argc, char** argv)
{
    int count = 0;
    wchar_t** const wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    if (wide == nullptr)
    {
        return std::vector<std::string>(argv, argv + argc);
    }
    std::vector<std::string> words;
    words.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index)
    {
        words.push_back(wide_text::toUtf8(wide[index]));
    }
    ::LocalFree(wide);
    return words;
}
