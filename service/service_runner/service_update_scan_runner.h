#pragma once

#include "dynamic_progress_bar.h"
#include "korvan_result.h"
#include "service/update_scan.h"

#include <string>

// Scans one target and saves what was found as a printed table and as XML. Used by one thread, called once.
class ScanRunner
{
  public:
    // `option.outputDir` takes the files. `progressBar` is not owned, may be null and must outlive the call; `screen`:
    // the table goes to the console instead of into a text file.
    ScanRunner(const UpdateScanOption& option, const std::string& outputDir, bool screen,
               DynamicProgressBar* progressBar);

    // The scan's result, also when the scan found something beside its failure. A table or file that cannot be written
    // does not change it. The outcome goes into the target's summary report.
    KorvanResult operator()();

    const service::UpdateScanReport& report() const { return report_; }

    // Empty when nothing was saved.
    const std::string& scanXmlPath() const { return scanXmlPath_; }

  private:
    void printTable() const;
    void saveTable() const;
    void saveXml();
    void recordOutcome() const;

    UpdateScanOption option_;
    service::UpdateScanReport report_;
    KorvanResult result_;
    std::string outputDir_;
    std::string scanXmlPath_;
    bool screen_;
    bool saveXml_ = true;
    DynamicProgressBar* progressBar_;
};
