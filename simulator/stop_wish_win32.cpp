#include "stop_wish.h"

#include <boost/asio/post.hpp>

#include <windows.h>

#include <csignal>
#include <thread>
#include <utility>

namespace simulator
{
std::vector<int> stopSignals()
{
    return {SIGINT, SIGTERM, SIGBREAK};
}

void watchStandardInput(boost::asio::io_context& loop, std::function<void()> ended)
{
    // Reading a pipe or a console cannot be abandoned here, so that the thread may outlive the loop's run; it is
    // detached and touches the loop only at the input's end.
    std::thread(
        [&loop, ended = std::move(ended)]
        {
            const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
            char scrap[256];
            DWORD count = 0;
            while (ReadFile(input, scrap, sizeof scrap, &count, nullptr) && count != 0)
            {
            }
            boost::asio::post(loop, ended);
        })
        .detach();
}
} // namespace simulator
