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

    // One of samples/servers as an entry of a fleet file, with the keys of `more` added or replaced.
    static nlohmann::json controller(const std::string& name);
    static nlohmann::json controller(const std::string& name, const nlohmann::json& more);

    // Ends the simulator of before and starts one with these entries; afterwards `address` says where each one is.
    void serveEntries(const std::vector<nlohmann::json>& controllers);

    // These of samples/servers; the `hanging` ones take connections and answer nothing.
    void serve(const std::vector<std::string>& names, const std::vector<std::string>& hanging = {});

    // Ends the simulator; what it counted.
    nlohmann::json statistics();

    // "127.0.0.1:port", as users write it.
    std::string address(const std::string& name) const;

    // The name of the target's folder, without how it ended.
    std::string folder(const std::string& name) const;

    // "user:password@address".
    std::string login(const std::string& name, const std::string& password = kPassword) const;

    // The path of a target list with these servers.
    std::string targetList(const std::vector<std::string>& names, const std::string& password = kPassword) const;

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
