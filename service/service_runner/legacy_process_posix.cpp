#include "service_runner/legacy_process.h"

#include <sys/wait.h>

#include <cstdlib>

int RunCommandLine(const std::string& commandLine)
{
    const int status = std::system(commandLine.c_str()); // NOLINT(cert-env33-c): the hand-over is a shell command line
    if (status == -1 || !WIFEXITED(status))
    {
        return 1;
    }
    return WEXITSTATUS(status);
}
