#include "result_registry.h"

#include <map>
#include <mutex>

namespace
{
using Messages = std::map<std::int32_t, std::string>;

struct RegisteredRow
{
    std::int32_t category;
    std::uint32_t number;
    const char* text;
};

constexpr RegisteredRow kRegisteredRows[] = {
#define KORVAN_CODE(name, category, number, text) {category, number, text},
#include "registered_codes.inc"
#undef KORVAN_CODE
};

struct FlashRow
{
    std::int32_t code;
    const char* text;
};

constexpr FlashRow kFlashRows[] = {
#define KORVAN_FLASH_CODE(name, code, text) {code, text},
#include "flash_codes.inc"
#undef KORVAN_FLASH_CODE
};

std::uint32_t compositeCode(std::int32_t category, std::uint32_t number)
{
    return number | (static_cast<std::uint32_t>(category) << 16U);
}

class Registry
{
  public:
    Registry()
    {
        for (const RegisteredRow& row : kRegisteredRows)
        {
            add(row.category, row.number, row.text);
        }
    }

    std::uint32_t add(std::int32_t category, std::uint32_t number, const char* text)
    {
        const std::uint32_t code = compositeCode(category, number);
        Messages& messages = category < 1 ? general_ : categories_[category];
        messages[static_cast<std::int32_t>(code)] = text;
        return code;
    }

    // Null when neither the general codes nor the category know the code.
    const std::string* find(std::uint32_t code, std::int32_t category) const
    {
        const std::string* text = find(general_, code);
        if (text != nullptr)
        {
            return text;
        }
        const auto messages = categories_.find(category);
        return messages == categories_.end() ? nullptr : find(messages->second, code);
    }

  private:
    static const std::string* find(const Messages& messages, std::uint32_t code)
    {
        const auto found = messages.find(static_cast<std::int32_t>(code));
        return found == messages.end() ? nullptr : &found->second;
    }

    Messages general_;
    std::map<std::int32_t, Messages> categories_;
};

Registry& registry()
{
    static Registry instance;
    return instance;
}

// Most runs never print a flash-layer text, so the table is filled by the first one that does.
const Messages& flashMessages()
{
    static Messages messages;
    static std::once_flag filled;
    std::call_once(filled,
                   []
                   {
                       for (const FlashRow& row : kFlashRows)
                       {
                           messages[row.code] = row.text;
                       }
                   });
    return messages;
}

constexpr std::uint32_t kFlashGroupMask = 0xFF00U;
} // namespace

std::uint32_t RegisterErrorCode(std::int32_t category, std::uint32_t number, const char* message)
{
    return registry().add(category, number, message);
}

std::string FindErrorMessage(std::uint32_t code, std::int32_t category)
{
    const std::string* text = registry().find(code, category);
    return text == nullptr ? "Unknow error" : *text;
}

std::string GetErrorMessage(std::uint32_t code)
{
    if ((code & kFlashGroupMask) == 0)
    {
        return FindErrorMessage(code, static_cast<std::int32_t>(code >> 16U));
    }
    const Messages& messages = flashMessages();
    const auto found = messages.find(static_cast<std::int32_t>(code));
    return found == messages.end() ? "Unknown error" : found->second;
}
