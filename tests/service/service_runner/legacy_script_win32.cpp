#include "service/service_runner/legacy_script.h"

#include <algorithm>
#include <fstream>

namespace legacy_script
{
std::string write(const std::string& folder, int status)
{
    std::string path = folder + "/velpaki.cmd";
    // The command interpreter takes a slash for the begin of an option.
    std::replace(path.begin(), path.end(), '/', '\\');
    std::ofstream(path) << "@>\"%~dp0record\" echo %*\n@exit /b " << status << '\n';
    return path;
}
} // namespace legacy_script
