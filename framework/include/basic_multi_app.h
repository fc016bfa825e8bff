#pragma once

#include "korvan_framework_export.h"
#include "korvan_result.h"
#include "user_context.h"

#include <boost/shared_ptr.hpp>

#include <map>
#include <string>

namespace nova
{
class MultiConfigure;
struct ServerInfo;
} // namespace nova

// Root of every command application. The virtual operations of this class and of BasicMultiApp are a binary
// contract between the framework and the modules that it loads: their order is fixed.
class basic_app
{
  public:
    basic_app() = default;
    basic_app(const basic_app&) = delete;
    basic_app& operator=(const basic_app&) = delete;
    virtual ~basic_app() {}

    virtual KorvanResult Initialize(const UserContext& context) = 0;
    virtual KorvanResult Running() = 0;
    virtual KorvanResult Cleanup() = 0;
};

// Base of the commands that run against several targets.
//
// Life: create_instance, Initialize, Running, Cleanup, destructor, all on one thread. Running calls RunTask once for
// each target, several at once and from other threads when the context allows it, each time with an output
// directory that no other call has; when all have returned it calls HandleResult and then SummarizeResult on its own
// thread. An exception that leaves RunTask becomes that target's result; the other targets go on.
//
// The inline members are compiled into the loaded module; the others live in the framework's library.
class KORVAN_FRAMEWORK_EXPORT BasicMultiApp : public basic_app
{
  public:
    BasicMultiApp();
    ~BasicMultiApp() override {}

    // Reads the targets, checks the options as far as that needs no target, makes the output directory and opens the log.
    // Failures: code 5 for a wrong target or option, 6, 7, 10, 38 or 88 for a file or folder that an option names, 8 for
    // the output directory. Nothing is made before all else is right.
    KorvanResult Initialize(const UserContext& context) override;

    // Runs every target's task, then HandleResult; returns what SummarizeResult says.
    KorvanResult Running() override;

    KorvanResult Cleanup() override;

    // Splits the parent context's targets and settings into the run's configuration; throws nothing. A null
    // pointer means that Initialize has not run.
    virtual boost::shared_ptr<nova::MultiConfigure> CreateConfigure();

    // One target's work. `outputDir` exists, is empty, and belongs to this call alone.
    virtual KorvanResult RunTask(const nova::ServerInfo& server, const std::string& outputDir) = 0;

    virtual void HandleResult() {}

    // A question to put to the user before anything runs; empty: none.
    virtual const std::string ConfirmMessage(const UserContext& /*context*/) const { return std::string(); }

    // Prints one line for each target and a closing count. Code 0, or 58 when a target failed, or else 59 when one
    // was skipped.
    virtual KorvanResult SummarizeResult(const std::map<std::string, KorvanResult>& results);

  protected:
    // A copy of the parent context for one target. With `keepAllTargets` false, called from RunTask, the connection
    // options that only name other targets are left out, so that the copy leads to no second address, and the target's
    // own fingerprint and its leave for old TLS are laid in.
    UserContext InheritParentContext(bool keepAllTargets) const;

    const UserContext& parentContext() const { return parent_; }

  private:
    UserContext parent_;
    boost::shared_ptr<nova::MultiConfigure> configure_;
};
