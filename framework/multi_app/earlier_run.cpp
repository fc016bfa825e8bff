#include "multi_app/earlier_run.h"

#include "file_names.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace fs = std::filesystem;

namespace earlier_run
{
void setAside(nova::MultiConfigure& configure)
{
    std::vector<multi_command::Target>& targets = configure.targets;
    // A folder has this name only when its task has ended; a symbolic link is none of Korvan's.
    const auto isOpen = [&configure](const multi_command::Target& target)
    {
        std::error_code failure;
        const fs::path folder = configure.outputDir + "/" + file_name::kSuccessPrefix + target.name;
        return fs::symlink_status(folder, failure).type() != fs::file_type::directory;
    };
    const auto done = std::stable_partition(targets.begin(), targets.end(), isOpen);
    configure.doneBefore.assign(std::make_move_iterator(done), std::make_move_iterator(targets.end()));
    targets.erase(done, targets.end());
}

void addResults(const nova::MultiConfigure& configure, std::map<std::string, KorvanResult>& results)
{
    for (const multi_command::Target& target : configure.doneBefore)
    {
        results[target.name] = KorvanResult(0, "done in an earlier run");
    }
}
} // namespace earlier_run
