#include "connect/connection_options.h"

#include "korvan_connect.h"
#include "multi_command/target_address.h"
#include "nova/server_info.h"
#include "option_names.h"
#include "result_codes.h"
#include "target_run/target_run.h"
#include "trust/known_controllers.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace connect
{
std::string connectionOption(const UserContext& context)
{
    for (const char* name : {option::kLocal, option::kBmc, option::kPmx, option::kEsxi, option::kCmm, option::kSmm})
    {
        if (HasOption(context, name))
        {
            return name;
        }
    }
    return std::string();
}
} // namespace connect

namespace
{
constexpr std::int32_t kHighestPort = 65535;
constexpr std::int32_t kHighestCipherSuite = 17; // IPMI 2.0, table 22-20

void fillLogin(const UserContext& context, const multi_command::TargetAddress& address, ConnectOption& option)
{
    const bool named = !address.user.empty();
    option.user = named ? address.user : GetOption(context, option::kBmcUsername, "");
    // A password of the options belongs to the user of the options, or completes an address without one.
    option.password = address.password.empty() ? GetOption(context, option::kBmcPassword, "") : address.password;
}

void fillTrust(const UserContext& context, ConnectOption& option)
{
    option.caCert = GetOption(context, option::kCaCert, "");
    option.checkTrust = !HasOption(context, option::kNeverCheckTrust);
    option.knownControllers = HasOption(context, option::kKnownControllers)
                                  ? GetOption(context, option::kKnownControllers, "")
                                  : trust::KnownControllers::usualPath();
    option.trustOnFirstUse = HasOption(context, option::kTrustOnFirstUse);
    // One that is none must match nothing instead of being left out.
    option.fingerprint = GetOption(context, option::kFingerprint, "");
    option.oldTls = HasOption(context, option::kOldTls);
}

// False when the option is given and no number within the bounds.
template <class Number>
bool takeNumber(const UserContext& context, const char* name, std::int32_t low, std::int32_t high, Number& number)
{
    if (!HasOption(context, name))
    {
        return true;
    }
    const std::string value = GetOption(context, name, "");
    std::int32_t read = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), read);
    if (error != std::errc() || end != value.data() + value.size() || read < low || read > high)
    {
        return false;
    }
    number = static_cast<Number>(read);
    return true;
}

KorvanResult wrongNumber(const char* name, std::int32_t low, std::int32_t high)
{
    return KorvanResult(result_code::kInvalidAddress, std::string("--") + name + " must be a number from " +
                                                          std::to_string(low) + " to " + std::to_string(high) + ".");
}

KorvanResult fillOtherProtocols(const UserContext& context, ConnectOption& option)
{
    if (!takeNumber(context, option::kBmcCimPort, 1, kHighestPort, option.cimPort))
    {
        return wrongNumber(option::kBmcCimPort, 1, kHighestPort);
    }
    if (!takeNumber(context, option::kIpmiPort, 1, kHighestPort, option.ipmiPort))
    {
        return wrongNumber(option::kIpmiPort, 1, kHighestPort);
    }
    if (!takeNumber(context, option::kIpmiCipherSuite, 0, kHighestCipherSuite, option.ipmiCipherSuite))
    {
        return wrongNumber(option::kIpmiCipherSuite, 0, kHighestCipherSuite);
    }
    return KorvanResult();
}

std::string urlOf(const ConnectOption& option)
{
    nova::ServerInfo server;
    server.option = option.kind;
    server.user = option.user;
    server.password = option.password;
    server.host = option.host;
    server.port = option.port;
    server.scheme = option.scheme;
    return nova::make_url(server);
}
} // namespace

KorvanResult ConvertUserContextToConnectOption(const UserContext& context, ConnectOption& option)
{
    ConnectOption filled;
    const std::string kind = connect::connectionOption(context);
    filled.kind = kind.empty() ? option::kLocal : kind;
    fillTrust(context, filled);
    filled.connectTimeout = std::chrono::seconds(std::max(1, context.connectTimeout));
    filled.requestTimeout = std::chrono::seconds(std::max(1, context.requestTimeout));
    filled.targetTimeout = std::chrono::seconds(std::max(1, context.targetTimeout));
    filled.deadline = target_run::deadline(filled.targetTimeout);
    filled.machineTypeStated = HasOption(context, option::kMt);
    if (filled.kind == option::kLocal)
    {
        filled.address = GetOption(context, option::kLocal, "");
        filled.host = "localhost";
        option = filled;
        return KorvanResult();
    }
    multi_command::TargetAddress address;
    std::string reason;
    if (!multi_command::parseTargetAddress(GetOption(context, kind, ""), address, reason))
    {
        option = filled;
        return KorvanResult(result_code::kInvalidAddress, "--" + kind + ": " + reason);
    }
    filled.scheme = address.scheme.empty() ? "https" : address.scheme;
    filled.host = address.host;
    filled.port = address.port;
    fillLogin(context, address, filled);
    filled.address = urlOf(filled);
    KorvanResult result = fillOtherProtocols(context, filled);
    option = filled;
    return result;
}
