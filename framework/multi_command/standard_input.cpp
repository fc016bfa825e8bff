#include "multi_command/standard_input.h"

namespace standard_input
{
Outcome readAll(std::size_t limit, std::string& content)
{
    std::string bytes;
    char buffer[16384];
    for (;;)
    {
        std::size_t got = 0;
        const Outcome outcome = readSome(buffer, sizeof buffer, got);
        if (outcome != Outcome::Ok)
        {
            return outcome;
        }
        if (got == 0)
        {
            content.swap(bytes);
            return Outcome::Ok;
        }
        bytes.append(buffer, got);
        if (bytes.size() > limit)
        {
            return Outcome::TooLarge;
        }
    }
}
} // namespace standard_input
