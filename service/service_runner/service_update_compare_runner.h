#pragma once

#include "korvan_result.h"
#include "service/update_compare.h"
#include "service/update_query.h"
#include "service/update_scan.h"
#include "summary_report.h"
#include "user_context.h"

#include <string>

// Runs the whole update comparison for one target and leaves its reports in the target's output directory.
//
// Used by one thread, called once. Owns all that it holds. Failures are results; exceptions of the services pass through,
// but for those met while a printed table is saved.
class CompareRunner
{
  public:
    // `screen`: tables and progress go to the console instead of into text files.
    CompareRunner(const UserContext& context, const std::string& outputDir, bool screen);

    // A legacy system goes to the legacy installer tool; any other is scanned, the repository queried, both compared and
    // the comparison saved. The first step that fails ends it. Each outcome goes into the target's summary report.
    KorvanResult operator()();

    // Fills the scan report: nothing with "noscan", from a file with "scanxml", else from the target. A scan that failed
    // but found something is a success.
    KorvanResult Scan(SummaryReport& summary);

    // Fills the query report: from a file with "queryxml", else from the repository, and saves it then.
    KorvanResult Query(SummaryReport& summary);

    // The legacy tool's full command line. 0, or a result code after an error line in the log; `command` is then left
    // alone.
    int GetBlueCmd(std::string& command);

  private:
    KorvanResult runLegacyTool();
    KorvanResult compare(service::CompareReport& report);
    KorvanResult save(const service::CompareReport& report);
    void saveTable(const service::CompareReport& report) const;
    service::QueryOptions queryOptions() const;
    KorvanResult queryRepository();

    service::CompareOptions compareOptions_;
    service::UpdateScanReport scanReport_;
    service::QueryReport queryReport_;
    bool screen_;
    std::string outputDir_;
    std::string compareXmlPath_;
    std::string deviceText_; // the target's host, once the scan step has read its address
    UserContext context_;
};
