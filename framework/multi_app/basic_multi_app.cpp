#include "basic_multi_app.h"

#include "file_names.h"
#include "korvan_directory.h"
#include "log/log_control.h"
#include "multi_app/earlier_run.h"
#include "multi_app/multi_configure.h"
#include "multi_app/option_check.h"
#include "multi_app/output_folder.h"
#include "multi_app/run_progress.h"
#include "multi_app/run_summary.h"
#include "multi_app/target_pool.h"
#include "multi_app/target_task.h"
#include "option_names.h"
#include "result_codes.h"
#include "target_run/target_run.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <exception>
#include <iostream>

namespace
{
constexpr char kSource[] = "framework/multi_app/basic_multi_app";

KorvanResult readLogLevel(const UserContext& context, int& level)
{
    const std::string value = GetOption(context, option::kLog, "3");
    if (value.size() != 1 || value[0] < '1' || value[0] > '4')
    {
        return KorvanResult(result_code::kInvalidParameter,
                            std::string("option --") + option::kLog +
                                ": the level must be 1 (errors), 2, 3 or 4 (everything)");
    }
    level = value[0] - '0';
    return KorvanResult();
}

KorvanResult readConfigure(const UserContext& context, nova::MultiConfigure& configure)
{
    configure.parallel = static_cast<std::size_t>(std::max(context.parallel, 1));
    configure.outputDir = context.outputDir;
    configure.resume = HasOption(context, option::kResume);
    if (configure.resume && configure.outputDir.empty())
    {
        return KorvanResult(result_code::kInvalidParameter, std::string("option --") + option::kResume + ": needs --" +
                                                                option::kOutput +
                                                                " with the folder of the earlier run");
    }
    const KorvanResult level = readLogLevel(context, configure.logLevel);
    return level.succeeded() ? multi_command::buildTargetSet(context, configure.targets,
                                                             [&context](const std::vector<nova::ServerInfo>& servers)
                                                             { return option_check::check(context, servers); })
                             : level;
}

// Makes the output directory and opens the log in it.
KorvanResult openOutput(nova::MultiConfigure& configure)
{
    std::string path = configure.outputDir;
    std::string error;
    const bool made = path.empty() ? output_folder::makeDated(path, error)
                                   : output_folder::make(KorvanDirectory::GetFullPath(path), error);
    if (!made)
    {
        return KorvanResult(result_code::kCreateDirectoryFailed,
                            "cannot make the output directory " + text::visible(path) + ": " + error);
    }
    configure.outputDir = KorvanDirectory::GetFullPath(path);
    const std::string log = configure.outputDir + "/" + file_name::kLog;
    if (!log_control::open(log, configure.logLevel, error))
    {
        return KorvanResult(result_code::kCreateDirectoryFailed,
                            "cannot write to the output directory: " + text::visible(log) + ": " + error);
    }
    KorvanDirectory::setOutputDir(configure.outputDir);
    return KorvanResult();
}

// A run without targets is there to show an earlier one.
void warnOfOtherReports(const UserContext& context, const nova::MultiConfigure& configure)
{
    if (!HasOption(context, option::kPattern) || (configure.targets.empty() && configure.doneBefore.empty()))
    {
        return;
    }
    const std::size_t others = earlier_run::countOtherReports(configure);
    if (others > 0)
    {
        const std::string warning = "the folder " + configure.outputDir + " holds " + std::to_string(others) +
                                    (others == 1 ? " report" : " reports") +
                                    " of targets that this run does not name; the table and " +
                                    file_name::kCompareJson + " will show them too. Give --" + option::kOutput +
                                    " a new folder to leave them out";
        KORVAN_LOG(2, kSource) << warning;
        std::cerr << "korvan: warning: " + text::visible(warning) + "\n" << std::flush;
    }
}

void removeOptionsBeside(UserContext& context, const char* kept)
{
    for (const char* const kind : {option::kBmc, option::kPmx, option::kEsxi, option::kCmm, option::kSmm})
    {
        if (std::string(kind) != kept)
        {
            context.options.erase(kind);
        }
    }
}
// What the target says of itself and its URL cannot hold.
void layInTarget(UserContext& context, const nova::ServerInfo& server)
{
    context.options.erase(option::kFingerprint);
    context.options.erase(option::kOldTls);
    if (!server.fingerprint.empty())
    {
        context.options[option::kFingerprint] = server.fingerprint;
    }
    if (server.oldTls)
    {
        context.options[option::kOldTls] = "";
    }
}

void warnOfRun()
{
    for (const std::string& remark : target_run::takeRunRemarks())
    {
        KORVAN_LOG(2, kSource) << text::visible(remark);
        std::cerr << "korvan: warning: " + text::visible(remark) + "\n" << std::flush;
    }
}
} // namespace

BasicMultiApp::BasicMultiApp() = default;

KorvanResult BasicMultiApp::Initialize(const UserContext& context)
{
    parent_ = context;
    configure_ = boost::make_shared<nova::MultiConfigure>(); // tells CreateConfigure that there is a context
    const boost::shared_ptr<nova::MultiConfigure> created = CreateConfigure();
    if (!created)
    {
        configure_.reset();
        return KorvanResult(result_code::kInternalError, "the run's configuration was not made");
    }
    KorvanResult result = created->status;
    if (result.succeeded())
    {
        result = openOutput(*created);
    }
    if (result.succeeded() && created->resume)
    {
        earlier_run::setAside(*created);
    }
    if (result.succeeded())
    {
        warnOfOtherReports(parent_, *created);
    }
    if (!result.succeeded())
    {
        configure_.reset();
        return result;
    }
    configure_ = created;
    KORVAN_LOG(3, kSource) << parent_.command << " " << parent_.subCommand << ": " << configure_->targets.size()
                           << " targets, " << configure_->parallel << " at once, into " << configure_->outputDir << ", "
                           << configure_->doneBefore.size() << " done before";
    return KorvanResult();
}

boost::shared_ptr<nova::MultiConfigure> BasicMultiApp::CreateConfigure()
{
    if (!configure_)
    {
        return boost::shared_ptr<nova::MultiConfigure>();
    }
    try
    {
        auto configure = boost::make_shared<nova::MultiConfigure>();
        configure->status = readConfigure(parent_, *configure);
        return configure;
    }
    catch (const std::exception& failure)
    {
        auto failed = boost::make_shared<nova::MultiConfigure>();
        failed->status = KorvanResult(result_code::kInternalError, failure.what());
        return failed;
    }
}

KorvanResult BasicMultiApp::Running()
{
    if (!configure_)
    {
        return KorvanResult(result_code::kInternalError, "the run was not initialized");
    }
    target_run::takeRunRemarks(); // those of a run that broke off
    std::map<std::string, KorvanResult> results;
    {
        RunProgress progress(configure_->targets.size());
        results = runTargets(
            *configure_,
            [this](const nova::ServerInfo& server, const std::string& folder) { return RunTask(server, folder); },
            progress);
    }
    earlier_run::addResults(*configure_, results);
    std::string failure;
    try
    {
        HandleResult();
    }
    catch (const std::exception& thrown)
    {
        failure = std::string("the results could not be reported: ") + thrown.what();
    }
    catch (...)
    {
        failure = "the results could not be reported: unknown exception";
    }
    if (!failure.empty())
    {
        KORVAN_LOG(1, kSource) << failure;
        std::cerr << "korvan: " + text::visible(failure) + "\n" << std::flush;
    }
    std::cout << std::flush;
    warnOfRun();
    const KorvanResult summary = SummarizeResult(results);
    // A run whose report is missing is no success, whatever its targets say.
    return summary.succeeded() && !failure.empty() ? KorvanResult(result_code::kInternalError, failure) : summary;
}

KorvanResult BasicMultiApp::Cleanup()
{
    if (configure_)
    {
        KORVAN_LOG(3, kSource) << "done";
    }
    configure_.reset();
    log_control::close();
    return KorvanResult();
}

KorvanResult BasicMultiApp::SummarizeResult(const std::map<std::string, KorvanResult>& results)
{
    run_summary::print(std::cout, results, configure_ ? configure_->outputDir : std::string());
    std::cout << std::flush;
    return run_summary::overall(results);
}

UserContext BasicMultiApp::InheritParentContext(bool keepAllTargets) const
{
    UserContext context = parent_;
    const nova::ServerInfo* const server = target_task::current();
    if (keepAllTargets || server == nullptr)
    {
        return context;
    }
    // The legacy hand-over keeps a command line with an ESXi address out of the log, so a local target still shows it.
    const bool local = server->option == option::kLocal;
    removeOptionsBeside(context, local ? option::kEsxi : server->option.c_str());
    layInTarget(context, *server);
    return context;
}
