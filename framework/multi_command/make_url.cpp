#include "nova/server_info.h"

namespace nova
{
std::string make_url(const ServerInfo& server)
{
    std::string url = (server.scheme.empty() ? std::string("https") : server.scheme) + "://";
    if (!server.user.empty() || !server.password.empty())
    {
        url += server.user;
        if (!server.password.empty())
        {
            url += ":" + server.password;
        }
        url += "@";
    }
    const bool ipv6 = server.host.find(':') != std::string::npos;
    url += ipv6 ? "[" + server.host + "]" : server.host;
    if (server.port != 0)
    {
        url += ":" + std::to_string(server.port);
    }
    return url;
}
} // namespace nova
