#include "framework/repository/descriptor_text.h"
#include "interrupt.h"
#include "reports.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <map>
#include <random>
#include <set>

// A large generated repository and fleet, queried and compared by the services and once more by the few lines below, which
// share nothing with the services: their own order of versions, their own idea of what a target takes.
namespace
{
using Version = std::array<int, 3>; // never with a fourth part, so their order is that of the arrays
using Random = std::mt19937;

constexpr int kDevices = 1000;
constexpr int kPackagesOfDevice = 5;
constexpr int kTargets = 50;
constexpr int kGroup = 10; // the device's number in its group says what is special about it

enum InGroup
{
    kSuperseding = 0, // its packages supersede the newest one of the next device
    kSuperseded = 1,
    kDependent = 3, // its packages require the newest one of the next device
    kRequired = 4,  // in every fifth group its newest package is excluded
    kTwice = 7,     // is built in twice
};

struct GeneratedPackage
{
    std::string id;
    Version version{};
    std::set<std::string> machineTypes; // empty: any
};

struct Device
{
    int number = 0;
    std::vector<GeneratedPackage> packages; // from the oldest to the newest

    int inGroup() const { return number % kGroup; }
    bool newestExcluded() const { return inGroup() == kRequired && number / kGroup % 5 == 0; }
    const std::string& newestId() const { return packages.back().id; }
    std::string softwareId() const { return "DEV-" + std::to_string(number); }
};

struct Target
{
    std::string machineType;
    std::map<int, std::vector<Version>> installed; // by device
};

std::string written(const Version& version)
{
    return std::to_string(version[0]) + "." + std::to_string(version[1]) + "." + std::to_string(version[2]);
}

int below(Random& random, int limit)
{
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}

Version anyVersion(Random& random)
{
    return {below(random, 4), below(random, 12), below(random, 120)};
}

Device generatedDevice(Random& random, int number)
{
    Device device;
    device.number = number;
    std::set<Version> versions;
    while (versions.size() < kPackagesOfDevice)
    {
        versions.insert(anyVersion(random));
    }
    for (const Version& version : versions)
    {
        GeneratedPackage package;
        package.id = "gen_fw_" + std::to_string(number) + "_" + written(version);
        package.version = version;
        const int kind = below(random, 3);
        if (device.inGroup() > kRequired && kind != 2)
        {
            package.machineTypes = {kind == 0 ? "7Y41" : "7X20"};
        }
        device.packages.push_back(package);
    }
    return device;
}

Target generatedTarget(Random& random, const std::vector<Device>& devices)
{
    Target target;
    target.machineType = below(random, 2) == 0 ? "7Y41" : "7X20";
    for (const Device& device : devices)
    {
        const int copies = below(random, 10) < 4 ? (device.inGroup() == kTwice ? 2 : 1) : 0;
        for (int copy = 0; copy < copies; ++copy)
        {
            const bool asPackage = below(random, 3) == 0;
            const auto index = static_cast<std::size_t>(below(random, kPackagesOfDevice));
            target.installed[device.number].push_back(asPackage ? device.packages[index].version : anyVersion(random));
        }
    }
    return target;
}

void writeRepository(const test_support::ScratchFolder& folder, const std::vector<Device>& devices)
{
    for (const Device& device : devices)
    {
        for (const GeneratedPackage& package : device.packages)
        {
            descriptor_text::Package text;
            text.id = package.id;
            text.softwareId = device.softwareId();
            text.component = "Component " + std::to_string(device.number);
            text.version = written(package.version);
            text.machineTypes = package.machineTypes.empty()
                                    ? "<MACHINETYPE>*</MACHINETYPE>"
                                    : "<MACHINETYPE>" + *package.machineTypes.begin() + "</MACHINETYPE>";
            const auto next = static_cast<std::size_t>(device.number) + 1;
            if (device.inGroup() == kSuperseding)
            {
                text.extra = "<SUPERSEDE>" + devices[next].newestId() + "</SUPERSEDE>";
            }
            else if (device.inGroup() == kDependent)
            {
                text.extra = "<PREREQUISITE>" + devices[next].newestId() + "</PREREQUISITE>";
            }
            std::ofstream(folder.file(package.id + ".xml")) << descriptor_text::text(text);
        }
    }
}

// The packages of a device that a query for the newest ones gives.
std::vector<const GeneratedPackage*> offered(const Device& device, const std::string& machineType)
{
    std::vector<const GeneratedPackage*> result;
    for (auto package = device.packages.rbegin(); package != device.packages.rend(); ++package)
    {
        if (package->machineTypes.empty() || package->machineTypes.count(machineType) != 0)
        {
            result.push_back(&*package);
            const bool excluded = device.newestExcluded() && package->id == device.newestId();
            if (!excluded)
            {
                break;
            }
        }
    }
    return result;
}

std::string expectedDecision(const std::vector<Device>& devices, const Device& device, const GeneratedPackage& package,
                             const Target& target)
{
    if (device.newestExcluded() && package.id == device.newestId())
    {
        return "5";
    }
    const auto found = target.installed.find(device.number);
    if (found == target.installed.end())
    {
        return "3";
    }
    bool newer = false;
    bool older = false;
    for (const Version& installed : found->second)
    {
        newer = newer || package.version > installed;
        older = older || package.version < installed;
    }
    if (!newer)
    {
        return older ? "2" : "1";
    }
    if (device.inGroup() == kSuperseded && target.installed.count(device.number - 1) != 0)
    {
        return "6";
    }
    const auto required = target.installed.find(device.number + 1);
    if (device.inGroup() == kDependent && required != target.installed.end())
    {
        const Device& next = devices[static_cast<std::size_t>(device.number) + 1];
        if (next.newestExcluded() && required->second.front() < next.packages.back().version)
        {
            return "13";
        }
    }
    return "selected";
}

service::UpdateScanReport scanOf(const Target& target)
{
    std::vector<service::ScanItem> items;
    for (const auto& device : target.installed)
    {
        const std::string softwareId = "DEV-" + std::to_string(device.first);
        for (std::size_t copy = 0; copy < device.second.size(); ++copy)
        {
            items.push_back(
                reports::item(softwareId, written(device.second[copy]), softwareId + "#" + std::to_string(copy)));
        }
    }
    service::UpdateScanReport report = reports::scan(items);
    report.SetMT(target.machineType);
    return report;
}

service::QueryReport queryFor(const Target& target, const std::string& folder, const std::vector<Device>& devices)
{
    service::QueryOptions options = reports::query({}).options;
    options.machineType = target.machineType;
    options.queryDir = folder + "\\";
    for (const Device& device : devices)
    {
        if (device.newestExcluded())
        {
            options.excludeIds.push_back(device.newestId());
        }
    }
    service::QueryReport report;
    const KorvanResult result = service::ServiceUpdateQuery(options).RunQuery(report);
    EXPECT_TRUE(result.succeeded()) << result;
    return report;
}

// The selected packages count from 1 without gaps, each behind what it requires.
void expectFlashOrder(const service::CompareReport& report)
{
    std::map<std::string, int> orders;
    std::set<int> seen;
    for (const service::ComparedPackage& package : report.packages)
    {
        EXPECT_EQ(package.flashOrder > 0, package.selected == 1) << package.package.updateId;
        if (package.flashOrder > 0)
        {
            orders[package.package.updateId] = package.flashOrder;
            seen.insert(package.flashOrder);
        }
    }
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.size(), orders.size());
    EXPECT_EQ(*seen.rbegin(), static_cast<int>(seen.size()));
    for (const service::ComparedPackage& package : report.packages)
    {
        const auto required = orders.find(package.package.prerequisite);
        if (package.selected == 1 && required != orders.end())
        {
            EXPECT_LT(required->second, package.flashOrder) << package.package.updateId;
        }
    }
}

TEST(GeneratedFleet, IsComparedAsASmallIndependentCalculationSays)
{
    interrupt::reset();
    Random random(20260310);
    std::vector<Device> devices;
    for (int number = 0; number < kDevices; ++number)
    {
        devices.push_back(generatedDevice(random, number));
    }
    const test_support::ScratchFolder folder;
    writeRepository(folder, devices);
    std::map<std::string, std::size_t> decisionsSeen;
    for (int index = 0; index < kTargets; ++index)
    {
        const Target target = generatedTarget(random, devices);
        std::map<std::string, std::string> expected;
        for (const Device& device : devices)
        {
            for (const GeneratedPackage* package : offered(device, target.machineType))
            {
                expected[package->id] = expectedDecision(devices, device, *package, target);
                ++decisionsSeen[expected[package->id]];
            }
        }
        const service::CompareReport report =
            reports::compare(scanOf(target), queryFor(target, folder.path(), devices));
        const std::vector<std::string> decisions = reports::decisions(report);
        std::map<std::string, std::string> actual;
        for (std::size_t row = 0; row < decisions.size(); ++row)
        {
            actual[report.packages[row].package.updateId] = decisions[row];
        }
        ASSERT_EQ(decisions.size(), actual.size()) << "a package stands twice";
        ASSERT_EQ(actual, expected) << "target " << index;
        expectFlashOrder(report);
    }
    for (const char* decision : {"selected", "1", "2", "3", "5", "6", "13"})
    {
        EXPECT_GT(decisionsSeen[decision], 0U) << decision << " never came up";
    }
}
} // namespace
