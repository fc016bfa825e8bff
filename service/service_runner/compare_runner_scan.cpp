#include "service_runner/service_update_compare_runner.h"

#include "DevUri/DevUri.h"
#include "dynamic_progress_bar.h"
#include "option_names.h"
#include "service_option/update_scan_adapter.h"
#include "service_runner/console_echo.h"
#include "service_runner/service_update_scan_runner.h"
#include "xmodule_log.h"

namespace
{
constexpr char kSource[] = "service/service_runner/service_update_compare_runner";
} // namespace

KorvanResult CompareRunner::Scan(SummaryReport& /*summary*/)
{
    if (HasOption(context_, option::kNoScan))
    {
        return KorvanResult();
    }
    if (HasOption(context_, option::kScanXml))
    {
        const int code =
            service::SerializeScanReport::LoadFromXml(GetOption(context_, option::kScanXml, ""), scanReport_);
        return KorvanResult(static_cast<std::uint32_t>(code));
    }
    UpdateScanOption scanOption;
    service::adapter::convert_to(context_, scanOption);
    DevUri address;
    if (address.Parse(scanOption.connectOption.address) != 0)
    {
        deviceText_ = address.host;
    }
    scanOption.outputDir = outputDir_;
    DynamicProgressBar progressBar;
    ScanRunner runner(scanOption, outputDir_, screen_, screen_ ? &progressBar : nullptr);
    KorvanResult result = runner();
    scanReport_ = runner.report();

    LogAndEcho(3, kSource, __LINE__, screen_ && !runner.scanXmlPath().empty(),
               "Scan results saved to: " + runner.scanXmlPath());
    // Said of every scan that found items, also of one without an error; kept, scripts that read the log expect it.
    if (!scanReport_.GetScanResults().empty())
    {
        KORVAN_LOG(1, kSource) << "Scan Faile but get some partly results so ignore it's error.";
        result = KorvanResult();
    }
    return result;
}
