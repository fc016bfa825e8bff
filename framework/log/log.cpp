#include "log/log_control.h"

#include "files/entries.h"
#include "files/files.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>

#include <algorithm>
#include <atomic>
#include <iostream>
#include <memory>
#include <mutex>
#include <sstream>
#include <utility>

namespace
{
constexpr int kHighestLevel = 4;

struct State
{
    std::mutex mutex; // guards the logger's pointer; the logger itself is safe to use from any thread
    std::shared_ptr<spdlog::logger> logger;
    std::mutex observerMutex;
    log_control::Observer observer;
    std::atomic<int> fileLevel{0};
    std::atomic<int> observerLevel{0};
};

// Never destroyed: records may come from destructors of static objects.
State& state()
{
    static auto* const instance = new State;
    return *instance;
}

// A plain pointer: MinGW frees a thread's variables before it runs their destructors, so they may have none.
const std::string*& currentTarget()
{
    thread_local const std::string* target = nullptr;
    return target;
}

spdlog::level::level_enum spdlogLevel(int level)
{
    switch (level)
    {
    case 1:
        return spdlog::level::err;
    case 2:
        return spdlog::level::warn;
    case 3:
        return spdlog::level::info;
    default:
        return spdlog::level::trace;
    }
}

std::string withoutLineEnd(std::string value)
{
    while (!value.empty() && (value.back() == '\n' || value.back() == '\r'))
    {
        value.pop_back();
    }
    return value;
}

void writeToFile(int level, const std::string& source, int line, const std::string& content)
{
    std::shared_ptr<spdlog::logger> logger;
    {
        const std::lock_guard<std::mutex> lock(state().mutex);
        logger = state().logger;
    }
    if (!logger)
    {
        return;
    }
    const std::string* const target = currentTarget();
    const std::string tag = target == nullptr || target->empty() ? "" : "[" + text::visible(*target) + "] ";
    logger->log(spdlogLevel(level), tag + source + ":" + std::to_string(line) + " " + content);
}

void tellObserver(int level, const std::string& source, int line, const std::string& content)
{
    const std::lock_guard<std::mutex> lock(state().observerMutex);
    if (state().observer && level <= state().observerLevel.load())
    {
        state().observer(level, source, line, content);
    }
}
} // namespace

namespace XModule
{
struct Log::Record
{
    int level;
    const char* source;
    int line;
    std::ostringstream stream;
};

Log::Log(int level, const char* source, int line) : record_(new Record{level, source, line, std::ostringstream()}) {}

Log::~Log()
{
    try
    {
        const bool toFile = record_->level <= state().fileLevel.load();
        const bool toObserver = record_->level <= state().observerLevel.load();
        if (!toFile && !toObserver)
        {
            return;
        }
        const std::string content = text::visible(withoutLineEnd(record_->stream.str()));
        const std::string source = record_->source == nullptr ? "" : record_->source;
        if (toFile)
        {
            writeToFile(record_->level, source, record_->line, content);
        }
        if (toObserver)
        {
            tellObserver(record_->level, source, record_->line, content);
        }
    }
    catch (...) // a record that cannot be written must not end the program from a destructor
    {
        return;
    }
}

std::ostream& Log::Stream()
{
    return record_->stream;
}

int Log::GetMinLogLevel()
{
    return std::max(state().fileLevel.load(), state().observerLevel.load());
}
} // namespace XModule

// The signature is part of the contract with the modules.
void AddDetailTimeDebugLog(int level, const char* file, int line, const std::string& mark, int step, int code,
                           std::string extra) // NOLINT(performance-unnecessary-value-param)
{
    if (XModule::Log::GetMinLogLevel() < level)
    {
        return;
    }
    XModule::Log record(level, file, line);
    record.Stream() << mark << " step " << step << " code " << code;
    if (!extra.empty())
    {
        record.Stream() << " " << extra;
    }
}

namespace
{
// The run goes on without a log, but not without a word.
void sayOnce(const std::string& reason)
{
    static std::once_flag said;
    std::call_once(said, [&reason] { std::cerr << "korvan: the log is not complete: " + reason + "\n"; });
}
} // namespace

namespace log_control
{
bool open(const std::string& path, int level, std::string& error)
{
    if (!files::createPrivate(path, error))
    {
        return false;
    }
    try
    {
        auto sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(files::streamPath(path).u8string());
        auto logger = std::make_shared<spdlog::logger>("korvan", std::move(sink));
        logger->set_level(spdlog::level::trace);
        logger->flush_on(spdlog::level::err);
        logger->set_error_handler(sayOnce);
        logger->set_pattern("%Y-%m-%d %H:%M:%S.%e %l %v");
        const std::lock_guard<std::mutex> lock(state().mutex);
        state().logger = std::move(logger);
    }
    catch (const spdlog::spdlog_ex& failure)
    {
        error = failure.what();
        return false;
    }
    state().fileLevel.store(std::clamp(level, 0, kHighestLevel));
    return true;
}

void close()
{
    state().fileLevel.store(0);
    std::shared_ptr<spdlog::logger> logger;
    {
        const std::lock_guard<std::mutex> lock(state().mutex);
        logger.swap(state().logger);
    }
    if (logger)
    {
        logger->flush();
    }
}

void observe(int level, Observer observer)
{
    const std::lock_guard<std::mutex> lock(state().observerMutex);
    state().observerLevel.store(observer ? std::clamp(level, 0, kHighestLevel) : 0);
    state().observer = std::move(observer);
}

TargetScope::TargetScope(const std::string& target) : target_(target), previous_(currentTarget())
{
    currentTarget() = &target_;
}

TargetScope::~TargetScope()
{
    currentTarget() = previous_;
}
} // namespace log_control
