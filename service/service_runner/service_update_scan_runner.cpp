#include "service_runner/service_update_scan_runner.h"

#include "DevUri/DevUri.h"
#include "file_names.h"
#include "service_runner/text_file.h"
#include "summary_report.h"
#include "xmodule_log.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include <exception>

namespace
{
constexpr char kSource[] = "service/service_runner/service_update_scan_runner";
} // namespace

ScanRunner::ScanRunner(const UpdateScanOption& option, const std::string& outputDir, bool screen,
                       DynamicProgressBar* progressBar)
    : option_(option), outputDir_(outputDir), screen_(screen), progressBar_(progressBar)
{
}

KorvanResult ScanRunner::operator()()
{
    service::ServiceUpdateScan scan(option_);
    if (progressBar_ != nullptr)
    {
        scan.SetProgressBar(progressBar_);
    }
    result_ = scan.Run(report_);
    if (!report_.GetScanResults().empty())
    {
        printTable();
        if (saveXml_)
        {
            saveXml();
        }
    }
    recordOutcome();
    return result_;
}

void ScanRunner::printTable() const
{
    if (screen_)
    {
        service::SerializeScanReport::PrintResult(report_, option_.type);
        return;
    }
    try
    {
        saveTable();
    }
    catch (const std::exception& error)
    {
        KORVAN_LOG(1, kSource) << "Failed to save screen print with exception: " << error.what();
    }
}

void ScanRunner::saveTable() const
{
    std::ofstream file = OpenTextFile(option_.outputDir, file_name::kScanText);
    service::SerializeScanReport::PrintResult(report_, file, option_.type);
    DevUri address;
    if (address.Parse(option_.connectOption.address) != 0)
    {
        file << address.host;
    }
    file.close();
}

void ScanRunner::saveXml()
{
    boost::system::error_code ignored;
    if (boost::filesystem::is_regular_file(scanXmlPath_, ignored))
    {
        boost::filesystem::remove(scanXmlPath_, ignored);
    }
    scanXmlPath_ = (boost::filesystem::path(option_.outputDir) / file_name::kScanXml).string();
    if (service::SerializeScanReport::SaveToXml(report_, scanXmlPath_) != 0)
    {
        scanXmlPath_.clear();
    }
}

void ScanRunner::recordOutcome() const
{
    const std::string message = result_.messageText();
    const int code = static_cast<int>(result_.code);
    SummaryReport summary(outputDir_);
    summary.PushServiceResult(service::ServiceUpdateScan::ActionName(), code, message);
    summary.PushSummaryResult(code, message);
    summary.GenerateReportFile();
}
