#include "connect/local_inventory.h"

#include "connect/os_release.h"
#include "files/files.h"
#include "redfish/machine_type.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include <algorithm>
#include <set>
#include <sys/utsname.h>
#include <vector>

namespace connect
{
namespace
{
namespace fs = boost::filesystem;

constexpr char kSource[] = "framework/connect/local_inventory";
constexpr char kDmi[] = "/sys/class/dmi/id/";
constexpr char kNetwork[] = "/sys/class/net";
constexpr char kModules[] = "/sys/module/";
constexpr std::size_t kLargestAttribute = 4096; // a page, sysfs's own limit
constexpr std::size_t kLargestOsRelease = 65536;
constexpr std::size_t kMostDrivers = 256;

// The file as one trimmed text; empty, and logged, when it cannot be read.
std::string attribute(const std::string& path, std::size_t limit = kLargestAttribute)
{
    std::string content;
    if (files::read(path, limit, content) != files::ReadOutcome::Ok)
    {
        KORVAN_LOG(2, kSource) << "localhost: " << path << " cannot be read; what it says stays unknown";
        return std::string();
    }
    return text::trim(content);
}

// "07/24/2026", as SMBIOS has it (DMTF DSP0134, BIOS Information), to "2026-07-24".
std::string isoDate(const std::string& date)
{
    const bool american = date.size() == 10 && date[2] == '/' && date[5] == '/';
    return american ? date.substr(6) + "-" + date.substr(0, 2) + "-" + date.substr(3, 2) : std::string();
}

void readMachine(const std::string& root, service::UpdateScanReport& report)
{
    std::vector<std::string> candidates;
    for (const char* name : {"product_sku", "product_name", "product_family", "product_version", "board_name"})
    {
        candidates.push_back(attribute(root + kDmi + name));
    }
    report.SetMT(redfish::firstMachineType(candidates));
    if (report.GetMT().empty())
    {
        KORVAN_LOG(2, kSource) << "localhost: no machine type in " << root << kDmi << "; state it with --mt";
    }
}

void readBios(const std::string& root, service::UpdateScanReport& report)
{
    const std::string version = attribute(root + kDmi + "bios_version");
    if (version.empty())
    {
        return;
    }
    service::ScanItem item;
    item.id = "bios";
    item.name = "System firmware (UEFI)";
    item.softwareId = report.GetMT().empty() ? "UEFI" : "UEFI-" + report.GetMT();
    item.version = version;
    item.category = "Firmware";
    item.classification = "UEFI";
    item.manufacturer = attribute(root + kDmi + "bios_vendor");
    item.releaseDate = isoDate(attribute(root + kDmi + "bios_date"));
    item.slotType = "0";
    item.slotNumber = "0";
    report.AddScanResult(item);
}

void readOperatingSystem(const std::string& root, service::UpdateScanReport& report)
{
    std::string content;
    for (const char* name : {"/etc/os-release", "/usr/lib/os-release"})
    {
        if (files::read(root + name, kLargestOsRelease, content) == files::ReadOutcome::Ok)
        {
            break;
        }
    }
    const OsRelease release = readOsRelease(content);
    report.SetOS(release.key);
    report.SetOSMinorVersion(release.minorVersion);
    if (release.key.empty())
    {
        KORVAN_LOG(2, kSource) << "localhost: the operating system is not a known one; state it with --ostype";
    }
}

// The program's own word size says little on a 64-bit kernel; the kernel's machine name does.
void readArchitecture(service::UpdateScanReport& report)
{
    utsname names = {};
    const std::string machine = uname(&names) == 0 ? names.machine : "";
    const bool narrow = machine.size() == 4 && machine[0] == 'i' && machine.substr(2) == "86";
    report.SetArch(narrow ? "x32" : (machine.find("64") != std::string::npos ? "x64" : ""));
    if (report.GetArch().empty())
    {
        KORVAN_LOG(2, kSource) << "localhost: unknown architecture " << machine << "; state it with --osarch";
    }
}

std::set<std::string> networkDrivers(const std::string& root)
{
    std::set<std::string> drivers;
    boost::system::error_code error;
    for (fs::directory_iterator entry(root + kNetwork, error), end; !error && entry != end; entry.increment(error))
    {
        boost::system::error_code noDriver;
        const fs::path driver = fs::read_symlink(entry->path() / "device" / "driver", noDriver);
        if (!noDriver && drivers.size() < kMostDrivers)
        {
            drivers.insert(driver.filename().string());
        }
    }
    if (error)
    {
        KORVAN_LOG(2, kSource) << "localhost: " << root << kNetwork << " cannot be read: " << error.message();
    }
    return drivers;
}

void readDrivers(const std::string& root, service::UpdateScanReport& report)
{
    for (const std::string& driver : networkDrivers(root))
    {
        std::string module = driver;
        std::replace(module.begin(), module.end(), '-', '_');
        std::string versionFile = root + kModules;
        versionFile.append(module).append("/version");
        service::ScanItem item;
        item.id = "driver-" + driver;
        item.name = driver + " network driver";
        item.softwareId = driver;
        item.version = attribute(versionFile);
        item.category = "Driver";
        item.classification = "Network";
        report.AddScanResult(item);
    }
}
} // namespace

KorvanResult readLocalInventory(const std::string& root, service::UpdateScanReport& report)
{
    readMachine(root, report);
    readBios(root, report);
    readOperatingSystem(root, report);
    readArchitecture(report);
    readDrivers(root, report);
    KORVAN_LOG(3, kSource) << "localhost: machine type \"" << report.GetMT() << "\", system \"" << report.GetOS()
                           << "\", " << report.GetScanResults().size() << " items";
    return KorvanResult();
}
} // namespace connect
