#include "ipmi/child_process.h"

namespace ipmi
{
ChildOutcome runChild(const ChildRequest& /*request*/)
{
    ChildOutcome outcome;
    outcome.reason = "IPMI connections are not available on Windows";
    return outcome;
}

std::vector<std::string> programFolders()
{
    return {};
}

std::string findProgram(const std::string& /*name*/, const std::vector<std::string>& /*folders*/)
{
    return std::string();
}
} // namespace ipmi
