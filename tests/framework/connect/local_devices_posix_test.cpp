#include "connect/local_devices.h"

#include "connect/local_inventory.h"
#include "connect/smbios.h"
#include "log/log_control.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

using connect::SystemTree;
using service::ScanItem;
using service::UpdateScanReport;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
namespace fs = std::filesystem;

// An invented machine below a scratch folder.
class LocalDevices : public ::testing::Test
{
  protected:
    void write(const std::string& path, const std::string& content) { folder_.write(path, content + "\n"); }

    void link(const std::string& path, const std::string& target)
    {
        const fs::path whole = folder_.file(path);
        fs::create_directories(whole.parent_path());
        fs::create_symlink(target, whole);
    }

    // A network interface of a PCI device.
    void addPort(const std::string& interface, const std::string& device, const std::string& driver,
                 const std::string& deviceId = "0x1017")
    {
        const std::string pci = "sys/devices/pci0000:00/" + device + "/";
        write(pci + "vendor", "0x15a9");
        write(pci + "device", deviceId);
        write(pci + "subsystem_vendor", "0x1abc");
        write(pci + "subsystem_device", "0x00c2");
        fs::create_directories(folder_.file("sys/bus/pci/drivers/" + driver));
        if (!fs::exists(folder_.file(pci + "driver")))
        {
            link(pci + "driver", "../../../bus/pci/drivers/" + driver);
        }
        link("sys/class/net/" + interface + "/device", "../../../devices/pci0000:00/" + device);
    }

    SystemTree tree() const { return SystemTree(folder_.path()); }

    connect::AskNetworkDriver asker() const
    {
        return [this](const std::string& interface, network_driver::Facts& facts)
        {
            const auto found = told_.find(interface);
            if (found == told_.end())
            {
                return false;
            }
            facts = found->second;
            return true;
        };
    }

    // "id softwareId version category classification slotNumber/slotType" of all items.
    std::vector<std::string> items() const
    {
        std::vector<std::string> all;
        for (const ScanItem& item : report_.GetScanResults())
        {
            all.push_back(item.id + " " + item.softwareId + " " + item.version + " " + item.category + " " +
                          item.classification + " " + item.slotNumber + "/" + item.slotType);
        }
        return all;
    }

    test_support::ScratchFolder folder_;
    std::map<std::string, network_driver::Facts> told_;
    UpdateScanReport report_;
};

std::string structure(int type, const std::string& formatted = "", const std::string& strings = std::string(1, '\0'))
{
    return std::string(1, static_cast<char>(type)) + static_cast<char>(4 + formatted.size()) + std::string(2, '\1') +
           formatted + strings + '\0';
}
} // namespace

TEST_F(LocalDevices, HaveTheControllerThatTheKernelsDriverTells)
{
    write("sys/bus/platform/devices/ipmi_bmc.0/firmware_revision", "5.10");
    report_.SetMT("7X20");
    connect::addController(tree(), report_);
    EXPECT_THAT(items(), ElementsAre("bmc BMC-7X20 5.10 Firmware BMC 0/0"));
}

TEST_F(LocalDevices, HaveAControllerOfUnknownVersionWhereOnlySmbiosTellsOfIt)
{
    write("sys/firmware/dmi/entries/42-0/instance", "0");
    connect::addController(tree(), report_);
    EXPECT_THAT(items(), ElementsAre("bmc BMC  Firmware BMC 0/0"));
    fs::remove_all(folder_.file("sys"));
    folder_.write("sys/firmware/dmi/tables/DMI", structure(1, "ab", std::string("One\0Two\0", 8)) +
                                                     structure(38, std::string(14, '\0')) + structure(127));
    report_ = UpdateScanReport();
    connect::addController(tree(), report_);
    EXPECT_THAT(items(), ElementsAre("bmc BMC  Firmware BMC 0/0"));
}

TEST_F(LocalDevices, HaveNoControllerWhereNothingTellsOfOne)
{
    write("sys/firmware/dmi/entries/4-38/instance", "0");
    write("sys/bus/platform/devices/serial8250/modalias", "platform");
    connect::addController(tree(), report_);
    EXPECT_THAT(items(), IsEmpty());
}

TEST_F(LocalDevices, HaveDisksWithFirmware)
{
    write("sys/class/nvme/nvme0/model", "Kestrel P41 960GB                       ");
    write("sys/class/nvme/nvme0/firmware_rev", "EPK9CH4Q");
    link("sys/class/nvme/nvme0/device", "../../../0000:5e:00.0");
    write("sys/class/nvme/nvme1/model", "Kestrel P41 960GB");
    write("sys/bus/pci/slots/12/address", "0000:5e:00");
    write("sys/bus/pci/slots/7-1/address", "0000:5f:00");
    write("sys/block/nvme0n1/device/model", "Kestrel P41 960GB");
    write("sys/block/sda/device/model", "HD 2.4T_X");
    write("sys/block/sda/device/vendor", "HALVORS");
    write("sys/block/sda/device/rev", "B0A1");
    write("sys/block/sda/removable", "0");
    write("sys/block/sdb/device/model", "Stick");
    write("sys/block/sdb/device/rev", "1.00");
    write("sys/block/sdb/removable", "1");
    write("sys/block/loop0/removable", "0");
    connect::addDisks(tree(), report_);
    EXPECT_THAT(items(), ElementsAre("nvme0 NVME-KESTREL-P41-960GB EPK9CH4Q Firmware Disk 12/1",
                                     "nvme1 NVME-KESTREL-P41-960GB  Firmware Disk /",
                                     "sda DISK-HD-2.4T-X B0A1 Firmware Disk /"));
    EXPECT_EQ("HALVORS", report_.GetScanResults()[2].manufacturer);
}

TEST_F(LocalDevices, HaveOneAdapterForAllItsPorts)
{
    addPort("ens1f0", "0000:3b:00.0", "nic-2510");
    addPort("ens1f1", "0000:3b:00.1", "nic-2510");
    addPort("ens2f0", "0000:af:00.0", "nic-2510", "0x1019");
    write("sys/bus/pci/slots/3/address", "0000:3b:00");
    told_["ens1f0"] = {"", "22.31.1014"};
    told_["ens1f1"] = {"", "22.31.1014"};
    write("sys/module/nic_2510/version", "23.10-1.1.9");
    connect::addAdaptersAndDrivers(tree(), asker(), report_);
    EXPECT_THAT(items(), ElementsAre("nic-ens1f0 PCI-15A9-1017-1ABC-00C2 22.31.1014 Firmware Network 3/1",
                                     "nic-ens2f0 PCI-15A9-1019-1ABC-00C2  Firmware Network /",
                                     "driver-nic-2510 nic-2510 23.10-1.1.9 Driver Network /"));
}

TEST_F(LocalDevices, LeaveVirtualInterfacesOut)
{
    write("sys/class/net/lo/address", "00:00:00:00:00:00");
    write("sys/devices/virtio0/vendor", "0x1af4");
    write("sys/devices/virtio0/device", "0x0001");
    link("sys/devices/virtio0/driver", "../../bus/virtio/drivers/virtio_net");
    link("sys/class/net/eth0/device", "../../../devices/virtio0");
    told_["eth0"] = {"1.0.0", ""};
    connect::addAdaptersAndDrivers(tree(), asker(), report_);
    EXPECT_THAT(items(), ElementsAre("driver-virtio_net virtio_net 1.0.0 Driver Network /"));
}

TEST_F(LocalDevices, HaveLoadedDriversWithAVersion)
{
    addPort("eth0", "0000:3b:00.0", "nic-2510");
    told_["eth0"] = {"4.2", "22.31"};
    write("sys/module/raid_9460/version", "07.719.03");
    link("sys/module/raid_9460/drivers/pci:raid_9460", "../../../bus/pci/drivers/raid_9460");
    write("sys/module/tcp_cubic/version", "2.3");
    link("sys/module/without/drivers/pci:without", "../../../bus/pci/drivers/without");
    connect::addAdaptersAndDrivers(tree(), asker(), report_);
    EXPECT_THAT(items(), ElementsAre("nic-eth0 PCI-15A9-1017-1ABC-00C2 22.31 Firmware Network /",
                                     "driver-nic-2510 nic-2510 4.2 Driver Network /",
                                     "driver-raid_9460 raid_9460 07.719.03 Driver  /"));
}

TEST_F(LocalDevices, AreAllPartOfTheInventory)
{
    write("sys/bus/platform/devices/ipmi_bmc.0/firmware_revision", "5.10");
    write("sys/class/dmi/id/product_name", "Halvorsen H2 -[7X20]-");
    write("sys/class/dmi/id/bios_version", "HVE128K");
    write("sys/class/nvme/nvme0/model", "P41");
    write("sys/class/nvme/nvme0/firmware_rev", "EPK9CH4Q");
    addPort("eth0", "0000:3b:00.0", "nic-2510");
    EXPECT_TRUE(connect::readLocalInventory(folder_.path(), report_).succeeded());
    std::vector<std::string> ids;
    for (const ScanItem& item : report_.GetScanResults())
    {
        ids.push_back(item.softwareId);
    }
    EXPECT_THAT(ids, ElementsAre("UEFI-7X20", "BMC-7X20", "NVME-P41", "PCI-15A9-1017-1ABC-00C2", "nic-2510"));
}

TEST_F(LocalDevices, ThatCannotBeReadAreNamedInTheLog)
{
    write("sys/class/nvme/nvme0/model", "P41");
    fs::create_directories(folder_.file("sys/bus/platform/devices/ipmi_bmc.0/firmware_revision"));
    addPort("eth0", "0000:3b:00.0", "nic-2510");
    std::string log;
    log_control::observe(2, [&log](int, const std::string&, int, const std::string& text) { log += text + "\n"; });
    connect::addController(tree(), report_);
    connect::addDisks(tree(), report_);
    connect::addAdaptersAndDrivers(tree(), asker(), report_);
    log_control::observe(0, nullptr);
    EXPECT_THAT(items(), testing::SizeIs(4)) << "they are there, with an unknown version";
    for (const char* piece : {"ipmi_bmc.0/firmware_revision cannot be read", "nvme0/firmware_rev cannot be read",
                              "the driver of eth0 cannot be asked", "nic-2510 tells no version of its own"})
    {
        EXPECT_THAT(log, testing::HasSubstr(piece));
    }
}

TEST(NetworkDriver, AnswersForInterfacesThatAreThere)
{
    network_driver::Facts facts;
    EXPECT_FALSE(network_driver::ask("", facts));
    EXPECT_FALSE(network_driver::ask("no-such-if0", facts));
    EXPECT_FALSE(network_driver::ask(std::string(500, 'x'), facts));
}

TEST(SmbiosTypes, AreThoseOfWholeStructures)
{
    const std::string table =
        structure(0, "xy", std::string("Maker\0Version\0", 14)) + structure(1) + structure(42, "k");
    EXPECT_THAT(connect::smbiosTypes(table), ElementsAre(0, 1, 42));
    EXPECT_THAT(connect::smbiosTypes(table + structure(127) + structure(38)), ElementsAre(0, 1, 42));
    EXPECT_THAT(connect::smbiosTypes(table.substr(0, table.size() - 1)), ElementsAre(0, 1));
}

TEST(SmbiosTypes, OfABrokenTableEndWhereItBreaks)
{
    EXPECT_THAT(connect::smbiosTypes(""), IsEmpty());
    EXPECT_THAT(connect::smbiosTypes(std::string("\x26\x00\x01\x01\x00\x00", 6)), IsEmpty());
    EXPECT_THAT(connect::smbiosTypes(std::string("\x26\xFF\x01\x01\x00\x00", 6)), IsEmpty());
    EXPECT_THAT(connect::smbiosTypes(structure(1) + "\x26"), ElementsAre(1));
    const std::string whole = structure(38, "abcdef", std::string("Text\0", 5));
    for (std::size_t length = 0; length < whole.size(); ++length)
    {
        EXPECT_THAT(connect::smbiosTypes(whole.substr(0, length)), IsEmpty()) << length;
    }
}

TEST(SoftwareIdPiece, HoldsCapitalsDigitsDotsAndSingleHyphens)
{
    EXPECT_EQ("KESTREL-P41-960GB", connect::idPiece("  Kestrel  P41_(960GB)"));
    EXPECT_EQ("A.B", connect::idPiece("a.b"));
    EXPECT_EQ("", connect::idPiece(" -- "));
}
