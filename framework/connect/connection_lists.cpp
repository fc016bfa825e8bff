#include "korvan_connect.h"

#include "cim/chassis.h"
#include "connect/target_memory.h"
#include "ipmi/controller_product.h"
#include "option_names.h"
#include "redfish/client_for_target.h"
#include "redfish/failure.h"
#include "redfish/service_reader.h"
#include "result_codes.h"
#include "xmodule_log.h"

#include <algorithm>

using connect::Asked;
using connect::Finding;
using XModule::XModuleConnection::ConnectionInfo;
using XModule::XModuleConnection::Protocol;

namespace
{
constexpr char kSource[] = "framework/connect/connection_lists";

// A host that let the first protocol wait in vain gets less of the later ones.
constexpr std::chrono::seconds kPatienceWithSilence{3};

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

// What a failure over a protocol says about the target as a whole.
Finding findingFrom(const KorvanResult& result, bool loginRefused)
{
    if (result.code == result_code::kCertificateNotTrusted)
    {
        return Finding::CertificateRefused;
    }
    if (loginRefused)
    {
        return Finding::LoginRefused;
    }
    return result.code == result_code::kTimeout ? Finding::Silent : Finding::Nothing;
}

// Whether the target may be asked over a protocol that comes after others, and with which patience.
KorvanResult prepareLater(const std::string& protocol, ConnectOption& option)
{
    const std::string target = redfish::targetName(option);
    if (timeLeft(option).count() == 0)
    {
        return redfish::deadlineFailure(target, "asking over " + protocol).result;
    }
    switch (connect::findingOf(option))
    {
    case Finding::CertificateRefused:
        // The login of IPMI would let whoever answers guess at the password at leisure.
        return KorvanResult(result_code::kCertificateNotTrusted,
                            target + ": not asked over " + protocol + ", since its certificate is not trusted.");
    case Finding::LoginRefused:
        return KorvanResult(
            result_code::kAuthenticationFailed,
            target + ": not asked over " + protocol +
                ", since it has refused this user name and password already and more tries can lock the "
                "account; check the login of this target.");
    case Finding::Silent:
        option.connectTimeout = std::min(option.connectTimeout, kPatienceWithSilence);
        break;
    case Finding::Nothing:
        break;
    }
    return KorvanResult();
}

// Settings for a protocol that comes after others.
KorvanResult laterOption(const UserContext& context, const std::string& protocol, ConnectOption& option)
{
    KorvanResult result = remoteOption(context, protocol, option);
    return result.succeeded() ? prepareLater(protocol, option) : result;
}

KorvanResult logged(const KorvanResult& result)
{
    KORVAN_LOG(2, kSource) << result.messageText();
    return result;
}
} // namespace

KorvanResult GetRESTConnectionList(const UserContext& context, std::vector<ConnectionInfo>& connections)
{
    ConnectionInfo info;
    info.protocol = Protocol::Rest;
    KorvanResult result = ConvertUserContextToConnectOption(context, info.option);
    if (!result.succeeded())
    {
        return result;
    }
    if (info.option.kind == option::kLocal)
    {
        info.protocol = Protocol::Local;
        connections.push_back(info);
        return result;
    }
    const std::shared_ptr<redfish::Client> shared = redfish::clientForTarget(info.option);
    redfish::Client& client = *shared;
    redfish::ServiceRoot root;
    result = redfish::openService(client, root);
    if (result.succeeded())
    {
        result = redfish::checkLogin(client, root);
    }
    // An account that may not read one thing leaves the client usable; one that is refused does not.
    const bool loginRefused = result.code == result_code::kAuthenticationFailed && !client.usable();
    connect::rememberFinding(info.option, Asked::Rest, findingFrom(result, loginRefused), result);
    if (!result.succeeded())
    {
        return logged(result);
    }
    connections.push_back(info);
    return result;
}

KorvanResult FetchCIMConnectionList(const UserContext& context, std::vector<ConnectionInfo>& connections)
{
    ConnectionInfo info;
    info.protocol = Protocol::Cim;
    KorvanResult result = laterOption(context, "CIM", info.option);
    if (!result.succeeded())
    {
        return logged(result);
    }
    const cim::ChassisReading reading = cim::readChassis(info.option);
    const Finding finding = findingFrom(reading.result, reading.loginRefused);
    // A CIM service that is silent, as behind a firewall, says nothing about the protocols that are left.
    if (finding == Finding::CertificateRefused || finding == Finding::LoginRefused)
    {
        connect::rememberFinding(info.option, Asked::OtherProtocol, finding, reading.result);
    }
    if (!reading.result.succeeded())
    {
        return logged(reading.result);
    }
    connections.push_back(info);
    return reading.result;
}

KorvanResult FetchIPMIConnectionList(const UserContext& context, std::vector<ConnectionInfo>& connections)
{
    ConnectionInfo info;
    info.protocol = Protocol::Ipmi;
    KorvanResult result = laterOption(context, "IPMI", info.option);
    if (!result.succeeded())
    {
        return logged(result);
    }
    ipmi::Product product;
    result = ipmi::readProduct(info.option, product);
    if (!result.succeeded())
    {
        return logged(result);
    }
    connections.push_back(info);
    return result;
}
