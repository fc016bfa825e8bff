#include "redfish/slots.h"

#include "redfish/json.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace redfish
{
namespace
{
constexpr char kSource[] = "framework/redfish/slots";
constexpr std::size_t kMostResources = 512;
constexpr int kDeepestFollowing = 3; // adapter, controller, device
constexpr std::size_t kMostDigits = 6;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The run of digits that begins at `at`, without leading zeros; empty when there is none or it is absurdly long.
std::string digitsAt(const std::string& value, std::size_t at)
{
    std::size_t end = at;
    while (end < value.size() && isDigit(value[end]))
    {
        ++end;
    }
    if (end == at || end - at > kMostDigits)
    {
        return std::string();
    }
    return std::to_string(std::stoul(value.substr(at, end - at)));
}

std::string firstDigits(const std::string& value)
{
    const auto digit = std::find_if(value.begin(), value.end(), isDigit);
    return digitsAt(value, static_cast<std::size_t>(digit - value.begin()));
}

bool saysOnBoard(const std::string& value)
{
    const std::string folded = text::toLower(value);
    for (const char* hint : {"embedded", "integrated", "onboard", "on board"})
    {
        if (folded.find(hint) != std::string::npos)
        {
            return true;
        }
    }
    return false;
}

// The number that follows a word of an Id, a separator between them allowed: "Slot.5", "slot5", "Slot_5".
bool numberAfter(const std::string& folded, const std::string& word, std::string& number)
{
    for (std::size_t at = folded.find(word); at != std::string::npos; at = folded.find(word, at + 1))
    {
        std::size_t next = at + word.size();
        if (next < folded.size() && std::string("._- #").find(folded[next]) != std::string::npos)
        {
            ++next;
        }
        number = digitsAt(folded, next);
        if (!number.empty())
        {
            return true;
        }
    }
    return false;
}

// Only these lead to a place; a BIOS or a manager has none.
bool mayHaveSlot(const std::string& link)
{
    const std::string folded = text::toLower(link);
    for (const char* part : {"pciedevices", "pciefunctions", "networkadapters", "networkinterfaces",
                             "ethernetinterfaces", "storage", "controllers", "processors"})
    {
        if (folded.find(part) != std::string::npos)
        {
            return true;
        }
    }
    return false;
}

std::string withoutTrailingSlash(const std::string& link)
{
    const std::string path = link.substr(0, link.find('#'));
    return path.size() > 1 && path.back() == '/' ? path.substr(0, path.size() - 1) : path;
}

const nlohmann::json& nothing()
{
    static const nlohmann::json kNull;
    return kNull;
}

// The part of a resource that a link's fragment names: a JSON pointer (RFC 6901).
const nlohmann::json& pointed(const nlohmann::json& resource, const std::string& link)
{
    const std::size_t hash = link.find('#');
    const nlohmann::json* step = &resource;
    if (hash == std::string::npos)
    {
        return *step;
    }
    for (const std::string& part : text::split(link.substr(hash + 1), '/'))
    {
        if (part.empty())
        {
            continue;
        }
        const std::string index = step->is_array() ? digitsAt(part, 0) : std::string();
        if (!index.empty() && std::stoul(index) < step->size())
        {
            step = &(*step)[std::stoul(index)];
            continue;
        }
        step = member(*step, part);
        if (step == nullptr)
        {
            return resource;
        }
    }
    return *step;
}

// The devices through which a function, an interface or a controller is built in.
std::vector<std::string> furtherLinks(const nlohmann::json& device)
{
    std::vector<std::string> next;
    for (const char* name : {"PCIeDevices", "PCIeDevice", "NetworkAdapter", "NetworkAdapters", "PCIeFunctions"})
    {
        const std::vector<std::string> links = linksOf(member(device, {"Links", name}));
        next.insert(next.end(), links.begin(), links.end());
    }
    return next;
}

std::vector<const nlohmann::json*> controllersOf(const nlohmann::json& device)
{
    std::vector<const nlohmann::json*> found;
    for (const char* name : {"Controllers", "StorageControllers"})
    {
        const nlohmann::json* list = member(device, name);
        if (list == nullptr || !list->is_array())
        {
            continue;
        }
        for (const nlohmann::json& controller : *list)
        {
            if (controller.is_object())
            {
                found.push_back(&controller);
            }
        }
    }
    return found;
}

Slot firstOf(const nlohmann::json& device, std::initializer_list<std::initializer_list<const char*>> paths)
{
    for (const auto& path : paths)
    {
        const nlohmann::json* location = member(device, path);
        Slot slot = location == nullptr ? Slot() : slotOfPartLocation(*location);
        if (slot.known())
        {
            return slot;
        }
    }
    return Slot();
}
} // namespace

Slot slotOfPartLocation(const nlohmann::json& partLocation)
{
    Slot slot;
    const std::string type = textAt(partLocation, "LocationType");
    const std::string label = textAt(partLocation, "ServiceLabel");
    const nlohmann::json* ordinal = member(partLocation, "LocationOrdinalValue");
    if (ordinal != nullptr && ordinal->is_number_unsigned())
    {
        slot.number = textOf(ordinal);
    }
    if (type == "Embedded" || type == "Backplane" || (type.empty() && saysOnBoard(label)))
    {
        slot.type = "0";
    }
    else if (!type.empty() || !label.empty() || !slot.number.empty())
    {
        slot.type = "1";
    }
    if (slot.number.empty())
    {
        slot.number = firstDigits(label);
    }
    if (slot.number.empty() && slot.type == "0")
    {
        slot.number = "0";
    }
    return slot.number.empty() ? Slot() : slot;
}

Slot slotOfId(const std::string& id)
{
    const std::string folded = text::toLower(id);
    Slot slot;
    if (numberAfter(folded, "slot", slot.number))
    {
        slot.type = "1";
        return slot;
    }
    for (const char* word : {"embedded", "integrated", "onboard"})
    {
        if (numberAfter(folded, word, slot.number))
        {
            slot.type = "0";
            return slot;
        }
    }
    return Slot();
}

SlotFinder::SlotFinder(Client& client, const std::string& chassisCollection)
    : client_(client), chassisCollection_(chassisCollection)
{
}

SlotFinder::~SlotFinder() = default;

Slot SlotFinder::find(const std::string& itemId, const std::vector<std::string>& related)
{
    for (const std::string& link : related)
    {
        Slot slot = mayHaveSlot(link) ? ofLink(link, 0) : Slot();
        if (slot.known())
        {
            return slot;
        }
    }
    return slotOfId(itemId);
}

const nlohmann::json& SlotFinder::resource(const std::string& link)
{
    const std::string path = requestPath(link);
    const std::string key = withoutTrailingSlash(path);
    const auto known = resources_.find(key);
    if (known != resources_.end())
    {
        return known->second;
    }
    if (path.empty() || resources_.size() >= kMostResources || !client_.usable())
    {
        return nothing();
    }
    nlohmann::json document;
    const Reply reply = client_.getJson(path, document);
    if (!reply.ok())
    {
        KORVAN_LOG(2, kSource) << reply.result.messageText();
        if (reply.fault != Fault::Missing && failure_.ok())
        {
            failure_ = reply;
        }
    }
    return resources_.emplace(key, std::move(document)).first->second;
}

Slot SlotFinder::ofLink(const std::string& link, int depth)
{
    const nlohmann::json& whole = resource(link);
    if (!whole.is_object())
    {
        return Slot();
    }
    const nlohmann::json& part = pointed(whole, link);
    const Slot slot = part.is_object() ? ofDevice(part, link, depth) : Slot();
    return slot.known() || &part == &whole ? slot : ofDevice(whole, link, depth);
}

Slot SlotFinder::ofDevice(const nlohmann::json& device, const std::string& link, int depth)
{
    Slot own = firstOf(device, {{"Slot", "Location", "PartLocation"}, {"Location", "PartLocation"}});
    if (own.known())
    {
        return own;
    }
    Slot inChassis = ofChassisSlots(device, link);
    if (inChassis.known() || depth >= kDeepestFollowing)
    {
        return inChassis;
    }
    for (const std::string& target : furtherLinks(device))
    {
        const bool itself = withoutTrailingSlash(target) == withoutTrailingSlash(link);
        Slot slot = itself ? Slot() : ofLink(target, depth + 1);
        if (slot.known())
        {
            return slot;
        }
    }
    for (const nlohmann::json* controller : controllersOf(device))
    {
        Slot slot = ofDevice(*controller, link, depth + 1);
        if (slot.known())
        {
            return slot;
        }
    }
    return Slot();
}

// The chassis that the device names; else, for only PCIeSlots name the device the other way round, the one under whose
// path the device lies, then all of them.
std::vector<std::string> SlotFinder::chassisOf(const nlohmann::json& device, const std::string& link)
{
    std::vector<std::string> named = linksOf(member(device, {"Links", "Chassis"}));
    const std::size_t part = link.find("/PCIeDevices/");
    if (!named.empty() || part == std::string::npos)
    {
        return named;
    }
    std::vector<std::string> all = chassisCollection_.empty()
                                       ? std::vector<std::string>()
                                       : linksOf(member(resource(chassisCollection_), "Members"));
    const std::string above = link.substr(0, part);
    if (std::find(all.begin(), all.end(), above) != all.end())
    {
        return {above};
    }
    return all;
}

// DMTF schema PCIeSlots: the chassis lists its slots, each with the devices in it.
Slot SlotFinder::ofChassisSlots(const nlohmann::json& device, const std::string& link)
{
    const std::string wanted = withoutTrailingSlash(link);
    for (const std::string& chassis : chassisOf(device, link))
    {
        const std::string list = linkOf(member(resource(chassis), "PCIeSlots"));
        const nlohmann::json* slots = list.empty() ? nullptr : member(resource(list), "Slots");
        if (slots == nullptr || !slots->is_array())
        {
            continue;
        }
        for (const nlohmann::json& slot : *slots)
        {
            const std::vector<std::string> devices = linksOf(member(slot, {"Links", "PCIeDevice"}));
            const bool holds = std::any_of(devices.begin(), devices.end(),
                                           [&wanted](const std::string& candidate)
                                           { return withoutTrailingSlash(candidate) == wanted; });
            const nlohmann::json* location = holds ? member(slot, {"Location", "PartLocation"}) : nullptr;
            if (location != nullptr)
            {
                return slotOfPartLocation(*location);
            }
        }
    }
    return Slot();
}
} // namespace redfish
