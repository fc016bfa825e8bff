#include "connect/network_driver.h"
#include "text/text.h"

#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace network_driver
{
namespace
{
constexpr std::size_t kVersionLength = sizeof(ethtool_drvinfo::version) - 1;

// A field that need not end with a zero. Fillers become empty.
template <std::size_t size>
std::string fieldText(const char (&field)[size])
{
    const std::string value = text::trim(std::string(field, ::strnlen(field, size)));
    return value == "N/A" ? std::string() : value;
}

// Drivers without a version of their own give the kernel's.
bool isKernelRelease(const std::string& version)
{
    utsname names = {};
    return ::uname(&names) == 0 && version == std::string(names.release).substr(0, kVersionLength);
}
} // namespace

bool ask(const std::string& interface, Facts& facts)
{
    ifreq request = {};
    if (interface.empty() || interface.size() >= sizeof(request.ifr_name))
    {
        return false;
    }
    const int control = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (control < 0)
    {
        return false;
    }
    ethtool_drvinfo info = {};
    info.cmd = ETHTOOL_GDRVINFO;
    std::copy(interface.begin(), interface.end(), request.ifr_name);
    request.ifr_data = reinterpret_cast<char*>(&info);
    const bool answered = ::ioctl(control, SIOCETHTOOL, &request) == 0;
    ::close(control);
    if (!answered)
    {
        return false;
    }
    facts.firmware = fieldText(info.fw_version);
    facts.version = fieldText(info.version);
    if (isKernelRelease(facts.version))
    {
        facts.version.clear();
    }
    return true;
}
} // namespace network_driver
