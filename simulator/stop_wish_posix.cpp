#include "stop_wish.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>

#include <unistd.h>

#include <array>
#include <csignal>
#include <memory>
#include <utility>

namespace simulator
{
namespace
{
class InputWatch : public std::enable_shared_from_this<InputWatch>
{
  public:
    InputWatch(boost::asio::io_context& loop, std::function<void()> ended)
        : input_(loop, ::dup(STDIN_FILENO)), ended_(std::move(ended))
    {
    }

    void wait()
    {
        input_.async_read_some(boost::asio::buffer(scrap_),
                               [self = shared_from_this()](const boost::system::error_code& error, std::size_t)
                               {
                                   if (error)
                                   {
                                       self->ended_();
                                       return;
                                   }
                                   self->wait();
                               });
    }

  private:
    boost::asio::posix::stream_descriptor input_;
    std::function<void()> ended_;
    std::array<char, 256> scrap_{};
};
} // namespace

std::vector<int> stopSignals()
{
    return {SIGINT, SIGTERM};
}

void watchStandardInput(boost::asio::io_context& loop, std::function<void()> ended)
{
    std::make_shared<InputWatch>(loop, std::move(ended))->wait();
}
} // namespace simulator
