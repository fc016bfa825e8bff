#include "connect/connection_options.h"
#include "korvan_connect.h"
#include "option_names.h"

ConnectMode FetchConnectionMode(const UserContext& context)
{
    const std::string kind = connect::connectionOption(context);
    return kind.empty() || kind == option::kLocal ? kConnectInBand : kConnectOutOfBand;
}
