#pragma once

// Ports of 127.0.0.1 for tests. What cannot be had throws std::runtime_error.
namespace test_support
{
// A TCP port on which nobody listens.
unsigned freePort();

// A UDP socket on a port of the system's choice.
class LoopbackUdp
{
  public:
    LoopbackUdp();
    ~LoopbackUdp();
    LoopbackUdp(const LoopbackUdp&) = delete;
    LoopbackUdp& operator=(const LoopbackUdp&) = delete;

    unsigned port() const;

    // Sends the ping of DMTF DSP0136 (section 3.2.4.2) and waits a moment for any answer.
    bool pings(unsigned port) const;

  private:
    int socket_;
};
} // namespace test_support
