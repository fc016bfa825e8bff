#include "global_config/config_items.h"

#include "text/text.h"

namespace
{
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF"; // editors on some systems put it in front

std::string withoutComment(const std::string& line)
{
    for (std::size_t mark = line.find('#'); mark != std::string::npos; mark = line.find('#', mark + 1))
    {
        if (mark == 0 || line[mark - 1] == ' ' || line[mark - 1] == '\t')
        {
            return line.substr(0, mark);
        }
    }
    return line;
}
} // namespace

namespace global_config
{
bool findItem(const std::string& content, const std::string& name, std::string& value)
{
    const std::size_t begin = text::startsWith(content, kByteOrderMark) ? sizeof kByteOrderMark - 1 : 0;
    bool found = false;
    for (const std::string& rawLine : text::split(content.substr(begin), '\n'))
    {
        const std::string line = withoutComment(rawLine);
        const std::size_t equals = line.find('=');
        if (equals != std::string::npos && text::trim(line.substr(0, equals)) == name)
        {
            value = text::trim(line.substr(equals + 1));
            found = true;
        }
    }
    return found;
}
} // namespace global_config
