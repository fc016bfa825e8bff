#include "target_run/target_run.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace target_run
{
namespace
{
// A plain pointer: a thread's variables with destructors are not safe with every compiler's runtime.
Scope*& currentScope()
{
    thread_local Scope* scope = nullptr;
    return scope;
}

struct RunRemarks
{
    std::mutex mutex;
    std::vector<std::string> texts;
};

RunRemarks& runRemarks()
{
    static RunRemarks instance;
    return instance;
}

void addOnce(const std::string& text, std::vector<std::string>& texts)
{
    if (std::find(texts.begin(), texts.end(), text) == texts.end())
    {
        texts.push_back(text);
    }
}
} // namespace

Scope::Scope() : begin_(std::chrono::steady_clock::now())
{
    currentScope() = this;
}

Scope::~Scope()
{
    currentScope() = nullptr;
}

std::chrono::steady_clock::time_point deadline(std::chrono::seconds targetTimeout)
{
    const Scope* const scope = currentScope();
    return (scope != nullptr ? scope->begin_ : std::chrono::steady_clock::now()) + targetTimeout;
}

std::shared_ptr<void>* keepsake()
{
    Scope* const scope = currentScope();
    return scope == nullptr ? nullptr : &scope->keepsake_;
}

void remark(const std::string& text)
{
    Scope* const scope = currentScope();
    if (scope != nullptr)
    {
        addOnce(text, scope->remarks_);
    }
}

void remarkOnRun(const std::string& text)
{
    const std::lock_guard<std::mutex> lock(runRemarks().mutex);
    addOnce(text, runRemarks().texts);
}

std::vector<std::string> takeRunRemarks()
{
    const std::lock_guard<std::mutex> lock(runRemarks().mutex);
    return std::exchange(runRemarks().texts, {});
}
} // namespace target_run
