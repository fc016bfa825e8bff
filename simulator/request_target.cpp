#include "request_target.h"

#include <algorithm>

namespace simulator
{
namespace
{
int hexDigit(char digit)
{
    if (digit >= '0' && digit <= '9')
    {
        return digit - '0';
    }
    if (digit >= 'a' && digit <= 'f')
    {
        return digit - 'a' + 10;
    }
    return digit >= 'A' && digit <= 'F' ? digit - 'A' + 10 : -1;
}

std::optional<std::string> decode(const std::string& text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        char next = text[i];
        if (next == '%')
        {
            const int high = i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
            const int low = i + 2 < text.size() ? hexDigit(text[i + 2]) : -1;
            if (high < 0 || low < 0)
            {
                return std::nullopt;
            }
            next = static_cast<char>(high * 16 + low);
            i += 2;
        }
        if (static_cast<unsigned char>(next) < 0x20 || next == 0x7F)
        {
            return std::nullopt;
        }
        plain += next;
    }
    return plain;
}

bool parseQuery(const std::string& raw, std::map<std::string, std::string>& query)
{
    std::size_t begin = 0;
    while (begin < raw.size())
    {
        const std::size_t end = std::min(raw.find('&', begin), raw.size());
        const std::string pair = raw.substr(begin, end - begin);
        const std::size_t equals = std::min(pair.find('='), pair.size());
        const auto key = decode(pair.substr(0, equals));
        const auto value = decode(equals < pair.size() ? pair.substr(equals + 1) : "");
        if (!key || !value)
        {
            return false;
        }
        query[*key] = *value;
        begin = end + 1;
    }
    return true;
}
} // namespace

std::optional<RequestTarget> parseTarget(const std::string& target)
{
    RequestTarget parts;
    const std::size_t mark = std::min(target.find('?'), target.size());
    const auto path = decode(target.substr(0, mark));
    if (!path || path->empty() || path->front() != '/')
    {
        return std::nullopt;
    }
    parts.path = *path;
    parts.rawQuery = mark < target.size() ? target.substr(mark + 1) : "";
    if (!parseQuery(parts.rawQuery, parts.query))
    {
        return std::nullopt;
    }
    if (parts.path.size() > 1 && parts.path.back() == '/')
    {
        parts.endsWithSlash = true;
        parts.path.pop_back();
    }
    return parts;
}
} // namespace simulator
