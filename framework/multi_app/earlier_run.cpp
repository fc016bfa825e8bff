#include "multi_app/earlier_run.h"

#include "file_names.h"
#include "service/update_scan.h"
#include "summary_report/summary_file.h"
#include "target_run/target_run.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <unordered_set>

namespace fs = std::filesystem;

namespace
{
std::string doneFolder(const nova::MultiConfigure& configure, const multi_command::Target& target)
{
    return configure.outputDir + "/" + file_name::kSuccessPrefix + target.name;
}
} // namespace

namespace earlier_run
{
void setAside(nova::MultiConfigure& configure)
{
    std::vector<multi_command::Target>& targets = configure.targets;
    // A folder has this name only when its task has ended; a symbolic link is none of Korvan's.
    const auto isOpen = [&configure](const multi_command::Target& target)
    {
        std::error_code failure;
        return fs::symlink_status(doneFolder(configure, target), failure).type() != fs::file_type::directory;
    };
    const auto done = std::stable_partition(targets.begin(), targets.end(), isOpen);
    configure.doneBefore.assign(std::make_move_iterator(done), std::make_move_iterator(targets.end()));
    targets.erase(done, targets.end());
}

void addResults(const nova::MultiConfigure& configure, std::map<std::string, KorvanResult>& results)
{
    for (const multi_command::Target& target : configure.doneBefore)
    {
        std::string text = "done in an earlier run";
        const std::string gaps =
            summary_file::serviceFailure(doneFolder(configure, target), service::ServiceUpdateScan::ActionName());
        if (!gaps.empty())
        {
            text += "; " + (target_run::kGaps + gaps);
        }
        results[target.name] = KorvanResult(0, text);
    }
}

std::size_t countOtherReports(const nova::MultiConfigure& configure)
{
    std::unordered_set<std::string> own;
    for (const auto* const targets : {&configure.targets, &configure.doneBefore})
    {
        for (const multi_command::Target& target : *targets)
        {
            own.insert({target.name, file_name::kSuccessPrefix + target.name, file_name::kFailurePrefix + target.name});
        }
    }
    std::size_t reports = 0;
    std::error_code failure;
    // As the table finds its reports: everywhere below the directory.
    fs::recursive_directory_iterator entry(configure.outputDir, fs::directory_options::skip_permission_denied, failure);
    for (; !failure && entry != fs::recursive_directory_iterator(); entry.increment(failure))
    {
        const std::string name = entry->path().filename().string();
        if (entry.depth() == 0 && own.count(name) > 0)
        {
            entry.disable_recursion_pending();
        }
        std::error_code unknown;
        reports += name == file_name::kCompareXml && entry->is_regular_file(unknown) ? 1 : 0;
    }
    return reports;
}
} // namespace earlier_run
