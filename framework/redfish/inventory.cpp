#include "redfish/inventory.h"

#include "redfish/json.h"
#include "redfish/machine_type.h"
#include "text/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>
#include <tuple>
#include <utility>

namespace redfish
{
namespace
{
constexpr char kInstalled[] = "installed";
constexpr char kCurrent[] = "current";
constexpr char kPrevious[] = "previous";
constexpr std::size_t kMostRelated = 16;

std::string lastSegment(const std::string& link)
{
    const std::string path = link.substr(0, link.find('#'));
    const std::size_t end = path.find_last_not_of('/');
    if (end == std::string::npos)
    {
        return std::string();
    }
    return path.substr(0, end + 1).substr(path.rfind('/', end) + 1);
}

std::string normalizedId(const std::string& id, std::string& bank)
{
    const std::string folded = text::toLower(id);
    std::string rest = id;
    for (const char* name : {kInstalled, kCurrent, kPrevious})
    {
        const std::string prefix = std::string(name) + "-";
        if (text::startsWith(folded, prefix))
        {
            bank = name;
            rest = id.substr(prefix.size());
            break;
        }
    }
    // Ids with a bank often go on with component and version: "Installed-159-1.6.5__BIOS.Setup.1-1".
    const std::size_t mark = bank.empty() ? std::string::npos : rest.find("__");
    return mark == std::string::npos || mark + 2 >= rest.size() ? rest : rest.substr(mark + 2);
}

std::string versionOf(const nlohmann::json& resource)
{
    const std::string version = textAt(resource, "Version");
    const std::string folded = text::toLower(version);
    const bool filler = folded == "ff" || folded == "0xff" || folded == "n/a" || folded == "na" || folded == "none" ||
                        folded == "null" || folded == "undefined" || folded == "unknown" || folded == "-" ||
                        folded == "not available" || folded == "not applicable" || folded == "not specified";
    return filler ? std::string() : version;
}

std::string releaseDateOf(const nlohmann::json& resource)
{
    const std::string date = textAt(resource, "ReleaseDate");
    const bool real = date.size() >= 10 && date[4] == '-' && date[7] == '-' && !text::startsWith(date, "000");
    return real ? date : std::string();
}

bool contains(const std::string& folded, std::initializer_list<const char*> words)
{
    return std::any_of(words.begin(), words.end(),
                       [&folded](const char* word) { return folded.find(word) != std::string::npos; });
}

// What sort of component it is, by what it is related to and by its names; empty when nothing tells.
std::string classificationOf(const service::ScanItem& item, const std::vector<std::string>& related)
{
    for (const std::string& link : related)
    {
        const std::string folded = text::toLower(link);
        if (contains(folded, {"networkadapters", "networkinterfaces", "ethernetinterfaces"}))
        {
            return "Network";
        }
        if (contains(folded, {"/storage", "/drives"}))
        {
            return "Storage";
        }
        if (contains(folded, {"powersupplies"}))
        {
            return "PSU";
        }
        if (contains(folded, {"/bios"}))
        {
            return "UEFI";
        }
        if (contains(folded, {"/managers/"}))
        {
            return "BMC";
        }
    }
    const std::string names = text::toLower(item.id + " " + item.name);
    const std::vector<std::pair<const char*, const char*>> hints = {
        {"bios", "UEFI"},    {"uefi", "UEFI"},     {"bmc", "BMC"}, {"nic", "Network"},     {"ethernet", "Network"},
        {"raid", "Storage"}, {"drive", "Storage"}, {"psu", "PSU"}, {"power supply", "PSU"}};
    for (const auto& hint : hints)
    {
        if (item.category != "Driver" && contains(names, {hint.first}))
        {
            return hint.second;
        }
    }
    return std::string();
}

std::string categoryOf(InventoryKind kind, const service::ScanItem& item)
{
    if (kind == InventoryKind::Firmware)
    {
        return "Firmware";
    }
    return contains(text::toLower(item.id + " " + item.name), {"driver"}) ? "Driver" : "Software";
}
} // namespace

bool readInventoryItem(const nlohmann::json& resource, InventoryKind kind, InventoryEntry& entry)
{
    service::ScanItem item;
    item.id = textAt(resource, "Id");
    if (item.id.empty())
    {
        item.id = lastSegment(linkOf(&resource));
    }
    item.name = textAt(resource, "Name");
    const std::string id = normalizedId(item.id, entry.bank);
    item.softwareId = textAt(resource, "SoftwareId");
    if (item.softwareId.empty() || item.softwareId == "0")
    {
        item.softwareId = id.empty() ? item.name : id;
    }
    if (item.softwareId.empty())
    {
        return false;
    }
    item.name = item.name.empty() ? item.softwareId : item.name;
    item.version = versionOf(resource);
    item.category = categoryOf(kind, item);
    item.manufacturer = textAt(resource, "Manufacturer");
    item.releaseDate = releaseDateOf(resource);
    item.updateable = flagAt(resource, "Updateable", true);
    item.backupBank = textOf(member(resource, {"Status", "State"})) == "StandbySpare";
    entry.component = item.softwareId + "\n" + id;
    entry.related = linksOf(member(resource, "RelatedItem"));
    entry.related.resize(std::min(entry.related.size(), kMostRelated));
    item.classification = classificationOf(item, entry.related);
    entry.item = std::move(item);
    return true;
}

std::vector<InventoryEntry> installedOnly(const std::vector<InventoryEntry>& entries)
{
    std::set<std::string> installed;
    for (const InventoryEntry& entry : entries)
    {
        if (entry.bank == kInstalled)
        {
            installed.insert(entry.component);
        }
    }
    std::vector<InventoryEntry> kept;
    std::set<std::tuple<std::string, std::string, std::string, std::string, bool>> seen;
    for (const InventoryEntry& entry : entries)
    {
        const bool replaced = entry.bank == kCurrent && installed.count(entry.component) != 0;
        const service::ScanItem& item = entry.item;
        if (entry.bank != kPrevious && !replaced &&
            seen.insert({item.id, item.softwareId, item.version, item.name, item.backupBank}).second)
        {
            kept.push_back(entry);
        }
    }
    return kept;
}
} // namespace redfish
