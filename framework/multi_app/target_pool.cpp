#include "multi_app/target_pool.h"

#include "interrupt.h"
#include "xmodule_log.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

namespace
{
constexpr char kSource[] = "framework/multi_app/target_pool";

struct Work
{
    const nova::MultiConfigure& configure;
    const target_task::Task& task;
    RunProgress& progress;
    std::atomic<std::size_t> next{0};
    std::vector<KorvanResult> results; // one slot a target, each written by one thread
};

void workThrough(Work& work)
{
    for (std::size_t index = work.next++; index < work.results.size(); index = work.next++)
    {
        const multi_command::Target& target = work.configure.targets[index];
        if (interrupt::requested())
        {
            work.results[index] = target_task::skip(target, work.configure.outputDir);
        }
        else
        {
            work.progress.started(target.name);
            work.results[index] = target_task::run(target, work.configure.outputDir, work.task);
        }
        work.progress.finished(target.name, work.results[index]);
    }
}
} // namespace

std::map<std::string, KorvanResult> runTargets(const nova::MultiConfigure& configure, const target_task::Task& task,
                                               RunProgress& progress)
{
    Work work{configure, task, progress, {}, std::vector<KorvanResult>(configure.targets.size())};
    std::vector<std::thread> threads;
    try
    {
        while (threads.size() < std::min(configure.parallel, work.results.size()))
        {
            threads.emplace_back(workThrough, std::ref(work));
        }
    }
    catch (const std::system_error& failure) // fewer threads do the same work
    {
        KORVAN_LOG(2, kSource) << "only " << threads.size() << " threads: " << failure.what();
    }
    if (threads.empty())
    {
        workThrough(work);
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    std::map<std::string, KorvanResult> results;
    for (std::size_t index = 0; index < work.results.size(); ++index)
    {
        results[configure.targets[index].name] = work.results[index];
    }
    return results;
}
