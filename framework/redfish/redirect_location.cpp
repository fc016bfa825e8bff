#include "redfish/redirect_location.h"

#include "text/text.h"

#include <curl/curl.h>

namespace redfish
{
namespace
{
struct UrlHandle
{
    UrlHandle() : url(curl_url()) {}
    ~UrlHandle() { curl_url_cleanup(url); }
    UrlHandle(const UrlHandle&) = delete;
    UrlHandle& operator=(const UrlHandle&) = delete;

    std::string part(CURLUPart which, unsigned int flags) const
    {
        char* value = nullptr;
        if (curl_url_get(url, which, &value, flags) != CURLUE_OK || value == nullptr)
        {
            return std::string();
        }
        std::string result(value);
        curl_free(value);
        return result;
    }

    CURLU* url;
};

std::string originOf(const UrlHandle& url)
{
    return url.part(CURLUPART_SCHEME, 0) + "://" + text::toLower(url.part(CURLUPART_HOST, 0)) + ":" +
           url.part(CURLUPART_PORT, CURLU_DEFAULT_PORT);
}
} // namespace

void resolveLocation(const std::string& requestUrl, const std::string& location, Exchange& exchange)
{
    if (location.empty())
    {
        return;
    }
    const UrlHandle base;
    const UrlHandle target;
    if (curl_url_set(base.url, CURLUPART_URL, requestUrl.c_str(), 0) != CURLUE_OK ||
        curl_url_set(target.url, CURLUPART_URL, requestUrl.c_str(), 0) != CURLUE_OK ||
        curl_url_set(target.url, CURLUPART_URL, location.c_str(), CURLU_URLENCODE) != CURLUE_OK ||
        originOf(base) != originOf(target))
    {
        exchange.leadsElsewhere = true;
        return;
    }
    const std::string query = target.part(CURLUPART_QUERY, 0);
    exchange.location = target.part(CURLUPART_PATH, 0) + (query.empty() ? "" : "?" + query);
}
} // namespace redfish
