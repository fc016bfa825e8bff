#include "service_runner/console_echo.h"

#include "xmodule_log.h"

#include <iostream>

void LogAndEcho(int level, const char* source, int line, bool screen, const std::string& text)
{
    if (XModule::Log::GetMinLogLevel() >= level)
    {
        XModule::Log(level, source, line).Stream() << text;
    }
    if (screen)
    {
        (level == 1 ? std::cerr : std::cout) << text << std::endl;
    }
}
