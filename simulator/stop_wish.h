#pragma once

#include <boost/asio/io_context.hpp>

#include <functional>
#include <vector>

namespace simulator
{
// The signals by which a user or a parent asks the program to end.
std::vector<int> stopSignals();

// Calls `ended` in the loop once the standard input is at its end, which is when a parent that holds the other end
// has gone. What arrives before is thrown away.
void watchStandardInput(boost::asio::io_context& loop, std::function<void()> ended);
} // namespace simulator
