#include "support/loopback_port.h"

#include <winsock2.h>

#include <cstdint>
#include <stdexcept>

namespace
{
sockaddr_in loopback(unsigned port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

unsigned portOf(SOCKET socket)
{
    sockaddr_in address = {};
    int size = sizeof address;
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

SOCKET bound(int kind)
{
    WSADATA data = {};
    ::WSAStartup(MAKEWORD(2, 2), &data);
    const SOCKET socket = ::socket(AF_INET, kind, 0);
    const sockaddr_in address = loopback(0);
    if (socket == INVALID_SOCKET || ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    {
        throw std::runtime_error("no socket");
    }
    return socket;
}
} // namespace

namespace test_support
{
unsigned freePort()
{
    const SOCKET listener = bound(SOCK_STREAM);
    const unsigned port = portOf(listener);
    ::closesocket(listener);
    return port;
}

// A handle of the system fits into 32 bits.
LoopbackUdp::LoopbackUdp() : socket_(static_cast<int>(bound(SOCK_DGRAM))) {}

LoopbackUdp::~LoopbackUdp()
{
    ::closesocket(static_cast<SOCKET>(socket_));
}

unsigned LoopbackUdp::port() const
{
    return portOf(static_cast<SOCKET>(socket_));
}

bool LoopbackUdp::pings(unsigned port) const
{
    const unsigned char ping[] = {0x06, 0x00, 0xff, 0x06, 0x00, 0x00, 0x11, 0xbe, 0x80, 0x00, 0x00, 0x00};
    const sockaddr_in address = loopback(port);
    ::sendto(static_cast<SOCKET>(socket_), reinterpret_cast<const char*>(ping), sizeof ping, 0,
             reinterpret_cast<const sockaddr*>(&address), sizeof address);
    fd_set waiting;
    FD_ZERO(&waiting);
    FD_SET(static_cast<SOCKET>(socket_), &waiting);
    timeval limit = {0, 50000};
    return ::select(0, &waiting, nullptr, nullptr, &limit) > 0;
}
} // namespace test_support
