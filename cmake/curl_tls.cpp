#include <curl/curl.h>

#include <cstdio>

int main()
{
    const char* const library = curl_version_info(CURLVERSION_NOW)->ssl_version;
    return std::puts(library == nullptr ? "no TLS library" : library) < 0 ? 1 : 0;
}
