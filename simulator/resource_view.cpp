#include "resource_view.h"

#include "redfish_error.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>

namespace simulator
{
namespace
{
using nlohmann::json;

constexpr const char* kMembers = "Members";
constexpr const char* kCount = "Members@odata.count";
constexpr const char* kNextLink = "Members@odata.nextLink";
constexpr const char* kId = "@odata.id";
constexpr const char* kGenerated = "/Generated-";
constexpr std::size_t kWrongCountBy = 7;

bool isReference(const json& value)
{
    return value.is_object() && value.size() == 1 && value.contains(kId) && value[kId].is_string();
}

void expandReference(json& value, const ResourceStore& store)
{
    if (!isReference(value))
    {
        return;
    }
    const std::string* text = store.find(value[kId].get<std::string>());
    if (text != nullptr)
    {
        value = json::parse(*text, nullptr, false);
    }
}

// One level, without the resources under Links: "." (DSP0266, "$expand").
void expandOneLevel(json& resource, const ResourceStore& store)
{
    for (auto& item : resource.items())
    {
        if (item.key() == "Links")
        {
            continue;
        }
        if (item.value().is_array())
        {
            for (json& element : item.value())
            {
                expandReference(element, store);
            }
        }
        else
        {
            expandReference(item.value(), store);
        }
    }
}

std::size_t skipOf(const RequestTarget& target)
{
    std::size_t skip = 0;
    const auto found = target.query.find("$skip");
    if (found != target.query.end())
    {
        std::from_chars(found->second.data(), found->second.data() + found->second.size(), skip);
    }
    return skip;
}

void cutPage(json& collection, const Behaviour& behaviour, const RequestTarget& target)
{
    const json members = collection[kMembers];
    const std::size_t total = members.size();
    const std::size_t first = std::min(skipOf(target), total);
    const std::size_t pageSize = behaviour.pageSize == 0 ? total : behaviour.pageSize;
    const std::size_t last = std::min(first + pageSize, total);

    collection.erase(kCount);
    if (behaviour.membersCount != MembersCount::Missing)
    {
        collection[kCount] = total + (behaviour.membersCount == MembersCount::Wrong ? kWrongCountBy : 0);
    }
    collection[kMembers] = json::array();
    for (std::size_t i = first; i < last; ++i)
    {
        collection[kMembers].push_back(members[i]);
    }
    if (last < total || (behaviour.cyclicPaging && total != 0))
    {
        std::string link = target.path + "?$skip=" + std::to_string(last < total ? last : 0);
        const auto expand = target.query.find("$expand");
        if (expand != target.query.end())
        {
            link += "&$expand=" + expand->second;
        }
        collection[kNextLink] = link;
    }
}

json generatedItem(const std::string& path, const std::string& id)
{
    return {{kId, path},         {"@odata.type", "#SoftwareInventory.v1_2_3.SoftwareInventory"},
            {"Id", id},          {"Name", "Generated item"},
            {"SoftwareId", id},  {"Version", "1.0." + id.substr(id.find('-') + 1)},
            {"Updateable", true}};
}
} // namespace

Reply showResource(const json& resource, const ResourceStore& store, const Behaviour& behaviour,
                   const RequestTarget& target)
{
    const bool wantsExpand = target.query.count("$expand") != 0;
    if (wantsExpand && behaviour.expand == Expand::Refused)
    {
        return redfishError(501);
    }
    json shown = resource;
    if (shown.contains(kMembers) && shown[kMembers].is_array())
    {
        cutPage(shown, behaviour, target);
    }
    if (wantsExpand && behaviour.expand != Expand::Ignored)
    {
        expandOneLevel(shown, store);
    }
    Reply reply;
    reply.body = shown.dump(-1, ' ', false, json::error_handler_t::replace);
    if (wantsExpand && behaviour.expand == Expand::BrokenJson)
    {
        reply.body.resize(reply.body.size() - reply.body.size() / 3);
    }
    return reply;
}

Reply hugeCollection(const std::string& path, std::uint64_t members, MemberForm form)
{
    Reply reply;
    reply.body = "{\"@odata.id\":" + json(path).dump(-1, ' ', false, json::error_handler_t::replace) +
                 ",\"@odata.type\":\"#SoftwareInventoryCollection.SoftwareInventoryCollection\","
                 "\"Name\":\"Firmware Inventory\",\"Members@odata.count\":" +
                 std::to_string(members) + ",\"Members\":[";
    auto next = std::make_shared<std::uint64_t>(1);
    reply.more = [path, members, form, next]
    {
        constexpr std::size_t kPieceBytes = 32768;
        std::string piece;
        while (*next <= members && piece.size() < kPieceBytes)
        {
            const std::string id = "Generated-" + std::to_string(*next);
            const std::string itemPath = path + "/" + id;
            const json item = form == MemberForm::Expanded ? generatedItem(itemPath, id) : json{{kId, itemPath}};
            piece += *next == 1 ? "" : ",";
            piece += item.dump(-1, ' ', false, json::error_handler_t::replace);
            ++*next;
        }
        if (piece.size() < kPieceBytes && *next == members + 1)
        {
            piece += "]}";
            ++*next;
        }
        return piece;
    };
    return reply;
}

std::string generatedMember(const std::string& path)
{
    const std::size_t place = path.rfind(kGenerated);
    if (place == std::string::npos ||
        path.find_first_not_of("0123456789", place + std::strlen(kGenerated)) != std::string::npos)
    {
        return "";
    }
    return generatedItem(path, path.substr(place + 1)).dump(-1, ' ', false, json::error_handler_t::replace);
}
} // namespace simulator
