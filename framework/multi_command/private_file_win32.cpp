#include "multi_command/private_file.h"

#include "files/owner_only_win32.h"
#include "text/text.h"

namespace multi_command
{
bool isReadableByOthers(const std::string& path)
{
    return owner_only::isReadableByOthers(path);
}

std::string openFileComplaint(const std::string& path)
{
    return "holds a password and other users can read it; run 'icacls \"" + text::visible(path) +
           "\" /inheritance:r /grant:r %USERNAME%:F', or give --allow-open-files";
}
} // namespace multi_command
