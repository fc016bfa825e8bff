#include "explain_command.h"

#include "console.h"
#include "exit_status.h"
#include "result_registry.h"
#include "text/text.h"

#include <cstdint>
#include <cstdlib>
#include <iostream>

namespace
{
constexpr std::uint32_t kNumbersOfCategory = 256;
constexpr std::int32_t kHighestCategory = 255;

bool parseCode(const std::string& word, std::uint32_t& code)
{
    const bool hexadecimal = word.size() > 2 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X');
    const std::string digits = hexadecimal ? word.substr(2) : word;
    const char* const known = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    constexpr std::size_t kMostDigits = 10;
    if (digits.empty() || digits.size() > kMostDigits || digits.find_first_not_of(known) != std::string::npos)
    {
        return false;
    }
    const std::uint64_t value = std::strtoull(digits.c_str(), nullptr, hexadecimal ? 16 : 10);
    code = static_cast<std::uint32_t>(value);
    return value <= UINT32_MAX;
}

// The registry answers an unknown code with one of two fixed texts.
bool isKnown(const std::string& message)
{
    static const std::string registeredUnknown = FindErrorMessage(UINT32_MAX, -1);
    static const std::string flashUnknown = GetErrorMessage(0x7FFFFFFFU);
    return message != registeredUnknown && message != flashUnknown;
}

void print(std::uint32_t code, const std::string& message)
{
    std::cout << (code & 0xFFFFU) << " (0x" << std::hex << std::uppercase << code << std::dec << std::nouppercase
              << "): " << text::trim(message) << '\n';
}

// Exit statuses and reports show the number alone; it may belong to any category.
bool printFromCategories(std::uint32_t number)
{
    bool found = false;
    for (std::int32_t category = 1; category <= kHighestCategory; ++category)
    {
        const std::uint32_t code = (static_cast<std::uint32_t>(category) << 16U) | number;
        const std::string message = GetErrorMessage(code);
        if (isKnown(message))
        {
            print(code, message);
            found = true;
        }
    }
    return found;
}
} // namespace

int explainCommand(const std::vector<std::string>& arguments)
{
    std::uint32_t code = 0;
    if (arguments.size() != 1 || !parseCode(arguments[0], code))
    {
        console::complain("'explain' takes one result code, decimal as 13 or hexadecimal as 0x1006D");
        return exit_status::kInvalidParameter;
    }
    const std::string message = GetErrorMessage(code);
    if (isKnown(message))
    {
        print(code, message);
        return exit_status::kSuccess;
    }
    if (code < kNumbersOfCategory && printFromCategories(code))
    {
        return exit_status::kSuccess;
    }
    console::complain("the result code " + arguments[0] + " is not known");
    return exit_status::kInvalidParameter;
}
