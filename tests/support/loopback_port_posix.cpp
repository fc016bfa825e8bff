#include "support/loopback_port.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

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

unsigned portOf(int socket)
{
    sockaddr_in address = {};
    socklen_t size = sizeof address;
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

int bound(int kind)
{
    const int socket = ::socket(AF_INET, kind | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(0);
    if (socket < 0 || ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
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
    const int listener = bound(SOCK_STREAM);
    const unsigned port = portOf(listener);
    ::close(listener);
    return port;
}

LoopbackUdp::LoopbackUdp() : socket_(bound(SOCK_DGRAM)) {}

LoopbackUdp::~LoopbackUdp()
{
    ::close(socket_);
}

unsigned LoopbackUdp::port() const
{
    return portOf(socket_);
}

bool LoopbackUdp::pings(unsigned port) const
{
    const unsigned char ping[] = {0x06, 0x00, 0xff, 0x06, 0x00, 0x00, 0x11, 0xbe, 0x80, 0x00, 0x00, 0x00};
    const sockaddr_in address = loopback(port);
    ::sendto(socket_, ping, sizeof ping, 0, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    pollfd entry = {socket_, POLLIN, 0};
    return ::poll(&entry, 1, 50) > 0;
}
} // namespace test_support
