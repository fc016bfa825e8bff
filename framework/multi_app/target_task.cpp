#include "multi_app/target_task.h"

#include "file_names.h"
#include "log/log_control.h"
#include "multi_app/output_folder.h"
#include "result_codes.h"
#include "target_run/target_run.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <exception>

namespace
{
constexpr char kSource[] = "framework/multi_app/target_task";

const nova::ServerInfo*& currentServer()
{
    thread_local const nova::ServerInfo* server = nullptr;
    return server;
}

class CurrentScope
{
  public:
    explicit CurrentScope(const nova::ServerInfo& server) { currentServer() = &server; }
    ~CurrentScope() { currentServer() = nullptr; }
    CurrentScope(const CurrentScope&) = delete;
    CurrentScope& operator=(const CurrentScope&) = delete;
};

std::string folderOf(const std::string& outputDir, const std::string& prefix, const multi_command::Target& target)
{
    return outputDir + "/" + prefix + target.name;
}

bool removeEarlier(const multi_command::Target& target, const std::string& outputDir, std::string& error)
{
    for (const char* const prefix : {"", file_name::kSuccessPrefix, file_name::kFailurePrefix})
    {
        const std::string folder = folderOf(outputDir, prefix, target);
        std::string reason;
        if (!output_folder::removeTree(folder, reason))
        {
            error = "cannot remove the earlier folder " + text::visible(folder) + ": " + reason;
            return false;
        }
    }
    return true;
}

KorvanResult runGuarded(const multi_command::Target& target, const std::string& folder, const target_task::Task& task)
{
    const CurrentScope scope(target.server);
    try
    {
        return task(target.server, folder);
    }
    catch (const std::exception& failure)
    {
        return KorvanResult(result_code::kInternalError, failure.what());
    }
    catch (...)
    {
        return KorvanResult(result_code::kInternalError, "unknown exception");
    }
}

void logResult(const KorvanResult& result)
{
    if (result.succeeded())
    {
        KORVAN_LOG(3, kSource) << "done: " << result;
    }
    else
    {
        KORVAN_LOG(1, kSource) << "failed: " << result;
    }
}

// A success has nothing else to say; a failure says its own reason first.
void addRemarks(const std::vector<std::string>& remarks, KorvanResult& result)
{
    std::vector<std::string> parts;
    for (const std::string& remark : remarks)
    {
        const bool stopped = !remark.empty() && remark.back() == '.';
        parts.push_back(stopped ? remark.substr(0, remark.size() - 1) : remark);
    }
    const std::string text = text::join(parts, "; ");
    if (!text.empty())
    {
        result.message = result.succeeded() ? text : text::trim(result.messageText()) + " Before that: " + text;
    }
}

KorvanResult runInFolder(const multi_command::Target& target, const std::string& outputDir,
                         const target_task::Task& task)
{
    std::string error;
    if (!removeEarlier(target, outputDir, error))
    {
        return KorvanResult(result_code::kCreateDirectoryFailed, error);
    }
    const std::string folder = folderOf(outputDir, "", target);
    if (output_folder::makeOne(folder, error) != output_folder::Creation::Made)
    {
        return KorvanResult(result_code::kCreateDirectoryFailed,
                            "cannot make the folder " + text::visible(folder) + ": " + error);
    }
    KORVAN_LOG(3, kSource) << "started as " << target.server.option;
    KorvanResult result = runGuarded(target, folder, task);
    const char* const prefix = result.succeeded() ? file_name::kSuccessPrefix : file_name::kFailurePrefix;
    const std::string finalFolder = folderOf(outputDir, prefix, target);
    if (output_folder::rename(folder, finalFolder, error))
    {
        return result;
    }
    const std::string reason = "cannot rename the folder " + text::visible(folder) + ": " + error;
    KORVAN_LOG(1, kSource) << reason;
    // The task's own failure says more than this one.
    return result.succeeded() ? KorvanResult(result_code::kInternalError, reason) : result;
}
} // namespace

namespace target_task
{
KorvanResult run(const multi_command::Target& target, const std::string& outputDir, const Task& task)
{
    const log_control::TargetScope scope(target.name);
    target_run::Scope clock;
    KorvanResult result;
    try
    {
        result = runInFolder(target, outputDir, task);
    }
    catch (const std::exception& failure) // the system ran out of memory on the way
    {
        result = KorvanResult(result_code::kInternalError, failure.what());
    }
    clock.release();
    addRemarks(clock.remarks(), result);
    logResult(result);
    return result;
}

KorvanResult skip(const multi_command::Target& target, const std::string& outputDir)
{
    const log_control::TargetScope scope(target.name);
    std::string error;
    if (!removeEarlier(target, outputDir, error))
    {
        KORVAN_LOG(1, kSource) << error;
    }
    KORVAN_LOG(2, kSource) << "not started: interrupted by the user";
    return KorvanResult(result_code::kInterruptedByUser);
}

const nova::ServerInfo* current()
{
    return currentServer();
}
} // namespace target_task
