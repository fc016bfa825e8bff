#include "os_names.h"

namespace
{
constexpr std::uint32_t kUnknownCode = static_cast<std::uint32_t>(-1);

// Display names of all rows come before any key.
std::uint32_t codeOf(const std::vector<PlatformName>& rows, const std::string& text)
{
    for (const PlatformName& row : rows)
    {
        if (text == row.displayName)
        {
            return row.code;
        }
    }
    for (const PlatformName& row : rows)
    {
        if (text == row.key)
        {
            return row.code;
        }
    }
    return kUnknownCode;
}
} // namespace

const std::vector<PlatformName>& OsNames()
{
    static const std::vector<PlatformName> rows = {
        {101, "Windows NT 4", "winnt4"},
        {102, "Windows 2000", "win2000"},
        {103, "Windows XP", "winxp"},
        {104, "Windows 2003", "win2003"},
        {105, "Windows 2003 R2", "win2003r2"},
        {106, "Windows Vista", "winvista"},
        {107, "Windows 2008", "win2008"},
        {108, "Windows 2008 R2", "win2008r2"},
        {109, "Windows PE", "winpe"},
        {110, "Windows 7", "win7"},
        {111, "Windows 8", "win8"},
        {120, "Windows 10", "win10"},
        {121, "Windows 11", "win11"},
        {112, "Windows 2012", "win2012"},
        {113, "Windows 2012 R2", "win2012r2"},
        {114, "Windows 2016", "win2016"},
        {115, "Windows 2019", "win2019"},
        {116, "Windows 2022", "win2022"},
        {117, "Windows 2025", "win2025"},
        {118, "Windows 8.1", "win8.1"},
        {119, "Azure Stack HCI", "azurestackhci"},
        {122, "Hyper-V Server 2012 R2", "hyperv2012r2"},
        {123, "Hyper-V Server 2016", "hyperv2016"},
        {124, "Hyper-V Server 2019", "hyperv2019"},
        {201, "RHEL 3", "rhel3"},
        {202, "RHEL 4", "rhel4"},
        {203, "RHEL 5", "rhel5"},
        {204, "SLES 8", "sles8"},
        {205, "SLES 9", "sles9"},
        {206, "SLES 10", "sles10"},
        {207, "SLES 11", "sles11"},
        {208, "RHEL 6", "rhel6"},
        {209, "RHEL 7", "rhel7"},
        {210, "SLES 12", "sles12"},
        {211, "SLES 15", "sles15"},
        {212, "RHEL 8", "rhel8"},
        {213, "RHEL 9", "rhel9"},
        {301, "VMware ESX 2", "esx2"},
        {302, "VMware ESX 3_4", "esx3_4"},
        {310, "VMware ESXi 4", "esxi4"},
        {311, "VMware ESXi 5.0", "esxi5.0"},
        {311, "VMware ESXi 5.1", "esxi5.1"},
        {312, "VMware ESXi 5.5", "esxi5.5"},
        {313, "VMware ESXi 6.0", "esxi6.0"},
        {314, "VMware ESXi 6.5", "esxi6.5"},
        {315, "VMware ESXi 6.7", "esxi6.7"},
        {401, "RHEV-H 1", "rhevh1"},
        {402, "PLATFORM", "platform"},
        {998, "CENTOS", "centos"},
        {997, "DEBIAN", "debian"},
        {999, "UBUNTU", "ubuntu"},
    };
    return rows;
}

const std::vector<PlatformName>& OsArchNames()
{
    static const std::vector<PlatformName> rows = {
        {0, "None", "none"},
        {1, "32 bit", "x32"},
        {2, "64 bit", "x64"},
    };
    return rows;
}

std::uint32_t GetOsTypeCode(const std::string& text)
{
    return codeOf(OsNames(), text);
}

std::uint32_t GetOsArchCode(const std::string& text)
{
    return codeOf(OsArchNames(), text);
}
