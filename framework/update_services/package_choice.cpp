#include "update_services/package_choice.h"

#include "repository/package_fields.h"
#include "repository/version.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace update_services
{
namespace
{
using repository::Package;
using repository::Repository;
using repository::VersionOrder;
using service::PackageInfo;
using service::QueryOptions;

constexpr char kSource[] = "framework/update_services/package_choice";
constexpr std::int32_t kAllTypes = 99;
constexpr std::uint32_t kRhel6 = 208;

std::set<std::string> idSet(const std::vector<std::string>& ids)
{
    std::set<std::string> result;
    for (const std::string& id : ids)
    {
        const std::string trimmed = text::trim(id);
        if (!trimmed.empty())
        {
            result.insert(trimmed);
        }
    }
    return result;
}

class Chooser
{
  public:
    Chooser(const Repository& repository, const QueryOptions& options, Scope scope)
        : repository_(repository), options_(options), scope_(scope), included_(idSet(options.includeIds)),
          excluded_(idSet(options.excludeIds)), systems_{{options.osType, options.osArch, options.osMinorVersion}}
    {
        // The packs for this controller and the platform are made for RHEL 6.
        if (scope == Scope::Velpak && text::toLower(options.bmcType) == "pmx2" &&
            options.osType == repository::kPlatformOs)
        {
            systems_.push_back({kRhel6, options.osArch, std::string()});
        }
    }

    PackageChoice run()
    {
        chooseByScope();
        chooseIncluded();
        if (!options_.noReq)
        {
            chooseRequisites();
        }
        return collect();
    }

  private:
    bool fitsPlatform(const Package& package) const
    {
        const repository::Applicability& fits = package.appliesTo;
        if (!options_.ignoreMtOsCheck && !fits.fitsMachineType(options_.machineType))
        {
            return false;
        }
        return std::any_of(systems_.begin(), systems_.end(),
                           [&](const repository::System& system)
                           { return (options_.ignoreMtOsCheck || fits.fitsOs(system)) && fits.fitsArch(system); });
    }

    bool fitsType(const Package& package) const
    {
        const auto& codes = options_.typeCodes;
        return std::find(codes.begin(), codes.end(), kAllTypes) != codes.end() ||
               std::find(codes.begin(), codes.end(), package.info.type) != codes.end();
    }

    void chooseByScope()
    {
        if (scope_ == Scope::Latest)
        {
            chooseLatest();
        }
        else if (scope_ == Scope::Velpak)
        {
            chooseVelpak();
        }
    }

    void chooseVelpak()
    {
        const repository::Velpak* velpak =
            repository_.findVelpak(systems_, options_.machineType, options_.ignoreMtOsCheck);
        if (velpak == nullptr)
        {
            KORVAN_LOG(3, kSource) << "no update pack for " << options_.machineType;
            return;
        }
        choice_.velpakFile = velpak->file;
        for (const std::string& id : velpak->updateIds)
        {
            const Package* package = repository_.find(id);
            if (package == nullptr)
            {
                KORVAN_LOG(2, kSource) << velpak->file << " names " << id << ", which the repository does not hold";
            }
            else if (fitsPlatform(*package) && fitsType(*package))
            {
                chosen_.insert(id);
                ofVelpak_.insert(id);
            }
        }
    }

    // Packages compete when they update the same devices: same type, component and software ids.
    static std::string rivalKey(const PackageInfo& info)
    {
        std::set<std::string> softwareIds;
        for (const service::PackageChild& child : info.children)
        {
            softwareIds.insert(text::toLower(child.softwareId));
        }
        std::string key = std::to_string(info.type) + '\n' + text::toLower(info.component);
        for (const std::string& id : softwareIds)
        {
            key += '\n' + id;
        }
        return key;
    }

    static std::map<std::string, const service::PackageChild*> childrenById(const PackageInfo& info)
    {
        std::map<std::string, const service::PackageChild*> result;
        for (const service::PackageChild& child : info.children)
        {
            result.emplace(text::toLower(child.softwareId), &child);
        }
        return result;
    }

    // Newer when no child of the left package is older and one is newer; release dates decide between equals.
    static VersionOrder orderOf(const PackageInfo& left, const PackageInfo& right)
    {
        const auto leftChildren = childrenById(left);
        const auto rightChildren = childrenById(right);
        VersionOrder order = VersionOrder::Same;
        for (const auto& [id, child] : leftChildren)
        {
            const service::PackageChild& other = *rightChildren.at(id);
            const auto style = child->hexVersion && other.hexVersion ? repository::VersionStyle::Hexadecimal
                                                                     : repository::VersionStyle::Decimal;
            const VersionOrder childOrder = repository::compareVersions(child->newVersion, other.newVersion, style);
            if (childOrder == VersionOrder::NotComparable ||
                (order != VersionOrder::Same && childOrder != VersionOrder::Same && childOrder != order))
            {
                return VersionOrder::NotComparable;
            }
            order = childOrder == VersionOrder::Same ? order : childOrder;
        }
        return order != VersionOrder::Same ? order
                                           : repository::compareVersions(left.releaseDate, right.releaseDate,
                                                                         repository::VersionStyle::Decimal);
    }

    static bool supersedes(const PackageInfo& left, const PackageInfo& right)
    {
        const std::vector<std::string> ids = repository::idList(left.supersede);
        return std::find(ids.begin(), ids.end(), right.updateId) != ids.end();
    }

    // A package does not lose its place to one that it supersedes, whatever the versions; the comparison decides.
    static VersionOrder rankOf(const PackageInfo& left, const PackageInfo& right)
    {
        const VersionOrder order = orderOf(left, right);
        const bool contradicted = (order == VersionOrder::Newer && supersedes(right, left)) ||
                                  (order == VersionOrder::Older && supersedes(left, right));
        return contradicted ? VersionOrder::NotComparable : order;
    }

    static void addToNewest(std::vector<const Package*>& newest, const Package& package)
    {
        for (const Package* kept : newest)
        {
            if (rankOf(kept->info, package.info) == VersionOrder::Newer)
            {
                return;
            }
        }
        newest.erase(std::remove_if(newest.begin(), newest.end(),
                                    [&package](const Package* kept)
                                    { return rankOf(kept->info, package.info) == VersionOrder::Older; }),
                     newest.end());
        newest.push_back(&package);
    }

    void chooseLatest()
    {
        std::map<std::string, std::vector<const Package*>> newestOf;
        for (const Package& package : repository_.packages())
        {
            if (!fitsPlatform(package) || !fitsType(package))
            {
                continue;
            }
            if (excluded_.count(package.info.updateId) != 0)
            {
                chosen_.insert(package.info.updateId); // shown as excluded; the next newest takes its place
                continue;
            }
            addToNewest(newestOf[rivalKey(package.info)], package);
        }
        for (const auto& rivals : newestOf)
        {
            for (const Package* package : rivals.second)
            {
                chosen_.insert(package->info.updateId);
            }
        }
    }

    void chooseIncluded()
    {
        for (const std::string& id : included_)
        {
            const Package* package = repository_.find(id);
            if (package == nullptr)
            {
                choice_.missingIds.push_back(id);
            }
            else if (!fitsPlatform(*package))
            {
                choice_.unfitIds.push_back(id);
            }
            else
            {
                chosen_.insert(id);
            }
        }
    }

    // What the chosen packages need, and what that needs in turn.
    void chooseRequisites()
    {
        std::vector<std::string> pending(chosen_.begin(), chosen_.end());
        while (!pending.empty())
        {
            const Package* package = repository_.find(pending.back());
            pending.pop_back();
            const PackageInfo& info = package->info;
            for (const std::string* list : {&info.prerequisite, &info.corequisite, &info.requisite})
            {
                for (const std::string& id : repository::idList(*list))
                {
                    const Package* needed = repository_.find(id);
                    if (needed != nullptr && fitsPlatform(*needed) && chosen_.insert(id).second)
                    {
                        pending.push_back(id);
                    }
                }
            }
        }
    }

    PackageChoice collect()
    {
        for (const Package& package : repository_.packages())
        {
            if (chosen_.count(package.info.updateId) == 0)
            {
                continue;
            }
            choice_.packages.push_back(package.info);
            if (ofVelpak_.count(package.info.updateId) != 0)
            {
                choice_.packages.back().velpakXml = choice_.velpakFile;
            }
        }
        return std::move(choice_);
    }

    const Repository& repository_;
    const QueryOptions& options_;
    Scope scope_;
    std::set<std::string> included_;
    std::set<std::string> excluded_;
    std::vector<repository::System> systems_;
    std::set<std::string> chosen_;
    std::set<std::string> ofVelpak_;
    PackageChoice choice_;
};
} // namespace

Scope parseScope(const std::string& scope)
{
    const std::string folded = text::toLower(text::trim(scope));
    if (folded.empty() || folded == "latest")
    {
        return Scope::Latest;
    }
    if (folded == "velpak")
    {
        return Scope::Velpak;
    }
    return folded == "individual" ? Scope::Individual : Scope::Unknown;
}

PackageChoice choosePackages(const Repository& repository, const QueryOptions& options, Scope scope)
{
    return Chooser(repository, options, scope).run();
}
} // namespace update_services
