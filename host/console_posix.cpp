#include "console.h"

#include <unistd.h>

namespace console
{
bool inputIsTerminal()
{
    return ::isatty(STDIN_FILENO) == 1;
}
} // namespace console
