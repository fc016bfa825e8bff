#include "connect/present_devices_win32.h"

#include "text/text.h"
#include "text/wide_text_win32.h"
#include "xmodule_log.h"

#include <windows.h>

#include <setupapi.h>

#include <cwchar>

namespace connect
{
namespace
{
constexpr char kSource[] = "framework/connect/present_devices";
constexpr std::size_t kMostDevices = 8192;

std::string textOf(const wchar_t* value)
{
    return text::trim(wide_text::toUtf8(value, std::wcslen(value)));
}

std::string deviceProperty(HDEVINFO devices, SP_DEVINFO_DATA& device, DWORD property)
{
    wchar_t value[512] = {};
    DWORD kind = 0;
    return ::SetupDiGetDeviceRegistryPropertyW(devices, &device, property, &kind, reinterpret_cast<BYTE*>(value),
                                               sizeof value - sizeof(wchar_t), nullptr) != 0 &&
                   kind == REG_SZ
               ? textOf(value)
               : std::string();
}

// What stands in front of the instance's own name: "PCI" of "PCI\\VEN_15A9&DEV_1017\\4&1".
std::string busOf(HDEVINFO devices, SP_DEVINFO_DATA& device)
{
    wchar_t value[512] = {};
    if (::SetupDiGetDeviceInstanceIdW(devices, &device, value, sizeof value / sizeof(wchar_t) - 1, nullptr) == 0)
    {
        return std::string();
    }
    const std::string name = textOf(value);
    return name.substr(0, name.find('\\'));
}

std::string driverValue(HKEY key, const wchar_t* name)
{
    wchar_t value[256] = {};
    DWORD size = sizeof value - sizeof(wchar_t);
    DWORD kind = 0;
    return ::RegQueryValueExW(key, name, nullptr, &kind, reinterpret_cast<BYTE*>(value), &size) == ERROR_SUCCESS &&
                   kind == REG_SZ
               ? textOf(value)
               : std::string();
}

void readDriver(HDEVINFO devices, SP_DEVINFO_DATA& device, DeviceDriver& driver)
{
    const HKEY key = ::SetupDiOpenDevRegKey(devices, &device, DICS_FLAG_GLOBAL, 0, DIREG_DRV, KEY_QUERY_VALUE);
    if (key != INVALID_HANDLE_VALUE)
    {
        driver.version = driverValue(key, L"DriverVersion");
        driver.provider = driverValue(key, L"ProviderName");
        ::RegCloseKey(key);
    }
}
} // namespace

std::vector<DeviceDriver> presentDevices()
{
    std::vector<DeviceDriver> drivers;
    const HDEVINFO devices = ::SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES);
    if (devices == INVALID_HANDLE_VALUE)
    {
        KORVAN_LOG(2, kSource) << "localhost: the devices cannot be listed, their drivers stay unknown: "
                               << wide_text::systemReason(::GetLastError());
        return drivers;
    }
    SP_DEVINFO_DATA device = {};
    device.cbSize = sizeof device;
    for (DWORD index = 0; index < kMostDevices && ::SetupDiEnumDeviceInfo(devices, index, &device) != 0; ++index)
    {
        DeviceDriver driver;
        driver.service = deviceProperty(devices, device, SPDRP_SERVICE);
        driver.bus = busOf(devices, device);
        driver.deviceClass = deviceProperty(devices, device, SPDRP_CLASS);
        if (!driver.service.empty())
        {
            readDriver(devices, device, driver);
            drivers.push_back(driver);
        }
    }
    ::SetupDiDestroyDeviceInfoList(devices);
    return drivers;
}
} // namespace connect
