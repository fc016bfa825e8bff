#include "connect/local_inventory.h"

#include "connect/smbios.h"
#include "connect/windows_release.h"
#include "files/files.h"
#include "redfish/machine_type.h"
#include "text/text.h"
#include "text/wide_text_win32.h"
#include "xmodule_log.h"

#include <windows.h>

#include <devguid.h>
#include <setupapi.h>
#include <winternl.h>

#include <cstring>
#include <map>
#include <vector>

namespace connect
{
namespace
{
constexpr char kSource[] = "framework/connect/local_inventory";
constexpr DWORD kSmbiosProvider = 0x52534D42;  // "RSMB" (GetSystemFirmwareTable)
constexpr std::size_t kSmbiosHeaderLength = 8; // of RawSMBIOSData: calling method, version, revision, length
constexpr std::size_t kLargestTable = std::size_t{1} << 20U;
constexpr std::size_t kMostDrivers = 256;
constexpr char kTableFile[] = "/smbios"; // below a root that a caller states

// The firmware's structure table; empty, and logged, when it cannot be had.
std::string smbiosTable(const std::string& root)
{
    std::string table;
    if (!root.empty())
    {
        files::read(root + kTableFile, kLargestTable, table);
    }
    else
    {
        const UINT size = ::GetSystemFirmwareTable(kSmbiosProvider, 0, nullptr, 0);
        std::string raw(size <= kLargestTable ? size : 0, '\0');
        const UINT got = ::GetSystemFirmwareTable(kSmbiosProvider, 0, raw.data(), static_cast<DWORD>(raw.size()));
        if (got > kSmbiosHeaderLength && got <= raw.size())
        {
            table = raw.substr(kSmbiosHeaderLength, got - kSmbiosHeaderLength);
        }
    }
    if (table.empty())
    {
        KORVAN_LOG(2, kSource) << "localhost: the firmware's tables cannot be read; what they say stays unknown";
    }
    return table;
}

void readMachine(const MachineDescription& machine, service::UpdateScanReport& report)
{
    report.SetMT(redfish::firstMachineType(
        {machine.productSku, machine.productName, machine.productFamily, machine.productVersion, machine.boardName}));
    if (report.GetMT().empty())
    {
        KORVAN_LOG(2, kSource) << "localhost: no machine type in the firmware's tables; state it with --mt";
    }
}

void readBios(const MachineDescription& machine, service::UpdateScanReport& report)
{
    if (machine.biosVersion.empty())
    {
        return;
    }
    service::ScanItem item;
    item.id = "bios";
    item.name = "System firmware (UEFI)";
    item.softwareId = report.GetMT().empty() ? "UEFI" : "UEFI-" + report.GetMT();
    item.version = machine.biosVersion;
    item.category = "Firmware";
    item.classification = "UEFI";
    item.manufacturer = machine.biosVendor;
    item.releaseDate = isoDateOfBios(machine.biosDate);
    item.slotType = "0";
    item.slotNumber = "0";
    report.AddScanResult(item);
}

void readOperatingSystem(service::UpdateScanReport& report)
{
    // GetVersionEx tells programs the version that their manifest names instead of the real one.
    using RtlGetVersion = LONG(WINAPI*)(OSVERSIONINFOEXW*);
    OSVERSIONINFOEXW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    const HMODULE library = ::GetModuleHandleW(L"ntdll.dll");
    const FARPROC entry = library == nullptr ? nullptr : ::GetProcAddress(library, "RtlGetVersion");
    if (entry != nullptr && reinterpret_cast<RtlGetVersion>(reinterpret_cast<void*>(entry))(&version) == 0)
    {
        report.SetOS(
            windowsKey(version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber,
                       version.wProductType == VER_NT_WORKSTATION ? WindowsEdition::Client : WindowsEdition::Server));
    }
    if (report.GetOS().empty())
    {
        KORVAN_LOG(2, kSource) << "localhost: the operating system is not a known one; state it with --ostype";
    }
}

// The program's own word size says little on a 64-bit system.
void readArchitecture(service::UpdateScanReport& report)
{
    SYSTEM_INFO information = {};
    ::GetNativeSystemInfo(&information);
    const WORD architecture = information.wProcessorArchitecture;
    report.SetArch(architecture == PROCESSOR_ARCHITECTURE_AMD64
                       ? "x64"
                       : (architecture == PROCESSOR_ARCHITECTURE_INTEL ? "x32" : ""));
    if (report.GetArch().empty())
    {
        KORVAN_LOG(2, kSource) << "localhost: unknown architecture " << architecture << "; state it with --osarch";
    }
}

std::string deviceProperty(HDEVINFO devices, SP_DEVINFO_DATA& device, DWORD property)
{
    wchar_t value[512] = {};
    if (::SetupDiGetDeviceRegistryPropertyW(devices, &device, property, nullptr, reinterpret_cast<BYTE*>(value),
                                            sizeof value - sizeof(wchar_t), nullptr) == 0)
    {
        return std::string();
    }
    return text::trim(wide_text::toUtf8(value, std::wcslen(value)));
}

std::string driverVersion(HDEVINFO devices, SP_DEVINFO_DATA& device)
{
    const HKEY key = ::SetupDiOpenDevRegKey(devices, &device, DICS_FLAG_GLOBAL, 0, DIREG_DRV, KEY_QUERY_VALUE);
    if (key == INVALID_HANDLE_VALUE)
    {
        return std::string();
    }
    wchar_t value[128] = {};
    DWORD size = sizeof value - sizeof(wchar_t);
    const LSTATUS status =
        ::RegQueryValueExW(key, L"DriverVersion", nullptr, nullptr, reinterpret_cast<BYTE*>(value), &size);
    ::RegCloseKey(key);
    return status == ERROR_SUCCESS ? text::trim(wide_text::toUtf8(value, std::wcslen(value))) : std::string();
}

// Name of the driver's service to its version, of the network adapters that are there. Adapters without hardware of
// their own, which the system makes itself, are left out.
std::map<std::string, std::string> networkDrivers()
{
    std::map<std::string, std::string> drivers;
    const HDEVINFO devices = ::SetupDiGetClassDevsW(&GUID_DEVCLASS_NET, nullptr, nullptr, DIGCF_PRESENT);
    if (devices == INVALID_HANDLE_VALUE)
    {
        KORVAN_LOG(2, kSource) << "localhost: the network adapters cannot be listed: "
                               << wide_text::systemReason(::GetLastError());
        return drivers;
    }
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    for (DWORD index = 0; ::SetupDiEnumDeviceInfo(devices, index, &device) != 0 && drivers.size() < kMostDrivers;
         ++index)
    {
        const std::string service = deviceProperty(devices, device, SPDRP_SERVICE);
        const std::string bus = deviceProperty(devices, device, SPDRP_ENUMERATOR_NAME);
        if (!service.empty() && (bus == "PCI" || bus == "USB"))
        {
            drivers.emplace(text::toLower(service), driverVersion(devices, device));
        }
    }
    ::SetupDiDestroyDeviceInfoList(devices);
    return drivers;
}

void readDrivers(service::UpdateScanReport& report)
{
    for (const auto& [driver, version] : networkDrivers())
    {
        service::ScanItem item;
        item.id = "driver-" + driver;
        item.name = driver + " network driver";
        item.softwareId = driver;
        item.version = version;
        item.category = "Driver";
        item.classification = "Network";
        report.AddScanResult(item);
    }
}
} // namespace

KorvanResult readLocalInventory(const std::string& root, service::UpdateScanReport& report)
{
    const MachineDescription machine = readSmbios(smbiosTable(root));
    readMachine(machine, report);
    readBios(machine, report);
    readOperatingSystem(report);
    readArchitecture(report);
    readDrivers(report);
    KORVAN_LOG(3, kSource) << "localhost: machine type \"" << report.GetMT() << "\", system \"" << report.GetOS()
                           << "\", " << report.GetScanResults().size() << " items";
    return KorvanResult();
}
} // namespace connect
