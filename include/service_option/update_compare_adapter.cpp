#include "service_option/update_compare_adapter.h"

#include "option_names.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

namespace
{
constexpr char kAllPsu[] = "all";

void convertPsu(const UserContext& context, service::CompareOptions& options)
{
    options.allPsu = false;
    if (!HasOption(context, option::kPsu))
    {
        options.allPsu = true;
        return;
    }
    const std::string value = boost::algorithm::to_lower_copy(GetOption(context, option::kPsu, ""));
    if (value == kAllPsu)
    {
        options.allPsu = true;
        return;
    }
    boost::algorithm::split(options.psuList, value, boost::algorithm::is_any_of(","));
}
} // namespace

namespace service
{
namespace adapter
{
KorvanResult convert_to(const UserContext& context, CompareOptions& options)
{
    options.noSupersede = HasOption(context, option::kNoSupersede);
    convertPsu(context, options);
    options.backup = HasOption(context, option::kBackup);
    options.noReq = HasOption(context, option::kNoReq);
    options.checkDevice = HasOption(context, option::kCheckDevice);
    options.allDriver = HasOption(context, option::kAllDriver);
    return KorvanResult();
}
} // namespace adapter
} // namespace service
