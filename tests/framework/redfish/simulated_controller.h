#pragma once

#include "connect_option.h"
#include "support/loopback_port.h"
#include "support/process.h"
#include "support/scratch_folder.h"

#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

// The simulator program with one controller on a port of the system's choice; it ends with the object.
class SimulatedController
{
  public:
    // `server`: a folder of samples/servers, or an absolute path. `habits`: members of the controller's entry in the
    // fleet file, such as "\"behaviour\": {...}", or empty.
    explicit SimulatedController(const std::string& server, const std::string& habits = "");

    // Settings that reach it with the right login and without checking its certificate.
    ConnectOption option() const;

    const std::string& url() const { return url_; }
    std::string caFile() const { return folder_.file("ca.pem"); }

    // Ends the simulator in good order and gives its statistics (JSON).
    std::string stopForStatistics();

    static constexpr char kUser[] = "admin";
    static constexpr char kPassword[] = "Secret-Of-Test-1";

  private:
    test_support::ScratchFolder folder_;
    std::string url_;
    std::unique_ptr<test_support::BackgroundProcess> process_;
};

inline SimulatedController::SimulatedController(const std::string& server, const std::string& habits)
{
    const std::string path =
        server.find('/') != std::string::npos ? server : std::string(KORVAN_SOURCE_DIR) + "/samples/servers/" + server;
    folder_.write("fleet.json", std::string("{\"controllers\": [{\"name\": \"test\", \"user\": \"") + kUser +
                                    "\", \"password\": \"" + kPassword + "\", \"folder\": \"" + path + "\"" +
                                    (habits.empty() ? "" : ", " + habits) + "}]}");
    process_ = std::make_unique<test_support::BackgroundProcess>(
        std::string(KORVAN_BIN_DIR) + "/korvan_simulator",
        std::vector<std::string>{"--config", folder_.file("fleet.json"), "--stop-on-eof", "--cert-out", caFile(),
                                 "--stats", folder_.file("statistics.json")});
    std::string line;
    while (process_->readLine(line, std::chrono::milliseconds(20000)))
    {
        if (line == "ready")
        {
            return;
        }
        url_ = line.substr(line.find(' ') + 1);
    }
    throw std::runtime_error("the simulator did not start");
}

inline ConnectOption SimulatedController::option() const
{
    ConnectOption option;
    option.kind = "bmc";
    option.scheme = url_.substr(0, url_.find(':'));
    const std::string place = url_.substr(url_.find("//") + 2);
    option.host = place.substr(0, place.find(':'));
    option.port = static_cast<std::uint32_t>(std::stoul(place.substr(place.find(':') + 1)));
    option.user = kUser;
    option.password = kPassword;
    option.checkTrust = false;
    option.connectTimeout = std::chrono::seconds(5);
    option.targetTimeout = std::chrono::seconds(20);
    return option;
}

inline std::string SimulatedController::stopForStatistics()
{
    process_->closeInput();
    test_support::ProcessOutcome outcome;
    if (!process_->wait(std::chrono::milliseconds(10000), outcome))
    {
        throw std::runtime_error("the simulator did not stop");
    }
    std::ifstream file(folder_.file("statistics.json"));
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}
