#include "console.h"

#include <windows.h>

#include <atomic>

namespace
{
std::atomic<UINT> codePageBefore{0};
} // namespace

namespace console
{
bool inputIsTerminal()
{
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

void speakUtf8()
{
    const UINT before = ::GetConsoleOutputCP();
    if (before != 0 && before != CP_UTF8 && ::SetConsoleOutputCP(CP_UTF8) != 0)
    {
        codePageBefore = before;
    }
}

void speakAsBefore()
{
    const UINT before = codePageBefore.exchange(0);
    if (before != 0)
    {
        ::SetConsoleOutputCP(before);
    }
}
} // namespace console
