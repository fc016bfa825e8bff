#include "repository/repository.h"

#include "files/entries.h"
#include "files/files.h"
#include "interrupt.h"
#include "korvan_directory.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <iterator>
#include <map>
#include <mutex>
#include <utility>

namespace repository
{
namespace
{
constexpr char kSource[] = "framework/repository/repository";

// One directory of the cache; its mutex is held while the directory is read.
struct Slot
{
    std::mutex mutex;
    std::shared_ptr<const Repository> repository;
};

struct Cache
{
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<Slot>> slots;
};

Cache& cache()
{
    static Cache instance;
    return instance;
}

std::atomic<std::size_t>& readCounter()
{
    static std::atomic<std::size_t> counter{0};
    return counter;
}

std::shared_ptr<Slot> slotOf(const std::string& key)
{
    const std::lock_guard<std::mutex> lock(cache().mutex);
    std::shared_ptr<Slot>& slot = cache().slots[key];
    if (!slot)
    {
        slot = std::make_shared<Slot>();
    }
    return slot;
}

} // namespace

bool listDescriptors(const std::string& directory, std::vector<std::string>& names, std::string& error)
{
    std::vector<std::string> found;
    if (!files::listRegularFiles(directory, found, error))
    {
        return false;
    }
    std::copy_if(found.begin(), found.end(), std::back_inserter(names),
                 [](const std::string& name)
                 { return text::toLower(std::filesystem::path(name).extension().string()) == ".xml"; });
    std::sort(names.begin(), names.end());
    return true;
}

std::shared_ptr<const Repository> Repository::open(const std::string& directory, std::string& error)
{
    const std::string path = files::withoutTrailingSeparator(directory);
    const std::shared_ptr<Slot> slot = slotOf(KorvanDirectory::GetFullPath(path.empty() ? "." : path));
    const std::lock_guard<std::mutex> lock(slot->mutex);
    if (!slot->repository)
    {
        slot->repository = read(path.empty() ? "." : path, error);
    }
    return slot->repository;
}

void Repository::forget()
{
    const std::lock_guard<std::mutex> lock(cache().mutex);
    cache().slots.clear();
}

std::size_t Repository::descriptorsRead()
{
    return readCounter();
}

std::shared_ptr<const Repository> Repository::read(const std::string& directory, std::string& error)
{
    std::vector<std::string> names;
    if (!listDescriptors(directory, names, error))
    {
        return nullptr;
    }
    if (names.size() > kMaxDescriptors)
    {
        KORVAN_LOG(1, kSource) << directory << ": only the first " << kMaxDescriptors << " of " << names.size()
                               << " descriptors are read";
        names.resize(kMaxDescriptors);
    }
    auto result = std::make_shared<Repository>();
    for (const std::string& name : names)
    {
        if (interrupt::requested())
        {
            error = "interrupted by the user";
            return nullptr;
        }
        ++readCounter();
        result->add(readDescriptor(directory, name), (std::filesystem::path(directory) / name).string());
    }
    KORVAN_LOG(3, kSource) << directory << ": " << result->packages_.size() << " packages and "
                           << result->velpaks_.size() << " update packs in " << names.size() << " descriptors";
    return result;
}

void Repository::add(Descriptor&& descriptor, const std::string& path)
{
    for (const std::string& warning : descriptor.warnings)
    {
        KORVAN_LOG(2, kSource) << path << ": " << warning;
    }
    switch (descriptor.kind)
    {
    case DescriptorKind::Broken:
        KORVAN_LOG(1, kSource) << path << ": descriptor skipped: " << descriptor.error;
        return;
    case DescriptorKind::Foreign:
        KORVAN_LOG(2, kSource) << path << ": not a descriptor, skipped: " << descriptor.error;
        return;
    case DescriptorKind::Velpak:
        velpaks_.push_back(std::move(descriptor.velpak));
        return;
    case DescriptorKind::Package:
        break;
    }
    const auto inserted = byId_.emplace(descriptor.package.info.updateId, packages_.size());
    if (!inserted.second)
    {
        KORVAN_LOG(1, kSource) << path << ": descriptor skipped: the update id " << inserted.first->first
                               << " already stands in " << packages_[inserted.first->second].info.packageXml;
        return;
    }
    packages_.push_back(std::move(descriptor.package));
}

const Package* Repository::find(const std::string& updateId) const
{
    const auto found = byId_.find(updateId);
    return found == byId_.end() ? nullptr : &packages_[found->second];
}

const Velpak* Repository::findVelpak(const std::vector<System>& systems, const std::string& machineType,
                                     bool anyMachineTypeAndOs) const
{
    const Velpak* newest = nullptr;
    for (const Velpak& velpak : velpaks_)
    {
        const Applicability& fits = velpak.appliesTo;
        const bool applies =
            (anyMachineTypeAndOs || fits.fitsMachineType(machineType)) &&
            std::any_of(systems.begin(), systems.end(),
                        [&](const System& system)
                        { return (anyMachineTypeAndOs || fits.fitsOs(system)) && fits.fitsArch(system); });
        if (applies && (newest == nullptr || velpak.releaseDate >= newest->releaseDate))
        {
            newest = &velpak;
        }
    }
    return newest;
}
} // namespace repository
