#include "process_title.h"

#include "option_names.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace
{
constexpr char kCover = '*';
constexpr std::array<const char*, 6> kAddressOptions = {option::kBmc, option::kPmx, option::kEsxi,
                                                        option::kCmm, option::kSmm, option::kExclude};

void cover(char* begin, const char* end)
{
    std::fill(begin, begin + (end - begin), kCover);
}

// Everything up to the last '@' of all the value's addresses: a password may hold commas and '@' by mistake.
void coverCredentials(char* value)
{
    const char* const at = std::strrchr(value, '@');
    if (at != nullptr)
    {
        cover(value, at);
    }
}

void coverValue(const std::string& name, char* value)
{
    if (name == option::kBmcPassword)
    {
        cover(value, value + std::strlen(value));
    }
    if (std::find(kAddressOptions.begin(), kAddressOptions.end(), name) != kAddressOptions.end())
    {
        coverCredentials(value);
    }
}
} // namespace

namespace process_title
{
void hideSecrets(int argc, char** argv)
{
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
            coverValue(std::string(word + 2, equals), equals + 1);
        }
        else if (index + 1 < argc)
        {
            coverValue(word + 2, argv[index + 1]);
        }
    }
}
} // namespace process_title
