#pragma once

#include "end_to_end/program_tree.h"

#include <gtest/gtest.h>
#include <nlohmann/json_fwd.hpp>

#include <map>
#include <memory>
#include <string>
#include <vector>

// Sample servers on ports of the system's choice, and the runnable tree to ask them with.
class FleetFixture : public testing::Test
{
  protected:
    static constexpr char kUser[] = "admin";
    static constexpr char kPassword[] = "Sample-Passw0rd";
    static constexpr char kWrongPassword[] = "not-the-Passw0rd";

    // Starts the simulator with these of samples/servers; `hanging` ones take connections and answer nothing.
    void serve(const std::vector<std::string>& names, const std::vector<std::string>& hanging = {});

    // "127.0.0.1:port", as users write it.
    std::string address(const std::string& name) const;

    // The name of the target's folder, without how it ended.
    std::string folder(const std::string& name) const;

    // The words of a comparison of the sample repository into "out".
    static std::vector<std::string> compareWords(const std::vector<std::string>& more);
    test_support::ProcessOutcome compare(const std::vector<std::string>& more) const;

    bool exists(const std::string& name) const;

    // Neither the texts nor any file of the run holds the secret.
    void expectNoSecret(const std::string& screen, const std::string& secret) const;

    ProgramTree tree_;

  private:
    std::unique_ptr<test_support::BackgroundProcess> simulator_;
    std::map<std::string, std::string> addresses_;
};
