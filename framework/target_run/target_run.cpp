#include "target_run/target_run.h"

#include <algorithm>

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
    if (scope != nullptr && std::find(scope->remarks_.begin(), scope->remarks_.end(), text) == scope->remarks_.end())
    {
        scope->remarks_.push_back(text);
    }
}
} // namespace target_run
