#pragma once

#include "korvan_framework_export.h"

#include <string>
#include <vector>

// Summary of what was done for one target, "common_result.xml" in that target's folder (docs/files.md). Used by one
// thread; nothing is written before GenerateReportFile.
class KORVAN_FRAMEWORK_EXPORT SummaryReport
{
  public:
    explicit SummaryReport(const std::string& outputDir);

    // One service's outcome; `action` is the service's ActionName.
    void PushServiceResult(const std::string& action, int code, const std::string& message);

    // The overall outcome; the last one pushed counts.
    void PushSummaryResult(int code, const std::string& message);

    // Replaces the file; outcomes of other services that stand in it already are kept in front. A failure is logged; the target's own result does not change by it.
    void GenerateReportFile() const;

  private:
    struct Outcome
    {
        std::string action;
        int code = 0;
        std::string message;
    };
    std::string outputDir_;
    std::vector<Outcome> services_;
    Outcome summary_;
};
