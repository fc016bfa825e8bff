#include "redfish/service_reader.h"

#include "redfish/failure.h"
#include "redfish/inventory.h"
#include "redfish/json.h"
#include "redfish/machine_type.h"
#include "redfish/slots.h"
#include "result_codes.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace redfish
{
namespace
{
constexpr char kSource[] = "framework/redfish/service_reader";
constexpr char kRootPath[] = "/redfish/v1/"; // DSP0266 fixes it

// The first failure of several steps; later ones are in the log.
class Outcome
{
  public:
    void add(const Reply& reply)
    {
        if (!reply.ok())
        {
            KORVAN_LOG(2, kSource) << reply.result.messageText();
            first_ = first_.ok() ? reply : first_;
        }
    }

    // A resource that the service does not have is no failure.
    void addUnlessMissing(const Reply& reply)
    {
        if (reply.fault != Fault::Missing)
        {
            add(reply);
        }
    }

    // A service that has no such inventory, or an empty one, is not broken; but what is compared then must be said.
    void addNoFirmware(const Client& client, const std::string& path)
    {
        KorvanResult result(result_code::kRestDataUnreadable,
                            client.target() + ": the service has no firmware inventory" +
                                (path.empty() ? "" : " under " + text::visible(path)) +
                                "; firmware packages are shown as if it had no device for them");
        KORVAN_LOG(2, kSource) << result.messageText();
        if (first_.ok())
        {
            first_.fault = Fault::Missing;
            first_.result = result;
        }
    }

    const KorvanResult& result() const { return first_.result; }

  private:
    Reply first_;
};

bool isServiceRoot(const nlohmann::json& document)
{
    return member(document, "RedfishVersion") != nullptr || member(document, "UpdateService") != nullptr ||
           member(document, "Systems") != nullptr || member(document, "Managers") != nullptr ||
           textAt(document, "@odata.type").find("ServiceRoot") != std::string::npos;
}

std::string withoutEndSlash(const std::string& link)
{
    return link.size() > 1 && link.back() == '/' ? link.substr(0, link.size() - 1) : link;
}

bool names(const std::vector<std::string>& links, const std::string& wanted)
{
    return std::any_of(links.begin(), links.end(),
                       [&wanted](const std::string& link) { return withoutEndSlash(link) == withoutEndSlash(wanted); });
}

// The chassis of a system: those that the system names, or all.
std::string machineTypeOfChassis(Client& client, ServiceRoot& root, const nlohmann::json& system, Outcome& outcome)
{
    const std::vector<std::string> links = linksOf(member(system, {"Links", "Chassis"}));
    for (const std::string& link : links)
    {
        nlohmann::json chassis;
        outcome.addUnlessMissing(client.getJson(link, chassis));
        std::string found = firstMachineType(chassisCandidates(chassis));
        if (!found.empty())
        {
            return found;
        }
    }
    std::string found;
    if (links.empty() && !root.chassis.empty() && client.usable())
    {
        outcome.addUnlessMissing(readCollection(client, root.chassis, root.expansion,
                                                [&found](const nlohmann::json& chassis)
                                                {
                                                    found = firstMachineType(chassisCandidates(chassis));
                                                    return found.empty();
                                                }));
    }
    return found;
}

// The first system with a machine type of its own or by its chassis, else the first system.
nlohmann::json chooseSystem(Client& client, ServiceRoot& root, Identity& identity, Outcome& outcome)
{
    std::vector<nlohmann::json> systems;
    outcome.add(readCollection(client, root.systems, root.expansion,
                               [&](const nlohmann::json& system)
                               {
                                   systems.push_back(system);
                                   identity.machineType = firstMachineType(systemCandidates(system));
                                   return identity.machineType.empty();
                               }));
    if (!identity.machineType.empty())
    {
        return systems.back();
    }
    for (const nlohmann::json& system : systems)
    {
        identity.machineType = machineTypeOfChassis(client, root, system, outcome);
        if (!identity.machineType.empty())
        {
            return system;
        }
    }
    return systems.empty() ? nlohmann::json() : systems.front();
}

// The manager that the system names; else the one that names the system; else the first.
nlohmann::json chooseManager(Client& client, ServiceRoot& root, const nlohmann::json& system, Outcome& outcome)
{
    for (const std::string& link : linksOf(member(system, {"Links", "ManagedBy"})))
    {
        nlohmann::json manager;
        const Reply reply = client.getJson(link, manager);
        outcome.addUnlessMissing(reply);
        if (reply.ok())
        {
            return manager;
        }
    }
    nlohmann::json first;
    nlohmann::json found;
    if (root.managers.empty() || !client.usable())
    {
        return found;
    }
    const std::string wanted = linkOf(&system);
    outcome.addUnlessMissing(readCollection(
        client, root.managers, root.expansion,
        [&](const nlohmann::json& manager)
        {
            first = first.is_null() ? manager : first;
            if (!wanted.empty() && names(linksOf(member(manager, {"Links", "ManagerForServers"})), wanted))
            {
                found = manager;
            }
            return found.is_null();
        }));
    return found.is_null() ? first : found;
}

// False when nothing of a collection could be read that the service has.
bool readInventory(Client& client, ServiceRoot& root, const std::string& path, InventoryKind kind,
                   std::vector<InventoryEntry>& entries, Outcome& outcome)
{
    if (path.empty())
    {
        return true;
    }
    const std::size_t before = entries.size();
    const Reply reply = readCollection(client, path, root.expansion,
                                       [&](const nlohmann::json& resource)
                                       {
                                           InventoryEntry entry;
                                           if (readInventoryItem(resource, kind, entry))
                                           {
                                               entries.push_back(std::move(entry));
                                           }
                                           else
                                           {
                                               KORVAN_LOG(2, kSource) << client.target() << ": an item of " << path
                                                                      << " has neither id nor name; ignored";
                                           }
                                           return true;
                                       });
    outcome.addUnlessMissing(reply);
    KORVAN_LOG(3, kSource) << client.target() << ": " << entries.size() - before << " entries in " << path;
    return reply.ok() || reply.fault == Fault::Missing || entries.size() > before;
}

void tell(const Progress& progress, int percent, const std::string& text)
{
    if (progress)
    {
        progress(percent, text);
    }
}
} // namespace

KorvanResult openService(Client& client, ServiceRoot& root)
{
    nlohmann::json document;
    Reply reply = client.getJson(kRootPath, document);
    if (reply.fault == Fault::Missing)
    {
        reply = client.getJson(withoutEndSlash(kRootPath), document);
    }
    const bool otherMethod = reply.fault == Fault::Status && reply.status >= 400 && reply.status < 500;
    if (reply.fault == Fault::Missing || otherMethod)
    {
        return noServiceFailure(client.target(), "there is none under " + std::string(kRootPath)).result;
    }
    if (reply.fault == Fault::Unreadable || (reply.ok() && !isServiceRoot(document)))
    {
        return noServiceFailure(client.target(),
                                "what answers under " + std::string(kRootPath) + " is no Redfish service")
            .result;
    }
    if (!reply.ok())
    {
        return reply.result;
    }
    root.systems = linkOf(member(document, "Systems"));
    root.managers = linkOf(member(document, "Managers"));
    root.chassis = linkOf(member(document, "Chassis"));
    root.updateService = linkOf(member(document, "UpdateService"));
    root.sessions = linkOf(member(document, {"Links", "Sessions"}));
    const std::string sessionService = linkOf(member(document, "SessionService"));
    if (root.sessions.empty() && !sessionService.empty())
    {
        root.sessions = withoutEndSlash(sessionService) + "/Sessions";
    }
    root.expansion.advertise(document);
    client.offerSessions(root.sessions);
    KORVAN_LOG(3, kSource) << client.target() << ": Redfish service " << textAt(document, "RedfishVersion") << ", "
                           << textAt(document, "Name");
    return KorvanResult();
}

KorvanResult checkLogin(Client& client, const ServiceRoot& root)
{
    for (const std::string& path : {root.systems, root.managers, root.updateService})
    {
        nlohmann::json document;
        const Reply reply = path.empty() ? Reply() : client.getJson(path, document);
        if (!path.empty() && reply.fault != Fault::Missing)
        {
            return reply.result;
        }
    }
    return noServiceFailure(client.target(), "the service offers neither systems nor managers nor updates").result;
}

KorvanResult readIdentity(Client& client, ServiceRoot& root, ManagerUse managerUse, Identity& identity)
{
    Outcome outcome;
    nlohmann::json system;
    if (!root.systems.empty())
    {
        system = chooseSystem(client, root, identity, outcome);
    }
    identity.model = textAt(system, "Model");
    if (managerUse == ManagerUse::Read && client.usable())
    {
        identity.bmcType = bmcTypeOf(chooseManager(client, root, system, outcome));
    }
    KORVAN_LOG(3, kSource) << client.target() << ": machine type \"" << identity.machineType << "\", model \""
                           << identity.model << "\", controller \"" << identity.bmcType << "\"";
    return outcome.result();
}

KorvanResult readItems(Client& client, ServiceRoot& root, const Progress& progress,
                       std::vector<service::ScanItem>& items)
{
    Outcome outcome;
    if (root.updateService.empty())
    {
        KORVAN_LOG(2, kSource) << client.target() << ": the service has no UpdateService";
        return outcome.result();
    }
    nlohmann::json updateService;
    outcome.addUnlessMissing(client.getJson(root.updateService, updateService));
    const std::string firmware = linkOf(member(updateService, "FirmwareInventory"));
    const std::string software = linkOf(member(updateService, "SoftwareInventory"));
    std::vector<InventoryEntry> entries;
    tell(progress, 30, "Reading firmware");
    if (!readInventory(client, root, firmware, InventoryKind::Firmware, entries, outcome))
    {
        // Compared without any firmware, all devices would seem to be missing.
        return outcome.result();
    }
    const bool noFirmware = entries.empty();
    tell(progress, 55, "Reading software");
    if (withoutEndSlash(software) != withoutEndSlash(firmware))
    {
        readInventory(client, root, software, InventoryKind::Software, entries, outcome);
    }
    if (noFirmware && !entries.empty())
    {
        outcome.addNoFirmware(client, firmware);
    }
    const std::vector<InventoryEntry> kept = installedOnly(entries);
    SlotFinder slots(client, root.chassis);
    for (std::size_t i = 0; i < kept.size(); ++i)
    {
        tell(progress, 70 + static_cast<int>(i * 30 / kept.size()), "Locating " + text::visible(kept[i].item.name));
        service::ScanItem item = kept[i].item;
        const Slot slot = slots.find(item.id, kept[i].related);
        item.slotNumber = slot.number;
        item.slotType = slot.type;
        items.push_back(item);
    }
    outcome.add(slots.failure());
    KORVAN_LOG(3, kSource) << client.target() << ": " << items.size() << " items of " << entries.size() << " entries";
    return outcome.result();
}
} // namespace redfish
