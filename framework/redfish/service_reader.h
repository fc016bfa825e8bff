#pragma once

#include "korvan_result.h"
#include "redfish/client.h"
#include "redfish/collection.h"
#include "service/update_scan.h"

#include <functional>
#include <string>
#include <vector>

namespace redfish
{
// The links of a service root that matter here; empty where the service has none.
struct ServiceRoot
{
    std::string systems;
    std::string managers;
    std::string chassis;
    std::string updateService;
    std::string sessions;
    Expansion expansion;
};

// What is read of a target.
struct Identity
{
    std::string machineType;
    std::string model;   // the system's model name
    std::string bmcType; // the type of the controller that manages the system
};

// Opens the service (DSP0266, "Service root"): with or without the slash at the end of its path. Result code 52 when
// there is no Redfish service. Afterwards the client knows where sessions are offered.
KorvanResult openService(Client& client, ServiceRoot& root);

// Reads a resource that only a logged-in account may read: a wrong login shows here.
KorvanResult checkLogin(Client& client, const ServiceRoot& root);

// Reads machine type and model: of the first system that has a machine type, where there are several. With
// `withManager` also the controller that manages this system.
enum class ManagerUse
{
    Skip,
    Read,
};
KorvanResult readIdentity(Client& client, ServiceRoot& root, ManagerUse managerUse, Identity& identity);

// Reads both inventories with the items' slots. On a failure `items` holds what was read before and after it.
// `progress` is told how far it is, in per cent of the whole; may be empty.
using Progress = std::function<void(int percent, const std::string& text)>;
KorvanResult readItems(Client& client, ServiceRoot& root, const Progress& progress,
                       std::vector<service::ScanItem>& items);
} // namespace redfish
