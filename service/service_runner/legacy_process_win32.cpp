#include "service_runner/legacy_process.h"

#include "interrupt.h"

#include <windows.h>

#include <cstdlib>

int RunCommandLine(const std::string& commandLine)
{
    const int status = std::system(commandLine.c_str()); // NOLINT(cert-env33-c): the hand-over is a shell command line
    if (static_cast<DWORD>(status) == STATUS_CONTROL_C_EXIT)
    {
        // The command may have had a console of its own to hear Ctrl-C from.
        interrupt::request();
    }
    return status == -1 ? 1 : status;
}
