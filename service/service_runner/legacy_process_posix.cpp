#include "service_runner/legacy_process.h"

#include "interrupt.h"

#include <sys/wait.h>

#include <csignal>

#include <cstdlib>

namespace
{
constexpr int kShellInterruptStatus = 128 + SIGINT;

bool wasInterrupted(int status)
{
    return status != -1 && ((WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) ||
                            (WIFEXITED(status) && WEXITSTATUS(status) == kShellInterruptStatus));
}
} // namespace

int RunCommandLine(const std::string& commandLine)
{
    const int status = std::system(commandLine.c_str()); // NOLINT(cert-env33-c): the hand-over is a shell command line
    if (wasInterrupted(status))
    {
        // While the command runs, this process hears no Ctrl-C; the command's end by it is how the wish gets here.
        interrupt::request();
    }
    if (status == -1 || !WIFEXITED(status))
    {
        return 1;
    }
    return WEXITSTATUS(status);
}
