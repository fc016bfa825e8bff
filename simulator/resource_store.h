#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>

namespace simulator
{
// The resources of one folder, read once and shared by all controllers that serve it. A request never touches the
// disk: it can name only what was found at the start. Immutable, so any thread may read.
class ResourceStore
{
  public:
    // `folder` holds redfish/v1/index.json, or is itself the service root (both layouts of public mockups). Symbolic
    // links are not followed. SimulatorError when there is no service root or a file is no JSON object.
    static std::shared_ptr<const ResourceStore> load(const std::string& folder);

    // The JSON text of a resource such as "/redfish/v1/Systems", without a slash at the end; nullptr when unknown.
    const std::string* find(const std::string& path) const;

    std::size_t size() const { return resources_.size(); }

  private:
    std::map<std::string, std::string> resources_;
};
} // namespace simulator
