#include "fleet_config.h"

#include "config_reader.h"
#include "controller_switches.h"
#include "loopback.h"
#include "simulator_error.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <set>
#include <utility>

namespace simulator
{
namespace
{
namespace fs = std::filesystem;
using nlohmann::json;

constexpr std::size_t kMostControllers = 20000;
constexpr std::uint64_t kMostLatency = 3600000;

// Absolute and without a separator at the end, so that its last part is the server's name.
std::string wholeFolder(const fs::path& folder)
{
    const fs::path whole = fs::absolute(folder).lexically_normal();
    return (whole.has_filename() ? whole : whole.parent_path()).string();
}

// The folder's own habits, checked on their own so that an error names simulator.json.
json folderHabits(const std::string& folder)
{
    const fs::path file = fs::path(folder) / "simulator.json";
    std::error_code error;
    if (!fs::exists(file, error))
    {
        return json::object();
    }
    json habits = readJsonFile(file.string(), "behaviour file");
    ConfigReader reader(habits, "behaviour file '" + file.string() + "'");
    reader.member("latency_ms");
    reader.member("behaviour");
    reader.member("faults");
    reader.finish();
    return habits;
}

ControllerConfig readController(const json& object, const std::string& where, const std::string& folder)
{
    ControllerConfig config;
    ConfigReader reader(object, where);
    config.folder = folder;
    config.name = reader.text("name", fs::path(folder).filename().string());
    if (config.name.empty() || config.name.find_first_of(" \t\r\n") != std::string::npos)
    {
        reader.fail("name", "must be a text without blanks");
    }
    config.address = reader.text("address", config.address);
    config.port = static_cast<std::uint16_t>(reader.number("port", config.port, UINT16_MAX));
    config.tls = reader.flag("tls", config.tls);
    config.user = reader.text("user", "");
    config.password = reader.text("password", "");
    config.latency = std::chrono::milliseconds(reader.number("latency_ms", 0, kMostLatency));
    if (const json* behaviour = reader.member("behaviour"))
    {
        config.behaviour = readBehaviour(*behaviour, where + ", behaviour");
    }
    if (const json* faults = reader.member("faults"))
    {
        if (!faults->is_array())
        {
            reader.fail("faults", "must be a list");
        }
        for (std::size_t i = 0; i < faults->size(); ++i)
        {
            config.faults.push_back(readFault((*faults)[i], where + ", fault " + std::to_string(i + 1)));
        }
    }
    reader.member("folder");
    reader.member("count");
    reader.member("step");
    reader.finish();
    return config;
}

std::vector<ControllerConfig> readEntry(const json& entry, const json& defaults, const fs::path& base,
                                        const std::string& where)
{
    ConfigReader reader(entry, where);
    if (!reader.has("folder"))
    {
        reader.fail("folder", "is missing");
    }
    const std::string folder = wholeFolder(base / reader.text("folder", ""));
    json merged = defaults;
    merged.merge_patch(folderHabits(folder));
    merged.merge_patch(entry);
    ConfigReader mergedReader(merged, where);
    const ControllerConfig first = readController(merged, where, folder);
    if (first.behaviour.authentication != Authentication::None && (first.user.empty() || first.password.empty()))
    {
        reader.fail("user", "and \"password\" are needed, here or in \"defaults\"");
    }
    const std::size_t count = mergedReader.number("count", 1, kMostControllers);
    const CopyStep step = mergedReader.choice("step", {"address", "port"}, 0) == 0 ? CopyStep::Address : CopyStep::Port;
    return copies(first, count, step);
}
} // namespace

std::vector<ControllerConfig> loadFleet(const std::string& path)
{
    const json fleet = readJsonFile(path, "fleet file");
    const std::string where = "fleet file '" + path + "'";
    ConfigReader reader(fleet, where);
    const json* defaults = reader.member("defaults");
    const json* entries = reader.member("controllers");
    reader.finish();
    if (entries == nullptr || !entries->is_array() || entries->empty())
    {
        reader.fail("controllers", "must be a list of at least one controller");
    }
    std::vector<ControllerConfig> all;
    std::set<std::string> names;
    for (std::size_t i = 0; i < entries->size(); ++i)
    {
        const std::string place = where + ", controller " + std::to_string(i + 1);
        for (ControllerConfig& config : readEntry((*entries)[i], defaults == nullptr ? json::object() : *defaults,
                                                  fs::path(path).parent_path(), place))
        {
            if (!names.insert(config.name).second)
            {
                throw SimulatorError(place + ": the name '" + config.name + "' is taken");
            }
            all.push_back(std::move(config));
        }
        if (all.size() > kMostControllers)
        {
            throw SimulatorError(where + ": more than " + std::to_string(kMostControllers) + " controllers");
        }
    }
    return all;
}

ControllerConfig loadSingle(const std::string& folder)
{
    const std::string whole = wholeFolder(folder);
    return readController(folderHabits(whole), "behaviour file of '" + folder + "'", whole);
}

std::vector<ControllerConfig> copies(const ControllerConfig& first, std::size_t count, CopyStep step)
{
    std::vector<ControllerConfig> all;
    loopbackAddress(first.address);
    for (std::size_t i = 0; i < count; ++i)
    {
        ControllerConfig copy = first;
        if (count > 1)
        {
            copy.name += "-" + std::to_string(i + 1);
        }
        if (step == CopyStep::Address)
        {
            copy.address = addressAfter(first.address, static_cast<std::uint32_t>(i));
        }
        else if (first.port != 0)
        {
            if (first.port + i > UINT16_MAX)
            {
                throw SimulatorError("controller '" + first.name + "': its copies need ports above 65535");
            }
            copy.port = static_cast<std::uint16_t>(first.port + i);
        }
        all.push_back(std::move(copy));
    }
    return all;
}
} // namespace simulator
