#include "multi_app/output_folder.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace output_folder
{
Creation makeOne(const std::string& path, std::string& error)
{
    if (::mkdir(path.c_str(), S_IRWXU) == 0)
    {
        return Creation::Made;
    }
    const int reason = errno;
    error = std::generic_category().message(reason);
    return reason == EEXIST ? Creation::AlreadyThere : Creation::Failed;
}

bool removeTree(const std::string& path, std::string& error)
{
    std::error_code failure;
    std::filesystem::remove_all(path, failure);
    if (failure)
    {
        error = failure.message();
    }
    return !failure;
}
} // namespace output_folder
