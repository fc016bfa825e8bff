#pragma once

#include "result_registry.h"

#include <cstdint>
#include <ostream>
#include <string>

// The outcome of an operation: a code and a text for the user. Passed by value between the framework and its loaded
// modules, which is why the two fields and their order are fixed. The operations are inline: each module carries its
// own.
struct KorvanResult
{
    // Success, without a text of its own.
    KorvanResult() = default;

    // The code with its registered text.
    explicit KorvanResult(std::uint32_t resultCode) : code(resultCode), message(GetErrorMessage(resultCode)) {}

    KorvanResult(std::uint32_t resultCode, const std::string& text) : code(resultCode), message(text) {}

    // The message, or the registered text of the code when there is none.
    std::string messageText() const { return message.empty() ? GetErrorMessage(code) : message; }

    // The number within its category; success and equality look at nothing else.
    std::uint32_t number() const { return code & 0xFFFFU; }

    bool succeeded() const { return number() == 0; }

    std::uint32_t code = 0;
    std::string message;
};

inline bool operator==(const KorvanResult& left, const KorvanResult& right)
{
    return left.number() == right.number();
}

inline bool operator!=(const KorvanResult& left, const KorvanResult& right)
{
    return !(left == right);
}

// The number within its category, one blank and the text; the category is not printed.
inline std::ostream& operator<<(std::ostream& out, const KorvanResult& result)
{
    return out << std::to_string(result.number()) << " " << result.messageText();
}
