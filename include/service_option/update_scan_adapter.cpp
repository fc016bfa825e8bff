#include "service_option/update_scan_adapter.h"

#include "korvan_connect.h"
#include "option_names.h"
#include "system_check.h"
#include "xmodule_log.h"

#include <sstream>

namespace
{
constexpr char kSource[] = "include/service_option/update_scan_adapter";

// In the order in which they stand in the command text.
constexpr const char* kCommandOptions[] = {
    option::kBmcUsername, option::kBmcPassword, option::kBmcCimPort, option::kIoBay, option::kLog, option::kType,
};

std::string commandText(const UserContext& context)
{
    std::string text = "update scan ";
    for (const char* name : kCommandOptions)
    {
        if (HasOption(context, name))
        {
            text += std::string("--") + name + " " + GetOption(context, name, "") + " ";
        }
    }
    return text;
}

// 0 when the text does not begin with a number.
std::int32_t decimal(const std::string& text)
{
    std::int32_t number = 0;
    std::istringstream stream(text);
    stream >> number;
    return number;
}
} // namespace

namespace service
{
namespace adapter
{
void convert_to(const UserContext& context, UpdateScanOption& option)
{
    option.ioBay = decimal(GetOption(context, option::kIoBay, "0"));
    option.useTarn = HasOption(context, option::kTarn);
    option.checkDevice = HasOption(context, option::kCheckDevice);
    option.cfcSystem = IsCFCSystem().check(context);
    option.checkTrust = !HasOption(context, option::kNeverCheckTrust);
    ConvertUserContextToConnectOption(context, option.connectOption);
    option.dir = GetOption(context, option::kDir, "./");
    const std::string text = commandText(context);
    convert_update_type(context, option);
    option.commandLine = text;
}

void convert_update_type(const UserContext& context, UpdateScanOption& option)
{
    if (HasOption(context, option::kType))
    {
        option.type = GetOption(context, option::kType, "");
        KORVAN_LOG(3, kSource) << "Parameter --type: " << option.type;
    }
}
} // namespace adapter
} // namespace service
