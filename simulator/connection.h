#pragma once

#include "controller.h"

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>

#include <functional>
#include <memory>

namespace simulator
{
// What all connections of one controller share.
struct Service
{
    std::shared_ptr<Controller> controller;
    std::shared_ptr<boost::asio::ssl::context> tls; // nullptr: plain HTTP

    // Answers the control path; empty when it is not offered.
    std::function<std::string()> control;
};

// Serves one accepted connection until either side ends it; the connection keeps itself alive in its event loop.
void serveConnection(boost::asio::ip::tcp::socket socket, std::shared_ptr<Service> service);
} // namespace simulator
