#include "redfish/client_for_target.h"

#include "target_run/target_run.h"

#include <tuple>

namespace redfish
{
namespace
{
struct Kept
{
    ConnectOption option;
    std::shared_ptr<Client> client;
};

auto settings(const ConnectOption& option)
{
    return std::tie(option.scheme, option.host, option.port, option.user, option.password, option.caCert,
                    option.checkTrust, option.knownControllers, option.trustOnFirstUse, option.fingerprint,
                    option.oldTls, option.connectTimeout, option.requestTimeout, option.targetTimeout);
}
} // namespace

std::shared_ptr<Client> clientForTarget(const ConnectOption& option)
{
    std::shared_ptr<void>* const place = target_run::keepsake();
    if (place == nullptr)
    {
        return std::make_shared<Client>(option);
    }
    const auto kept = std::static_pointer_cast<Kept>(*place);
    if (kept && settings(kept->option) == settings(option))
    {
        return kept->client;
    }
    const auto made = std::make_shared<Kept>(Kept{option, std::make_shared<Client>(option)});
    *place = made;
    return made->client;
}
} // namespace redfish
