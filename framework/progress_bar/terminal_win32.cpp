#include "progress_bar/terminal.h"

#include <windows.h>

namespace terminal
{
bool errorIsTerminal()
{
    const HANDLE error = ::GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    return ::GetConsoleMode(error, &mode) != 0 &&
           ::SetConsoleMode(error, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::size_t errorColumns()
{
    constexpr std::size_t kUsual = 80;
    CONSOLE_SCREEN_BUFFER_INFO information = {};
    if (::GetConsoleScreenBufferInfo(::GetStdHandle(STD_ERROR_HANDLE), &information) == 0)
    {
        return kUsual;
    }
    const int columns = information.srWindow.Right - information.srWindow.Left + 1;
    return columns > 0 ? static_cast<std::size_t>(columns) : kUsual;
}
} // namespace terminal
