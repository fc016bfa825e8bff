#include "secret_words.h"

#include "option_names.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace
{
using secret_words::Part;

constexpr std::array<const char*, 6> kAddressOptions = {option::kBmc, option::kPmx, option::kEsxi,
                                                        option::kCmm, option::kSmm, option::kExclude};

// Everything up to the last '@' of all the value's addresses: a password may hold commas and '@' by mistake.
void takeCredentials(char* value, std::vector<Part>& parts)
{
    char* const at = std::strrchr(value, '@');
    if (at != nullptr)
    {
        parts.emplace_back(value, at);
    }
}

void takeValue(const std::string& name, char* value, std::vector<Part>& parts)
{
    if (name == option::kBmcPassword)
    {
        parts.emplace_back(value, value + std::strlen(value));
    }
    if (std::find(kAddressOptions.begin(), kAddressOptions.end(), name) != kAddressOptions.end())
    {
        takeCredentials(value, parts);
    }
}
} // namespace

namespace secret_words
{
std::vector<Part> parts(int argc, char** argv)
{
    std::vector<Part> found;
    for (int index = 0; index < argc; ++index)
    {
        char* const word = argv[index];
        if (std::strncmp(word, "--", 2) != 0)
        {
            continue;
        }
        char* const equals = std::strchr(word, '=');
        if (equals != nullptr)
        {
            takeValue(std::string(word + 2, equals), equals + 1, found);
        }
        else if (index + 1 < argc)
        {
            takeValue(word + 2, argv[index + 1], found);
        }
    }
    return found;
}
} // namespace secret_words
