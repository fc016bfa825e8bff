#include "redfish/collection.h"

#include "redfish/failure.h"
#include "redfish/json.h"
#include "xmodule_log.h"

#include <nlohmann/json.hpp>

#include <set>

namespace redfish
{
namespace
{
constexpr char kSource[] = "framework/redfish/collection";
constexpr std::size_t kMostMembers = 5000;
constexpr std::size_t kMostPages = 500;

// A member that carries data, not just "@odata.id" and other annotations (DSP0266, "Payload annotations").
bool isResource(const nlohmann::json& member)
{
    if (!member.is_object() || redfish::member(member, "@odata.id") == nullptr)
    {
        return false;
    }
    for (const auto& item : member.items())
    {
        if (item.key().find('@') == std::string::npos)
        {
            return true;
        }
    }
    return false;
}

class CollectionReader
{
  public:
    CollectionReader(Client& client, Expansion& expansion, const std::function<bool(const nlohmann::json&)>& take)
        : client_(client), expansion_(expansion), take_(take)
    {
    }

    Reply read(const std::string& path)
    {
        std::string page = path;
        bool first = true;
        while (!page.empty() && more_)
        {
            if (!pages_.insert(page).second)
            {
                // Whatever was to come has been seen.
                KORVAN_LOG(2, kSource) << client_.target() << ": " << path << ": the pages go in a circle";
                break;
            }
            if (pages_.size() > kMostPages)
            {
                return tooMuch(path, "more than " + std::to_string(kMostPages) + " pages");
            }
            nlohmann::json document;
            const Reply reply = first ? firstPage(page, document) : client_.getJson(page, document);
            if (!reply.ok())
            {
                return failure_.ok() ? reply : failure_;
            }
            const nlohmann::json* members = member(document, "Members");
            if (members != nullptr && members->is_array() && seen_.size() + members->size() > kMostMembers)
            {
                return tooMuch(path, "more than " + std::to_string(kMostMembers) + " members");
            }
            takeMembers(members);
            page = linkOf(member(document, "Members@odata.nextLink"));
            first = false;
        }
        return failure_.ok() && !taken_ ? missing_ : failure_;
    }

  private:
    Reply firstPage(const std::string& path, nlohmann::json& document)
    {
        const std::string query = expansion_.query();
        if (!query.empty() && path.find('?') == std::string::npos)
        {
            Reply reply = client_.getJson(path + query, document);
            if (reply.ok() || !client_.usable())
            {
                return reply;
            }
            KORVAN_LOG(2, kSource) << client_.target() << ": $expand is advertised but fails; members are read singly";
        }
        const bool tried = !query.empty();
        Reply plain = client_.getJson(path, document);
        if (tried && plain.ok())
        {
            expansion_.giveUp();
        }
        return plain;
    }

    Reply tooMuch(const std::string& path, const std::string& what) const
    {
        return unreadableFailure("the collection has " + what, client_.target(), "reading " + path);
    }

    void takeMembers(const nlohmann::json* members)
    {
        if (members == nullptr || !members->is_array())
        {
            return;
        }
        for (const nlohmann::json& entry : *members)
        {
            const std::string link = entry.is_object() ? linkOf(&entry) : std::string();
            if (link.empty() || !seen_.insert(link).second)
            {
                continue;
            }
            more_ = more_ && client_.usable() && takeMember(entry, link);
            if (!more_)
            {
                return;
            }
        }
    }

    bool takeMember(const nlohmann::json& entry, const std::string& link)
    {
        if (isResource(entry))
        {
            taken_ = true;
            return take_(entry);
        }
        nlohmann::json resource;
        const Reply reply = client_.getJson(link, resource);
        if (reply.ok())
        {
            taken_ = true;
            return take_(resource);
        }
        KORVAN_LOG(2, kSource) << reply.result.messageText();
        Reply& kept = reply.fault == Fault::Missing ? missing_ : failure_;
        kept = kept.ok() ? reply : kept;
        return client_.usable();
    }

    Client& client_;
    Expansion& expansion_;
    const std::function<bool(const nlohmann::json&)>& take_;
    std::set<std::string> pages_;
    std::set<std::string> seen_;
    Reply failure_;
    Reply missing_; // the first member that the service does not have
    bool taken_ = false;
    bool more_ = true;
};
} // namespace

void Expansion::advertise(const nlohmann::json& serviceRoot)
{
    const nlohmann::json* feature = member(serviceRoot, {"ProtocolFeaturesSupported", "ExpandQuery"});
    if (feature == nullptr)
    {
        return;
    }
    if (flagAt(*feature, "NoLinks", false))
    {
        query_ = "?$expand=.";
    }
    else if (flagAt(*feature, "ExpandAll", false))
    {
        query_ = "?$expand=*";
    }
    works_ = !query_.empty();
}

Reply readCollection(Client& client, const std::string& path, Expansion& expansion,
                     const std::function<bool(const nlohmann::json&)>& take)
{
    return CollectionReader(client, expansion, take).read(path);
}
} // namespace redfish
