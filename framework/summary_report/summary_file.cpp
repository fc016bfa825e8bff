#include "summary_report/summary_file.h"

#include "file_names.h"
#include "files/files.h"

namespace summary_file
{
std::string pathIn(const std::string& folder)
{
    return files::withoutTrailingSeparator(folder) + "/" + file_name::kSummaryXml;
}

bool load(const std::string& path, pugi::xml_document& document)
{
    constexpr std::size_t kLargestFile = 1U << 20U;
    std::string content;
    return files::read(path, kLargestFile, content) == files::ReadOutcome::Ok &&
           document.load_buffer(content.data(), content.size());
}

std::string serviceFailure(const std::string& folder, const std::string& action)
{
    pugi::xml_document document;
    if (!load(pathIn(folder), document))
    {
        return std::string();
    }
    for (const pugi::xml_node service : document.child(kRoot).children(kService))
    {
        if (service.child_value(kAction) == action)
        {
            const std::string code = service.child_value(kCode);
            return code.empty() || code == "0" ? std::string() : service.child_value(kMessage);
        }
    }
    return std::string();
}
} // namespace summary_file
