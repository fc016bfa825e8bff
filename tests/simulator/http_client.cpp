#include "simulator/http_client.h"

#include <curl/curl.h>

#include <algorithm>
#include <cctype>
#include <memory>

namespace simulator_tests
{
namespace
{
constexpr std::size_t kKeptBytes = std::size_t{16} << 20U;

std::size_t takeBody(char* data, std::size_t size, std::size_t count, void* target)
{
    auto& answer = *static_cast<Answer*>(target);
    answer.bodyBytes += size * count;
    if (answer.body.size() < kKeptBytes)
    {
        answer.body.append(data, size * count);
    }
    return size * count;
}

std::size_t takeHeader(char* data, std::size_t size, std::size_t count, void* target)
{
    const std::string line(data, size * count);
    const std::size_t colon = line.find(": ");
    if (colon != std::string::npos)
    {
        std::string name = line.substr(0, colon);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
        static_cast<Answer*>(target)->headers[name] = line.substr(colon + 2, line.find('\r') - colon - 2);
    }
    return size * count;
}
} // namespace

Answer request(const std::string& url, const Call& call)
{
    static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
    Answer answer;
    const std::unique_ptr<CURL, void (*)(CURL*)> curl(curl_easy_init(), curl_easy_cleanup);
    std::unique_ptr<curl_slist, void (*)(curl_slist*)> headers(nullptr, curl_slist_free_all);
    answer.transport = started;
    for (const std::string& header : call.headers)
    {
        headers.reset(curl_slist_append(headers.release(), header.c_str()));
    }
    curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_PROXY, "");
    curl_easy_setopt(curl.get(), CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl.get(), CURLOPT_TIMEOUT_MS, call.timeoutMs);
    curl_easy_setopt(curl.get(), CURLOPT_CUSTOMREQUEST, call.method.c_str());
    curl_easy_setopt(curl.get(), CURLOPT_NOBODY, call.method == "HEAD" ? 1L : 0L);
    curl_easy_setopt(curl.get(), CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, takeBody);
    curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &answer);
    curl_easy_setopt(curl.get(), CURLOPT_HEADERFUNCTION, takeHeader);
    curl_easy_setopt(curl.get(), CURLOPT_HEADERDATA, &answer);
    if (!call.user.empty())
    {
        curl_easy_setopt(curl.get(), CURLOPT_HTTPAUTH, CURLAUTH_BASIC);
        curl_easy_setopt(curl.get(), CURLOPT_USERNAME, call.user.c_str());
        curl_easy_setopt(curl.get(), CURLOPT_PASSWORD, call.password.c_str());
    }
    if (!call.body.empty())
    {
        curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDSIZE, static_cast<long>(call.body.size()));
        curl_easy_setopt(curl.get(), CURLOPT_COPYPOSTFIELDS, call.body.c_str());
    }
    if (call.gzip)
    {
        curl_easy_setopt(curl.get(), CURLOPT_ACCEPT_ENCODING, "gzip");
    }
    curl_easy_setopt(curl.get(), CURLOPT_SSL_VERIFYPEER, call.authorityFile.empty() ? 0L : 1L);
    curl_easy_setopt(curl.get(), CURLOPT_SSL_VERIFYHOST, call.authorityFile.empty() ? 0L : 2L);
    if (!call.authorityFile.empty())
    {
        curl_easy_setopt(curl.get(), CURLOPT_CAINFO, call.authorityFile.c_str());
    }
    answer.transport = curl_easy_perform(curl.get());
    curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &answer.status);
    curl_easy_getinfo(curl.get(), CURLINFO_HTTP_VERSION, &answer.httpVersion);
    return answer;
}
} // namespace simulator_tests
