#include "redfish_error.h"

#include <nlohmann/json.hpp>

namespace simulator
{
namespace
{
struct Known
{
    unsigned status;
    const char* messageId;
    const char* message;
};

constexpr Known kKnown[] = {
    {400, "Base.1.4.0.MalformedJSON", "The request could not be understood."},
    {401, "Base.1.4.0.NoValidSession", "There is no valid session or login with the request."},
    {403, "Base.1.4.0.InsufficientPrivilege", "The account may not do this."},
    {404, "Base.1.4.0.ResourceMissingAtURI", "There is no resource at this address."},
    {405, "Base.1.4.0.OperationNotAllowed", "The method is not allowed on this resource."},
    {413, "Base.1.4.0.GeneralError", "The request is too large."},
    {414, "Base.1.4.0.GeneralError", "The address is too long."},
    {429, "Base.1.4.0.ServiceTemporarilyUnavailable", "Too many requests; try again later."},
    {431, "Base.1.4.0.GeneralError", "The headers are too large."},
    {501, "Base.1.4.0.QueryNotSupported", "Query parameters are not supported."},
    {503, "Base.1.4.0.ServiceTemporarilyUnavailable", "The service is busy; try again later."},
};

Reply messageReply(unsigned status, nlohmann::json info)
{
    Reply reply;
    reply.status = status;
    const nlohmann::json body = {{"error",
                                  {{"code", info.at("MessageId")},
                                   {"message", info.at("Message")},
                                   {"@Message.ExtendedInfo", nlohmann::json::array({info})}}}};
    reply.body = body.dump();
    return reply;
}
} // namespace

Reply redfishError(unsigned status, const std::string& messageId, const std::string& message)
{
    return messageReply(status, {{"@odata.type", "#Message.v1_0_8.Message"},
                                 {"MessageId", messageId},
                                 {"Message", message},
                                 {"Severity", "Critical"},
                                 {"Resolution", "None."}});
}

Reply redfishError(unsigned status)
{
    for (const Known& known : kKnown)
    {
        if (known.status == status)
        {
            return redfishError(status, known.messageId, known.message);
        }
    }
    return redfishError(status, "Base.1.4.0.GeneralError", "The request failed.");
}

Reply passwordChangeRequired(const std::string& accountPath)
{
    return messageReply(403, {{"@odata.type", "#Message.v1_0_8.Message"},
                              {"MessageId", "Base.1.4.0.PasswordChangeRequired"},
                              {"Message", "The password must be changed before anything else: " + accountPath},
                              {"MessageArgs", nlohmann::json::array({accountPath})},
                              {"Severity", "Critical"},
                              {"Resolution", "Change the password of the account."}});
}
} // namespace simulator
