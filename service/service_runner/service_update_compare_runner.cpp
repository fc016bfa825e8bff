#include "service_runner/service_update_compare_runner.h"

#include "common/BlueHelper.h"
#include "file_names.h"
#include "korvan_connect.h"
#include "option_names.h"
#include "result_codes.h"
#include "service_option/update_compare_adapter.h"
#include "service_runner/console_echo.h"
#include "service_runner/legacy_process.h"
#include "service_runner/text_file.h"
#include "xmodule_log.h"

#include <boost/filesystem/path.hpp>

#include <exception>

namespace
{
constexpr char kSource[] = "service/service_runner/service_update_compare_runner";

constexpr int kScanStep = 11;
constexpr int kQueryStep = 12;

constexpr char kOutOfBandLegacy[] =
    "You are running out-of-band update against an older system, which is not supported by Halvard Suite";

void markBegin(int step)
{
    AddDetailTimeDebugLog(3, kSource, __LINE__, "[B]", step, 0, "");
}

void markEnd(int step, const KorvanResult& result)
{
    AddDetailTimeDebugLog(3, kSource, __LINE__, "[E]", step, static_cast<int>(result.number()), "");
}

// Every outcome stands under the comparison's name, whichever step it came from.
void pushOutcome(SummaryReport& summary, const KorvanResult& result)
{
    const std::string message = result.messageText();
    const int code = static_cast<int>(result.code);
    summary.PushServiceResult(service::ServiceUpdateCompare::ActionName(), code, message);
    summary.PushSummaryResult(code, message);
    summary.GenerateReportFile();
}
} // namespace

CompareRunner::CompareRunner(const UserContext& context, const std::string& outputDir, bool screen)
    : screen_(screen), outputDir_(outputDir), context_(context)
{
    service::adapter::convert_to(context_, compareOptions_); // always a success
}

KorvanResult CompareRunner::operator()()
{
    KORVAN_LOG(4, kSource) << "Entering  "
                           << "CompareRunner::operator ()";
    KorvanResult result;
    SummaryReport summary(outputDir_);
    if (BlueHelper::IsBLUE(context_))
    {
        result = runLegacyTool();
    }
    else
    {
        markBegin(kScanStep);
        result = Scan(summary);
        markEnd(kScanStep, result);
        if (result.succeeded())
        {
            markBegin(kQueryStep);
            result = Query(summary);
            markEnd(kQueryStep, result);
        }
        service::CompareReport report;
        if (result.succeeded())
        {
            result = compare(report);
        }
        if (!result.succeeded())
        {
            pushOutcome(summary, result);
            return result;
        }
        result = save(report);
    }
    pushOutcome(summary, result);
    KORVAN_LOG(4, kSource) << "Exiting  "
                           << "CompareRunner::operator ()";
    return KorvanResult(result.code, result.messageText());
}

KorvanResult CompareRunner::runLegacyTool()
{
    if (FetchConnectionMode(context_) != kConnectInBand)
    {
        return KorvanResult(result_code::kUpdateLegacyCommandUnsupported, kOutOfBandLegacy);
    }
    if (screen_)
    {
        LogAndEcho(3, kSource, __LINE__, screen_, "This is an Tolmar branded System..");
    }
    std::string command;
    KorvanResult result(static_cast<std::uint32_t>(GetBlueCmd(command)));
    if (!result.succeeded())
    {
        return result;
    }
    result = KorvanResult(static_cast<std::uint32_t>(RunCommandLine(command)));
    // Whatever the tool's status was, the user is sent to the tool's own log.
    return result.succeeded() ? result : KorvanResult(result_code::kFlashLegacyToolFailed);
}

KorvanResult CompareRunner::compare(service::CompareReport& report)
{
    service::ServiceUpdateCompare comparison(compareOptions_);
    comparison.SetReports(scanReport_, queryReport_);
    return comparison.RunCompare(report);
}

KorvanResult CompareRunner::save(const service::CompareReport& report)
{
    compareXmlPath_ = (boost::filesystem::path(outputDir_) / file_name::kCompareXml).string();
    KorvanResult saved = service::SerializeCompareReport::SaveToXml(report, compareXmlPath_);
    if (screen_)
    {
        service::SerializeCompareReport::PrintResult(report, HasOption(context_, option::kVerbose));
    }
    else
    {
        saveTable(report);
    }
    if (saved.succeeded())
    {
        LogAndEcho(3, kSource, __LINE__, screen_, "Compare updates done, the result is stored to " + compareXmlPath_);
    }
    else
    {
        LogAndEcho(1, kSource, __LINE__, screen_, "Failed to write compare result report.");
    }
    return saved;
}

void CompareRunner::saveTable(const service::CompareReport& report) const
{
    try
    {
        std::ofstream file = OpenTextFile(outputDir_, file_name::kCompareText);
        service::SerializeCompareReport::PrintResult(report, file, HasOption(context_, option::kVerbose));
        if (!deviceText_.empty())
        {
            file << deviceText_;
        }
        file.close();
    }
    catch (const std::exception& error)
    {
        KORVAN_LOG(1, kSource) << "Failed to save screen print with exception: " << error.what();
    }
}
