#include "service_runner/service_update_compare_runner.h"

#include "file_names.h"
#include "option_names.h"
#include "os_names.h"
#include "service_option/update_query_adapter.h"
#include "service_runner/console_echo.h"
#include "xmodule_log.h"

#include <boost/filesystem/path.hpp>

#include <algorithm>
#include <iterator>

namespace
{
constexpr char kSource[] = "service/service_runner/service_update_compare_runner";

// Any of them means that the target is reached over a management controller.
constexpr const char* kRemoteOptions[] = {option::kPmx, option::kBmc, option::kEsxi, option::kCmm, option::kSmm};
} // namespace

KorvanResult CompareRunner::Query(SummaryReport& summary)
{
    KorvanResult result = HasOption(context_, option::kQueryXml)
                              ? queryReport_.LoadFromXml(GetOption(context_, option::kQueryXml, ""))
                              : queryRepository();
    summary.PushServiceResult(service::ServiceUpdateQuery::ActionName(), static_cast<int>(result.code),
                              result.messageText());
    return result;
}

KorvanResult CompareRunner::queryRepository()
{
    service::ServiceUpdateQuery query(queryOptions());
    KorvanResult result = query.RunQuery(queryReport_);
    if (!result.succeeded())
    {
        KORVAN_LOG(1, kSource) << "query failed";
        return result;
    }
    const std::string path = (boost::filesystem::path(outputDir_) / file_name::kQueryXml).string();
    result = KorvanResult(static_cast<std::uint32_t>(queryReport_.SaveToXml(path)));
    if (result.succeeded())
    {
        LogAndEcho(3, kSource, __LINE__, screen_, "Querying updates done, the result is stored to " + path);
    }
    else
    {
        KORVAN_LOG(1, kSource) << "Save query result to xml failed.";
    }
    return result;
}

// What the scan found, with what the user states laid over it.
service::QueryOptions CompareRunner::queryOptions() const
{
    service::QueryOptions options;
    if (!HasOption(context_, option::kNoScan))
    {
        options.machineType = scanReport_.GetMT();
        options.osType = GetOsTypeCode(scanReport_.GetOS());
        options.osArch = GetOsArchCode(scanReport_.GetArch());
        options.osMinorVersion = scanReport_.GetOSMinorVersion();
    }
    options.bmcType = scanReport_.GetBmcType();
    options.remote = std::any_of(std::begin(kRemoteOptions), std::end(kRemoteOptions),
                                 [this](const char* name) { return HasOption(context_, name); });
    service::adapter::convert_to(context_, options); // always a success
    if (HasOption(context_, option::kBackup))
    {
        options.backup = true;
    }
    return options;
}
