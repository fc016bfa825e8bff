#include "connect/local_inventory.h"

#include "connect/local_items.h"
#include "connect/present_devices_win32.h"
#include "connect/smbios.h"
#include "connect/windows_drivers.h"
#include "connect/windows_release.h"
#include "files/files.h"
#include "redfish/machine_type.h"
#include "text/text.h"
#include "text/wide_text_win32.h"
#include "xmodule_log.h"

#include <windows.h>

#include <vector>

namespace connect
{
namespace
{
constexpr char kSource[] = "framework/connect/local_inventory";
constexpr DWORD kSmbiosProvider = 0x52534D42;  // "RSMB" (GetSystemFirmwareTable)
constexpr std::size_t kSmbiosHeaderLength = 8; // of RawSMBIOSData: calling method, version, revision, length
constexpr std::size_t kLargestTable = std::size_t{1} << 20U;
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

void readController(const std::string& table, service::UpdateScanReport& report)
{
    if (!tellsOfController(table))
    {
        KORVAN_LOG(3, kSource) << "localhost: no management controller is seen from here";
        return;
    }
    KORVAN_LOG(2, kSource) << "localhost: the firmware version of the management controller stays unknown; name the "
                              "controller itself as a target to compare its firmware";
    addManagementController(std::string(), report);
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

void readDrivers(service::UpdateScanReport& report)
{
    for (const service::ScanItem& item : driverItems(presentDevices()))
    {
        if (item.version.empty())
        {
            KORVAN_LOG(2, kSource) << "localhost: the driver " << item.softwareId << " tells no version";
        }
        report.AddScanResult(item);
    }
}
} // namespace

KorvanResult readLocalInventory(const std::string& root, service::UpdateScanReport& report)
{
    const std::string table = smbiosTable(root);
    const MachineDescription machine = readSmbios(table);
    readMachine(machine, report);
    addSystemFirmware(machine.biosVendor, machine.biosVersion, machine.biosDate, report);
    readController(table, report);
    readOperatingSystem(report);
    readArchitecture(report);
    // Only this machine's own devices can be asked.
    if (root.empty())
    {
        readDrivers(report);
    }
    KORVAN_LOG(3, kSource) << "localhost: machine type \"" << report.GetMT() << "\", system \"" << report.GetOS()
                           << "\", " << report.GetScanResults().size() << " items";
    return KorvanResult();
}
} // namespace connect
