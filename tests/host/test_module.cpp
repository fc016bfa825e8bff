#include "basic_multi_app.h"

#include "interrupt.h"
#include "nova/server_info.h"

#include <boost/config.hpp>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>

// A module whose application does what the environment variable KORVAN_TEST_MODE says.

namespace
{
std::string mode()
{
    const char* const value = std::getenv("KORVAN_TEST_MODE");
    return value == nullptr ? std::string() : value;
}

class TestApplication : public BasicMultiApp
{
  public:
    ~TestApplication() override { std::cout << "destroyed\n"; }

    KorvanResult RunTask(const nova::ServerInfo& server, const std::string& /*outputDir*/) override
    {
        if (mode() == "wait")
        {
            std::cout << "waiting" << std::endl;
            for (int step = 0; step < 1000 && !interrupt::requested(); ++step)
            {
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
            return KorvanResult(47);
        }
        if (mode() == "stubborn")
        {
            std::cout << "waiting" << std::endl;
            std::this_thread::sleep_for(std::chrono::seconds(10));
        }
        return KorvanResult(server.host == "bad" ? 13U : 0U);
    }

    void HandleResult() override
    {
        for (const auto& entry : parentContext().options)
        {
            std::cout << entry.first << "=" << entry.second << "\n";
        }
        std::cout << parentContext().command << " " << parentContext().subCommand << " "
                  << parentContext().argumentCount << "\n";
    }

    KorvanResult Running() override
    {
        if (mode() == "throw")
        {
            throw std::runtime_error("broken by the test");
        }
        if (mode() == "flash")
        {
            return KorvanResult(0x600);
        }
        return BasicMultiApp::Running();
    }

    const std::string ConfirmMessage(const UserContext& /*context*/) const override
    {
        return mode() == "ask" ? "Really?" : "";
    }
};
} // namespace

extern "C" BOOST_SYMBOL_EXPORT BasicMultiApp* create_instance()
{
    return mode() == "null" ? nullptr : new TestApplication;
}
