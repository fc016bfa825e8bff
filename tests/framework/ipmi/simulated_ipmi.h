#pragma once

#include "support/loopback_port.h"
#include "support/process.h"
#include "support/scratch_folder.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

using test_support::LoopbackUdp;

// A loopback port on which nobody answers over UDP.
inline unsigned freeUdpPort()
{
    return LoopbackUdp().port();
}

// ipmi_sim with one controller and a FRU that holds a product area; it ends with the object.
class SimulatedIpmi
{
  public:
    SimulatedIpmi(const std::string& productName, const std::string& partNumber) : fru_(fru(productName, partNumber))
    {
        start();
    }

    // A controller without any FRU.
    SimulatedIpmi() { start(); }

    unsigned port() const { return port_; }

    static constexpr char kUser[] = "admin";
    static constexpr char kPassword[] = "Secret-IPMI-1";
    static constexpr char kManufacturer[] = "Example Works";

  private:
    static constexpr std::size_t kFruSize = 256;

    // Appends what makes the sum of all bytes zero.
    static void addChecksum(std::string& area)
    {
        const int sum = std::accumulate(area.begin(), area.end(), 0,
                                        [](int left, char right) { return left + static_cast<unsigned char>(right); });
        area += static_cast<char>(-sum & 0xff);
    }

    // Common header and product area (Platform Management FRU Information Storage Definition, sections 8 and 12).
    static std::string fru(const std::string& name, const std::string& partNumber)
    {
        std::string area = {1, 0, 25};
        for (const std::string& field : {std::string(kManufacturer), name, partNumber, std::string("01"),
                                         std::string("SN-0001"), std::string(), std::string()})
        {
            area += static_cast<char>(field.empty() ? 0 : 0xC0 | field.size());
            area += field;
        }
        area += '\xC1';
        area.resize((area.size() + 8) / 8 * 8 - 1);
        area[1] = static_cast<char>((area.size() + 1) / 8);
        addChecksum(area);
        std::string whole = {1, 0, 0, 0, 1, 0, 0};
        addChecksum(whole);
        whole += area;
        whole.resize(kFruSize);
        return whole;
    }

    static std::string program()
    {
        std::string path = "/usr/bin/ipmi_sim";
        if (!std::filesystem::exists(path))
        {
            throw std::runtime_error(path + " is missing; install the package openipmi");
        }
        if (!std::filesystem::exists("/usr/bin/ipmitool"))
        {
            throw std::runtime_error("/usr/bin/ipmitool is missing; install the package ipmitool");
        }
        return path;
    }

    // Another program may take the port between its choice and its use, so that is tried again.
    void start()
    {
        const std::string path = program();
        for (int attempt = 0; attempt < 5; ++attempt)
        {
            port_ = freeUdpPort();
            process_ = std::make_unique<test_support::BackgroundProcess>(
                path, std::vector<std::string>{"-n", "-c", writeNetwork(), "-f", writeController(), "-s",
                                               folder_.file("state")});
            const LoopbackUdp probe;
            for (int tries = 0; tries < 60; ++tries)
            {
                if (probe.pings(port_))
                {
                    return;
                }
            }
        }
        throw std::runtime_error("ipmi_sim did not start");
    }

    std::string writeNetwork() const
    {
        std::filesystem::create_directories(folder_.file("state"));
        return folder_.write("lan.conf", "name \"test\"\nstartlan 1\n  addr 127.0.0.1 " + std::to_string(port_) +
                                             "\n  priv_limit admin\n  allowed_auths_callback md5\n"
                                             "  allowed_auths_user md5\n  allowed_auths_operator md5\n"
                                             "  allowed_auths_admin md5\n"
                                             "  guid a123456789abcdefa123456789abcdef\nendlan\nuser 2 true \"" +
                                             kUser + "\" \"" + kPassword + "\" user 10 md5\n");
    }

    std::string writeController() const
    {
        std::string commands = "mc_setbmc 0x20\nmc_add 0x20 0 no-device-sdrs 0x01 1 0 0x9f 0x1 0x1 persist_sdr\n";
        if (!fru_.empty())
        {
            commands += "mc_add_fru_data 0x20 0 " + std::to_string(kFruSize) + " file 0 \"" +
                        folder_.write("fru.bin", fru_) + "\"\n";
        }
        return folder_.write("controller.cmd", commands + "mc_enable 0x20\n");
    }

    test_support::ScratchFolder folder_;
    std::string fru_;
    unsigned port_ = 0;
    std::unique_ptr<test_support::BackgroundProcess> process_;
};
