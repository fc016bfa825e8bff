#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace simulator
{
// Reads the members of one JSON object of a configuration file. Every failure is a SimulatorError that begins with
// `where` (file and place in it). The object must outlive the reader.
class ConfigReader
{
  public:
    ConfigReader(const nlohmann::json& object, std::string where);

    bool has(const char* key);
    std::string text(const char* key, const std::string& fallback);
    bool flag(const char* key, bool fallback);
    std::uint64_t number(const char* key, std::uint64_t fallback, std::uint64_t most);

    // The place of the member's text in `names`.
    std::size_t choice(const char* key, const std::vector<std::string>& names, std::size_t fallback);

    // The member itself, nullptr when it is absent.
    const nlohmann::json* member(const char* key);

    // Refuses members that nobody asked for: a misspelt switch would otherwise be a switch that is off.
    void finish() const;

    [[noreturn]] void fail(const std::string& key, const std::string& why) const;

    const std::string& where() const { return where_; }

  private:
    const nlohmann::json& object_;
    std::string where_;
    std::set<std::string> known_;
};

// A whole file as JSON, at most 4 MiB. `what` names it in errors ("fleet file").
nlohmann::json readJsonFile(const std::string& path, const std::string& what);
} // namespace simulator
