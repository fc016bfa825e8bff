#include "resource_store.h"

#include "simulator_error.h"
#include "text_file.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <system_error>

namespace simulator
{
namespace
{
namespace fs = std::filesystem;

constexpr std::size_t kMostResources = 50000;
constexpr std::size_t kMostResourceBytes = std::size_t{8} << 20U;
constexpr int kMostDepth = 32;

std::string readResource(const fs::path& file)
{
    std::string content = readTextFile(file.string(), kMostResourceBytes, "resource");
    if (!nlohmann::json::parse(content, nullptr, false).is_object())
    {
        throw SimulatorError("resource '" + file.string() + "' is no JSON object");
    }
    return content;
}
} // namespace

std::shared_ptr<const ResourceStore> ResourceStore::load(const std::string& folder)
{
    const fs::path base(folder);
    std::error_code error;
    fs::path root = base / "redfish" / "v1";
    if (!fs::is_directory(root, error))
    {
        root = base;
    }
    if (!fs::is_regular_file(root / "index.json", error))
    {
        throw SimulatorError("folder '" + folder + "' holds no redfish/v1/index.json");
    }
    auto store = std::make_shared<ResourceStore>();
    fs::recursive_directory_iterator walk(root, error);
    for (const fs::recursive_directory_iterator end; !error && walk != end; walk.increment(error))
    {
        if (walk->is_symlink() || walk.depth() > kMostDepth)
        {
            walk.disable_recursion_pending();
            continue;
        }
        if (walk->path().filename() != "index.json" || !walk->is_regular_file())
        {
            continue;
        }
        const std::string relative = walk->path().parent_path().lexically_relative(root).generic_string();
        const std::string path = relative == "." ? "/redfish/v1" : "/redfish/v1/" + relative;
        store->resources_[path] = readResource(walk->path());
        if (store->resources_.size() > kMostResources)
        {
            throw SimulatorError("folder '" + folder + "' holds more than " + std::to_string(kMostResources) +
                                 " resources");
        }
    }
    if (error)
    {
        throw SimulatorError("folder '" + folder + "' cannot be read: " + error.message());
    }
    return store;
}

const std::string* ResourceStore::find(const std::string& path) const
{
    const auto found = resources_.find(path);
    return found == resources_.end() ? nullptr : &found->second;
}
} // namespace simulator
