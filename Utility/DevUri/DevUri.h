#pragma once

#include <cstdint>
#include <string>

// A device's or file server's address taken apart. A plain record, used by one thread at a time.
struct DevUri
{
    enum Protocol : std::uint32_t
    {
        kHttp = 0,
        kHttps = 1,
        kFtp = 2,
        kSftp = 3,
        kTftp = 4,
    };

    std::string host; // IPv6 addresses without their brackets
    std::string user;
    std::string password;  // as written; it goes into no log
    std::int32_t port = 0; // 0: none was given
    bool isIpv6 = false;   // the host was written in brackets
    std::string path;      // with its leading "/"
    std::uint32_t protocol = kSftp;
    std::string scheme; // lower case

    // Fills the record from [scheme://][user[:password]@]host[:port][/path]. 1 on success, 0 when there is no host or a "["
    // has no "]". Fields that the text does not decide keep what they held: a record that is parsed twice can carry a
    // port or a protocol over.
    std::int32_t Parse(const std::string& address);

  private:
    std::string takeScheme(const std::string& address);
    std::string takeUser(const std::string& rest);
    std::string takePath(const std::string& hostPart);
    bool takeHost(const std::string& hostPart);
};
