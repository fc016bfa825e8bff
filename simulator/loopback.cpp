#include "loopback.h"

#include "simulator_error.h"

#include <boost/asio/ip/address_v4.hpp>

#include <charconv>

namespace simulator
{
namespace ip = boost::asio::ip;

ip::address loopbackAddress(const std::string& text)
{
    boost::system::error_code error;
    ip::address address = ip::make_address(text, error);
    if (error)
    {
        throw SimulatorError("address '" + text + "' is no literal IP address; use one of 127.0.0.0/8, or ::1");
    }
    if (!address.is_loopback())
    {
        throw SimulatorError("address '" + text +
                             "' is refused: only loopback addresses (127.0.0.0/8, ::1) are served");
    }
    return address;
}

std::string addressAfter(const std::string& text, std::uint32_t offset)
{
    const ip::address address = loopbackAddress(text);
    if (offset == 0)
    {
        return text;
    }
    const std::uint64_t next = address.is_v4() ? std::uint64_t{address.to_v4().to_uint()} + offset : 0;
    if (next == 0 || next > 0x7FFFFFFEU)
    {
        throw SimulatorError("address '" + text + "' has no loopback address " + std::to_string(offset) +
                             " places further on; use a smaller count or copies by port");
    }
    return ip::make_address_v4(static_cast<ip::address_v4::uint_type>(next)).to_string();
}

ListenPlace parseListenPlace(const std::string& text)
{
    ListenPlace place;
    const std::size_t colon = text.rfind(':');
    const char* const end = text.data() + text.size();
    if (colon == std::string::npos)
    {
        throw SimulatorError("'" + text + "' is no ADDRESS:PORT, such as 127.0.0.1:8443 or [::1]:0");
    }
    const auto parsed = std::from_chars(text.data() + colon + 1, end, place.port);
    place.address = text.substr(0, colon);
    if (place.address.size() > 2 && place.address.front() == '[' && place.address.back() == ']')
    {
        place.address = place.address.substr(1, place.address.size() - 2);
    }
    if (parsed.ec != std::errc{} || parsed.ptr != end || place.address.empty())
    {
        throw SimulatorError("'" + text + "' is no ADDRESS:PORT, such as 127.0.0.1:8443 or [::1]:0");
    }
    loopbackAddress(place.address);
    return place;
}
} // namespace simulator
