#include "system_check/system_list.h"

#include "files/files.h"
#include "text/text.h"
#include "xmodule_log.h"

namespace system_check
{
namespace
{
constexpr char kSource[] = "framework/system_check/system_list";
constexpr std::size_t kLargestList = std::size_t{1024} * 1024; // bytes

const char* explain(files::ReadOutcome outcome)
{
    switch (outcome)
    {
    case files::ReadOutcome::Missing:
        return "does not exist";
    case files::ReadOutcome::TooLarge:
        return "is too large";
    default:
        return "cannot be read";
    }
}
} // namespace

std::set<std::string> readSystemList(const std::string& path)
{
    std::set<std::string> list;
    std::string content;
    const files::ReadOutcome outcome = files::read(path, kLargestList, content);
    if (outcome != files::ReadOutcome::Ok)
    {
        KORVAN_LOG(2, kSource) << "The system list " << path << " " << explain(outcome) << "; it counts as empty";
        return list;
    }
    for (const std::string& line : text::split(content, '\n'))
    {
        const std::string entry = text::toUpper(text::trim(line.substr(0, line.find('#'))));
        if (!entry.empty())
        {
            list.insert(entry);
        }
    }
    return list;
}

bool listHolds(const std::string& path, const std::string& machineType)
{
    const std::string wanted = text::toUpper(text::trim(machineType));
    return !wanted.empty() && readSystemList(path).count(wanted) != 0;
}
} // namespace system_check
