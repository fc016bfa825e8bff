#include "text/environment.h"

#include <cstdlib>

namespace environment
{
std::string variable(const char* name)
{
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? std::string() : value;
}
} // namespace environment
