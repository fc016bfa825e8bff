#include "multi_app/output_folder.h"

#include <cerrno>
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
} // namespace output_folder
