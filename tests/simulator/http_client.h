#pragma once

#include <map>
#include <string>
#include <vector>

namespace simulator_tests
{
struct Call
{
    std::string method = "GET";
    std::string user = "admin";
    std::string password = "Secret-1"; // with an empty user, no login is sent
    std::vector<std::string> headers;
    std::string body;
    std::string authorityFile; // empty: the certificate is not checked
    bool gzip = false;
    long timeoutMs = 5000;
};

struct Answer
{
    int transport = 0; // a CURLcode
    long status = 0;
    std::string body; // at most the first 16 MiB are kept
    std::size_t bodyBytes = 0;
    std::map<std::string, std::string> headers; // names in lower case
    long httpVersion = 0;
};

// One request on a connection of its own; redirects are not followed.
Answer request(const std::string& url, const Call& call = {});
} // namespace simulator_tests
