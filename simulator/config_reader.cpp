#include "config_reader.h"

#include "simulator_error.h"
#include "text_file.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace simulator
{
namespace
{
constexpr std::size_t kMostConfigBytes = std::size_t{4} << 20U;
} // namespace

ConfigReader::ConfigReader(const nlohmann::json& object, std::string where) : object_(object), where_(std::move(where))
{
    if (!object_.is_object())
    {
        throw SimulatorError(where_ + ": a JSON object is expected here");
    }
}

bool ConfigReader::has(const char* key)
{
    return member(key) != nullptr;
}

const nlohmann::json* ConfigReader::member(const char* key)
{
    known_.insert(key);
    const auto found = object_.find(key);
    return found == object_.end() ? nullptr : &*found;
}

std::string ConfigReader::text(const char* key, const std::string& fallback)
{
    const nlohmann::json* value = member(key);
    if (value == nullptr)
    {
        return fallback;
    }
    if (!value->is_string())
    {
        fail(key, "must be a text");
    }
    return value->get<std::string>();
}

bool ConfigReader::flag(const char* key, bool fallback)
{
    const nlohmann::json* value = member(key);
    if (value == nullptr)
    {
        return fallback;
    }
    if (!value->is_boolean())
    {
        fail(key, "must be true or false");
    }
    return value->get<bool>();
}

std::uint64_t ConfigReader::number(const char* key, std::uint64_t fallback, std::uint64_t most)
{
    const nlohmann::json* value = member(key);
    if (value == nullptr)
    {
        return fallback;
    }
    if (!value->is_number_integer() || (!value->is_number_unsigned() && value->get<std::int64_t>() < 0) ||
        value->get<std::uint64_t>() > most)
    {
        fail(key, "must be a whole number from 0 to " + std::to_string(most));
    }
    return value->get<std::uint64_t>();
}

std::size_t ConfigReader::choice(const char* key, const std::vector<std::string>& names, std::size_t fallback)
{
    if (!has(key))
    {
        return fallback;
    }
    const std::string value = text(key, "");
    std::string all;
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        if (names[i] == value)
        {
            return i;
        }
        all += (i == 0 ? "" : ", ") + names[i];
    }
    fail(key, "must be one of: " + all);
}

void ConfigReader::finish() const
{
    for (const auto& item : object_.items())
    {
        if (known_.count(item.key()) == 0)
        {
            fail(item.key(), "is not known");
        }
    }
}

void ConfigReader::fail(const std::string& key, const std::string& why) const
{
    throw SimulatorError(where_ + ": \"" + key + "\" " + why);
}

nlohmann::json readJsonFile(const std::string& path, const std::string& what)
{
    nlohmann::json value = nlohmann::json::parse(readTextFile(path, kMostConfigBytes, what), nullptr, false);
    if (value.is_discarded())
    {
        throw SimulatorError(what + " '" + path + "' is not valid JSON");
    }
    return value;
}
} // namespace simulator
