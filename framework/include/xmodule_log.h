#pragma once

#include "korvan_framework_export.h"

#include <iosfwd>
#include <memory>
#include <ostream>
#include <string>

namespace XModule
{
// One log record: made with a level, its text written into Stream(), emitted when it is destroyed.
//
// Levels: 1 error, 2 warning, 3 information, 4 trace. A record is emitted only when GetMinLogLevel() is at least its
// level. Records may be made on any thread; one record belongs to one thread. Control characters are made visible,
// so that a record stays one line; a line end at the end of the text is dropped.
class KORVAN_FRAMEWORK_EXPORT Log
{
  public:
    // `source` is the path from the source root without extension; it must outlive the record.
    Log(int level, const char* source, int line);
    ~Log();
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    std::ostream& Stream();

    // The level up to which records are emitted; 0: none.
    static int GetMinLogLevel();

  private:
    struct Record;
    std::unique_ptr<Record> record_;
};
} // namespace XModule

// Writes a record when its level is asked for; the text is not even formatted otherwise.
#define KORVAN_LOG(level, source)                                                                                      \
    if (XModule::Log::GetMinLogLevel() < (level))                                                                      \
    {                                                                                                                  \
    }                                                                                                                  \
    else                                                                                                               \
        XModule::Log((level), (source), __LINE__).Stream()

// Timing record of a step: `mark` is "[B]" at its begin and "[E]" at its end, `step` the step's number.
KORVAN_FRAMEWORK_EXPORT void AddDetailTimeDebugLog(int level, const char* file, int line, const std::string& mark,
                                                   int step, int code, std::string extra);
