#pragma once

#include <boost/asio/ip/address.hpp>

#include <cstdint>
#include <string>

namespace simulator
{
// A literal address of 127.0.0.0/8, or ::1. Anything else, names included, is a SimulatorError: sample passwords and
// provoked faults have no place on a real network.
boost::asio::ip::address loopbackAddress(const std::string& text);

// The address `offset` places further on; a SimulatorError beyond the loopback network.
std::string addressAfter(const std::string& text, std::uint32_t offset);

// "127.0.0.1:8443" or "[::1]:8443" in two parts; a SimulatorError when it is neither.
struct ListenPlace
{
    std::string address;
    std::uint16_t port = 0;
};
ListenPlace parseListenPlace(const std::string& text);
} // namespace simulator
