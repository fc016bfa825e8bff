#pragma once

#include "redfish/client.h"
#include "redfish/reply.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace redfish
{
// Where a device sits. Number: decimal, empty when unknown. Type: "0" on the system board, "1" in a slot, empty when
// unknown. A device on the board without a number of its own has the number "0".
struct Slot
{
    std::string number;
    std::string type;

    bool known() const { return !number.empty() || !type.empty(); }
};

// The slot of a PartLocation object (DMTF schema Resource): LocationOrdinalValue, else digits of ServiceLabel.
Slot slotOfPartLocation(const nlohmann::json& partLocation);

// The slot that an item's Id spells out, such as "NIC.Slot.5-1" or "RAID.Integrated.1-1".
Slot slotOfId(const std::string& id);

// Finds the slots of inventory items by following their RelatedItem links over the service; each resource is read at
// most once, and no more of them than a bound. Order: the related device's own slot or location, the PCIeSlots of its
// chassis, the location of a network adapter's controller, the ending of the item's Id.
class SlotFinder
{
  public:
    // `chassisCollection`: the service's own, empty when it has none.
    SlotFinder(Client& client, const std::string& chassisCollection);
    ~SlotFinder();
    SlotFinder(const SlotFinder&) = delete;
    SlotFinder& operator=(const SlotFinder&) = delete;

    Slot find(const std::string& itemId, const std::vector<std::string>& related);

    // The first failure that kept a location from being read; one that the service does not have is none.
    const Reply& failure() const { return failure_; }

  private:
    const nlohmann::json& resource(const std::string& link);
    Slot ofLink(const std::string& link, int depth);
    Slot ofDevice(const nlohmann::json& device, const std::string& link, int depth);
    Slot ofChassisSlots(const nlohmann::json& device, const std::string& link);
    std::vector<std::string> chassisOf(const nlohmann::json& device, const std::string& link);

    Client& client_;
    std::string chassisCollection_;
    std::map<std::string, nlohmann::json> resources_; // by path; null: not readable
    Reply failure_;
};
} // namespace redfish
