#include "korvan_connect.h"

#include "ipmi/controller_product.h"
#include "option_names.h"
#include "redfish/client.h"
#include "redfish/service_reader.h"
#include "result_codes.h"
#include "xmodule_log.h"

#include <mutex>
#include <set>

using XModule::XModuleConnection::ConnectionInfo;
using XModule::XModuleConnection::Protocol;

namespace
{
constexpr char kSource[] = "framework/connect/connection_lists";

// Controllers whose certificate was refused in this run. Another may be answering in their place, and the login of IPMI
// lets whoever answers guess at the password at leisure.
class RefusedControllers
{
  public:
    void remember(const std::string& target, bool refused)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (refused)
        {
            targets_.insert(target);
        }
        else
        {
            targets_.erase(target);
        }
    }

    bool contains(const std::string& target) const
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return targets_.count(target) != 0;
    }

  private:
    mutable std::mutex mutex_;
    std::set<std::string> targets_;
};

RefusedControllers& refusedControllers()
{
    static RefusedControllers controllers;
    return controllers;
}

KorvanResult notLocal(const std::string& protocol)
{
    return KorvanResult(result_code::kFunctionNotSupportedTargetSystem,
                        "localhost: the local system is not reached over " + protocol +
                            "; name its management controller with --bmc.");
}

// Fills the option of a target that is reached over the network.
KorvanResult remoteOption(const UserContext& context, const std::string& protocol, ConnectOption& option)
{
    KorvanResult result = ConvertUserContextToConnectOption(context, option);
    if (!result.succeeded())
    {
        return result;
    }
    return option.kind == option::kLocal ? notLocal(protocol) : KorvanResult();
}

KorvanResult unavailable(const UserContext& context, const std::string& protocol, std::uint32_t code)
{
    ConnectOption option;
    KorvanResult result = remoteOption(context, protocol, option);
    if (!result.succeeded())
    {
        return result;
    }
    return KorvanResult(code, redfish::targetName(option) + ": " + protocol +
                                  " connections are not available in this version; switch on the Redfish service of "
                                  "the controller.");
}
} // namespace

KorvanResult GetRESTConnectionList(const UserContext& context, std::vector<ConnectionInfo>& connections)
{
    ConnectionInfo info;
    info.protocol = Protocol::Rest;
    KorvanResult result = remoteOption(context, "REST", info.option);
    if (!result.succeeded())
    {
        return result;
    }
    redfish::Client client(info.option);
    redfish::ServiceRoot root;
    result = redfish::openService(client, root);
    if (result.succeeded())
    {
        result = redfish::checkLogin(client, root);
    }
    refusedControllers().remember(redfish::targetName(info.option), result.code == result_code::kCertificateNotTrusted);
    if (!result.succeeded())
    {
        KORVAN_LOG(2, kSource) << result.messageText();
        return result;
    }
    connections.push_back(info);
    return result;
}

KorvanResult FetchCIMConnectionList(const UserContext& context, std::vector<ConnectionInfo>& /*connections*/)
{
    return unavailable(context, "CIM", result_code::kNoCimService);
}

KorvanResult FetchIPMIConnectionList(const UserContext& context, std::vector<ConnectionInfo>& connections)
{
    ConnectionInfo info;
    info.protocol = Protocol::Ipmi;
    KorvanResult result = remoteOption(context, "IPMI", info.option);
    if (!result.succeeded())
    {
        return result;
    }
    if (refusedControllers().contains(redfish::targetName(info.option)))
    {
        return KorvanResult(result_code::kCertificateNotTrusted,
                            redfish::targetName(info.option) +
                                ": not asked over IPMI, since its certificate is not trusted.");
    }
    ipmi::Product product;
    result = ipmi::readProduct(info.option, product);
    if (!result.succeeded())
    {
        KORVAN_LOG(2, kSource) << result.messageText();
        return result;
    }
    connections.push_back(info);
    return result;
}
