#include "redfish/json.h"

#include "text/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace redfish
{
namespace
{
constexpr std::size_t kLongestText = 1024;

// One pass over the raw text, so that nothing is allocated for a body that is refused.
bool withinLimits(const std::string& body, std::string& reason)
{
    std::size_t depth = 0;
    std::size_t values = 0;
    bool inString = false;
    for (std::size_t i = 0; i < body.size(); ++i)
    {
        const char character = body[i];
        if (inString)
        {
            i += character == '\\' ? 1 : 0;
            inString = character != '"';
            continue;
        }
        inString = character == '"';
        values += character == ',' || character == ':' ? 1 : 0;
        if (character == '{' || character == '[')
        {
            ++depth;
            ++values;
        }
        else if ((character == '}' || character == ']') && depth > 0)
        {
            --depth;
        }
        if (depth > kDeepestJson || values > kMostJsonValues)
        {
            reason = depth > kDeepestJson ? "it nests too deep" : "it holds too many values";
            return false;
        }
    }
    return true;
}

std::string cut(const std::string& value)
{
    if (value.size() <= kLongestText)
    {
        return value;
    }
    std::size_t end = kLongestText;
    while (end > 0 && (static_cast<unsigned char>(value[end]) & 0xC0U) == 0x80U)
    {
        --end;
    }
    return value.substr(0, end);
}

std::string lastPart(const std::string& messageId)
{
    const std::size_t dot = messageId.rfind('.');
    return dot == std::string::npos ? messageId : messageId.substr(dot + 1);
}

std::string firstMessageId(const nlohmann::json* list)
{
    if (list == nullptr || !list->is_array())
    {
        return std::string();
    }
    for (const nlohmann::json& entry : *list)
    {
        const std::string id = textAt(entry, "MessageId");
        if (!id.empty())
        {
            return lastPart(id);
        }
    }
    return std::string();
}
} // namespace

bool parseJson(const std::string& body, nlohmann::json& document, std::string& reason)
{
    document = nullptr;
    if (text::trim(body).empty())
    {
        reason = "it is empty";
        return false;
    }
    if (!withinLimits(body, reason))
    {
        return false;
    }
    nlohmann::json parsed = nlohmann::json::parse(body, nullptr, false);
    if (parsed.is_discarded())
    {
        parsed = nlohmann::json::parse(text::validXml(body), nullptr, false);
    }
    if (parsed.is_discarded())
    {
        reason = "it is not JSON";
        return false;
    }
    document = std::move(parsed);
    return true;
}

const nlohmann::json* member(const nlohmann::json& value, const std::string& name)
{
    if (!value.is_object())
    {
        return nullptr;
    }
    const auto found = value.find(name);
    return found == value.end() ? nullptr : &*found;
}

const nlohmann::json* member(const nlohmann::json& value, std::initializer_list<const char*> path)
{
    const nlohmann::json* step = &value;
    for (const char* name : path)
    {
        step = step == nullptr ? nullptr : member(*step, std::string(name));
    }
    return step;
}

std::string textOf(const nlohmann::json* value)
{
    if (value == nullptr)
    {
        return std::string();
    }
    if (value->is_string())
    {
        return cut(text::trim(value->get_ref<const std::string&>()));
    }
    return value->is_number() ? value->dump() : std::string();
}

std::string textAt(const nlohmann::json& value, const std::string& name)
{
    return textOf(member(value, name));
}

bool flagAt(const nlohmann::json& value, const std::string& name, bool defaultValue)
{
    const nlohmann::json* found = member(value, name);
    return found != nullptr && found->is_boolean() ? found->get<bool>() : defaultValue;
}

std::string linkOf(const nlohmann::json* reference)
{
    if (reference == nullptr)
    {
        return std::string();
    }
    const nlohmann::json* link = reference->is_string() ? reference : member(*reference, "@odata.id");
    return link != nullptr && link->is_string() ? textOf(link) : std::string();
}

std::vector<std::string> linksOf(const nlohmann::json* references)
{
    std::vector<std::string> links;
    if (references == nullptr)
    {
        return links;
    }
    if (!references->is_array())
    {
        links.push_back(linkOf(references));
    }
    else
    {
        for (const nlohmann::json& reference : *references)
        {
            links.push_back(linkOf(&reference));
        }
    }
    links.erase(std::remove(links.begin(), links.end(), std::string()), links.end());
    return links;
}

std::string errorMessageId(const nlohmann::json& document)
{
    std::string nested = firstMessageId(member(document, {"error", "@Message.ExtendedInfo"}));
    if (!nested.empty())
    {
        return nested;
    }
    const std::string top = firstMessageId(member(document, "@Message.ExtendedInfo"));
    return !top.empty() ? top : lastPart(textOf(member(document, {"error", "code"})));
}
} // namespace redfish
