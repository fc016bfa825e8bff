#pragma once

#include "korvan_framework_export.h"

#include <functional>
#include <string>

// The log's set-up, for the framework and its tests; modules see xmodule_log.h only.
namespace log_control
{
// Records go to the file (made with mode 0600, appended to) up to the level. False when it cannot be opened; then the log stays as it
// was. Not for use while other threads log.
KORVAN_FRAMEWORK_EXPORT bool open(const std::string& path, int level, std::string& error);

// Flushes and closes the file; records go nowhere and the level is 0 until the next open.
KORVAN_FRAMEWORK_EXPORT void close();

// For tests: every record's level, source, line and text goes to the function up to the level, beside the file. An empty function
// ends it. The function may be called from several threads, one call at a time.
using Observer = std::function<void(int level, const std::string& source, int line, const std::string& text)>;
KORVAN_FRAMEWORK_EXPORT void observe(int level, Observer observer);

// Names the target in this thread's records for as long as the object lives.
class KORVAN_FRAMEWORK_EXPORT TargetScope
{
  public:
    explicit TargetScope(const std::string& target);
    ~TargetScope();
    TargetScope(const TargetScope&) = delete;
    TargetScope& operator=(const TargetScope&) = delete;

  private:
    std::string target_;
    const std::string* previous_;
};
} // namespace log_control
