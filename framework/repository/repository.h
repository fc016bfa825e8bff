#pragma once

#include "repository/package_descriptor.h"

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace repository
{
constexpr std::size_t kMaxDescriptors = 100000;

// Names of the descriptor files of a directory, sorted. False, with the reason, when it cannot be read.
bool listDescriptors(const std::string& directory, std::vector<std::string>& names, std::string& error);

// All descriptors of one directory, in the order of their file names. Never changes once read; any thread may use it.
class Repository
{
  public:
    // The repository of a directory, which may end in separators of either kind. The directory is read once per process
    // and shared, so that all targets of a run see the same state; callers that come meanwhile wait for the first.
    // A descriptor that is broken is logged and left out. Null, with the reason, when the directory itself cannot be
    // read; that is tried anew each time.
    static std::shared_ptr<const Repository> open(const std::string& directory, std::string& error);

    // Makes the next open read its directory again; what was handed out before stays valid.
    static void forget();

    // How many descriptors this process has read in all.
    static std::size_t descriptorsRead();

    const std::vector<Package>& packages() const { return packages_; }
    const std::vector<Velpak>& velpaks() const { return velpaks_; }

    // Null when there is none of this id.
    const Package* find(const std::string& updateId) const;

    // The newest update pack for one of the systems, by release date and then by file name; null when there is none.
    const Velpak* findVelpak(const std::vector<System>& systems, const std::string& machineType,
                             bool anyMachineTypeAndOs) const;

  private:
    static std::shared_ptr<const Repository> read(const std::string& directory, std::string& error);
    void add(Descriptor&& descriptor, const std::string& path);

    std::vector<Package> packages_;
    std::vector<Velpak> velpaks_;
    std::unordered_map<std::string, std::size_t> byId_;
};
} // namespace repository
