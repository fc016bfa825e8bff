#include "update_services/package_selection.h"

#include "repository/dependency_graph.h"
#include "repository/package_fields.h"
#include "text/text.h"
#include "update_services/package_choice.h"
#include "update_services/requisites.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace update_services
{
namespace
{
using service::ComparedChild;
using service::ComparedPackage;
using service::CompareOptions;
using service::PackageInfo;
using service::QueryReport;

constexpr std::int32_t kAllTypes = 99;

bool contains(const std::vector<std::string>& ids, const std::string& id)
{
    return std::any_of(ids.begin(), ids.end(), [&id](const std::string& entry) { return text::trim(entry) == id; });
}

// One child of one package that is to be updated.
struct Claim
{
    std::size_t package = 0;
    std::size_t child = 0;
};

class Selector
{
  public:
    Selector(const QueryReport& query, const InstalledItems& installed, const CompareOptions& options)
        : query_(query), installed_(installed), options_(options), scope_(parseScope(query.options.scope)),
          decisions_(query.packages.size())
    {
    }

    std::vector<ComparedPackage> run()
    {
        for (std::size_t index = 0; index < query_.packages.size(); ++index)
        {
            packages_.push_back(comparePackage(query_.packages[index], decisions_[index]));
        }
        if (!options_.noSupersede)
        {
            supersede();
        }
        refuseAgentBound();
        const std::vector<std::vector<Need>> needs = collectNeeds(packages_);
        applyRequisites(needs);
        settleRivals();
        applyRequisites(needs);
        conclude();
        describeNeeds(needs, decisions_, packages_);
        return std::move(packages_);
    }

  private:
    bool pulledIn(const PackageInfo& info) const
    {
        if (contains(query_.options.includeIds, info.updateId))
        {
            return false;
        }
        switch (scope_)
        {
        case Scope::Velpak:
            return info.velpakXml.empty();
        case Scope::Individual:
            return true;
        case Scope::Latest:
        case Scope::Unknown:
            break;
        }
        const std::vector<std::int32_t>& codes = query_.options.typeCodes;
        return !codes.empty() &&
               std::none_of(codes.begin(), codes.end(),
                            [&info](std::int32_t code) { return code == kAllTypes || code == info.type; });
    }

    ComparedPackage comparePackage(const PackageInfo& info, Decision& decision) const
    {
        decision.forcedById = contains(query_.options.forceIds, info.updateId);
        decision.excluded = contains(query_.options.excludeIds, info.updateId);
        decision.pulledIn = pulledIn(info);
        const bool forced = decision.forcedById || query_.options.forceAll;
        ComparedChildren compared = compareChildren(info, installed_, options_, forced);
        decision.reason = decision.excluded ? UnselectedReason::Excluded : compared.reason;
        decision.detected = compared.detected;
        decision.nothingToDo = compared.reason == UnselectedReason::UpToDate ||
                               compared.reason == UnselectedReason::InstalledNewer ||
                               compared.reason == UnselectedReason::NotDetected;

        ComparedPackage package;
        package.package = info;
        package.package.packageVersion = repository::versionPhrase(info.name, info.packageVersion);
        package.children = std::move(compared.children);
        package.outcome = compared.outcome;
        package.forceId = forced ? 1 : 0;
        return package;
    }

    bool agentBound(const PackageInfo& info) const
    {
        return query_.options.remote && text::toLower(text::trim(info.agentlessSupport)) != "true";
    }

    // A package that could itself not be applied takes no other one's place.
    bool maySupersede(std::size_t package) const
    {
        const Decision& decision = decisions_[package];
        return decision.detected && !decision.excluded && !decision.pulledIn && !agentBound(packages_[package].package);
    }

    void supersede()
    {
        std::unordered_map<std::string, std::size_t> index;
        for (std::size_t package = 0; package < packages_.size(); ++package)
        {
            index.emplace(packages_[package].package.updateId, package);
        }
        repository::DependencyGraph graph(packages_.size());
        std::vector<std::pair<std::size_t, std::size_t>> edges;
        for (std::size_t package = 0; package < packages_.size(); ++package)
        {
            for (const std::string& id : repository::idList(packages_[package].package.supersede))
            {
                const auto found = index.find(id);
                if (found != index.end() && maySupersede(package))
                {
                    graph.add(package, found->second);
                    edges.emplace_back(package, found->second);
                }
            }
        }
        // Packages that supersede each other in a circle are all left alone.
        const std::vector<std::size_t> group = graph.groups();
        for (const auto& [newer, older] : edges)
        {
            Decision& decision = decisions_[older];
            if (group[newer] != group[older] && decision.reason == UnselectedReason::None && !decision.forcedById)
            {
                decision.reason = UnselectedReason::Superseded;
                decision.replacedBy = newer;
            }
        }
    }

    void refuseAgentBound()
    {
        for (std::size_t package = 0; package < packages_.size(); ++package)
        {
            if (decisions_[package].reason == UnselectedReason::None && agentBound(packages_[package].package))
            {
                decisions_[package].reason = UnselectedReason::NotAgentless;
            }
        }
    }

    void applyRequisites(const std::vector<std::vector<Need>>& needs)
    {
        const UnselectedReason unneeded =
            scope_ == Scope::Velpak ? UnselectedReason::NotInPack : UnselectedReason::NotAskedFor;
        if (options_.noReq || query_.options.noReq)
        {
            applyNeeds(std::vector<std::vector<Need>>(needs.size()), unneeded, decisions_);
            return;
        }
        applyNeeds(needs, unneeded, decisions_);
    }

    static std::string deviceKey(const ComparedChild& child)
    {
        return text::toLower(text::trim(child.update.softwareId)) + '\n' + child.instanceId + '\n' + child.slotNumber;
    }

    bool beats(const Claim& challenger, const Claim& holder) const
    {
        const bool challengerForced = decisions_[challenger.package].forcedById;
        if (challengerForced != decisions_[holder.package].forcedById)
        {
            return challengerForced;
        }
        return compareWithInstalled(packages_[challenger.package].children[challenger.child].update,
                                    packages_[holder.package].children[holder.child].update.newVersion) ==
               service::VersionOutcome::Newer;
    }

    void settleDevice(const std::vector<Claim>& claims)
    {
        Claim winner = claims.front();
        for (const Claim& claim : claims)
        {
            if (claim.package != winner.package && beats(claim, winner))
            {
                winner = claim;
            }
        }
        for (const Claim& claim : claims)
        {
            Decision& decision = decisions_[claim.package];
            if (claim.package == winner.package || decision.forcedById)
            {
                continue;
            }
            std::vector<ComparedChild>& children = packages_[claim.package].children;
            children[claim.child].selected = 0;
            children[claim.child].unselectedReason = reasonText(UnselectedReason::DeviceTaken);
            if (std::none_of(children.begin(), children.end(),
                             [](const ComparedChild& child) { return child.selected == 1; }))
            {
                decision.reason = UnselectedReason::DeviceTaken;
                decision.replacedBy = winner.package;
            }
        }
    }

    // Each device is updated once: by the package that is forced, else by the newest, else by the first.
    void settleRivals()
    {
        std::map<std::string, std::vector<Claim>> claims;
        for (std::size_t package = 0; package < packages_.size(); ++package)
        {
            const std::vector<ComparedChild>& children = packages_[package].children;
            for (std::size_t child = 0; child < children.size(); ++child)
            {
                if (decisions_[package].reason == UnselectedReason::None && children[child].selected == 1)
                {
                    claims[deviceKey(children[child])].push_back({package, child});
                }
            }
        }
        for (const auto& device : claims)
        {
            settleDevice(device.second);
        }
    }

    void conclude()
    {
        for (std::size_t index = 0; index < packages_.size(); ++index)
        {
            ComparedPackage& package = packages_[index];
            package.selected = decisions_[index].reason == UnselectedReason::None ? 1 : 0;
            package.unselectedReason = reasonText(decisions_[index].reason);
            for (ComparedChild& child : package.children)
            {
                child.selected = package.selected == 1 ? child.selected : 0;
                // What stands against the package alone stands against all of it.
                if (child.selected == 0 && child.unselectedReason.empty())
                {
                    child.unselectedReason = package.unselectedReason;
                }
            }
        }
    }

    const QueryReport& query_;
    const InstalledItems& installed_;
    const CompareOptions& options_;
    Scope scope_;
    std::vector<ComparedPackage> packages_;
    std::vector<Decision> decisions_;
};
} // namespace

std::vector<ComparedPackage> selectPackages(const QueryReport& query, const InstalledItems& installed,
                                            const CompareOptions& options)
{
    return Selector(query, installed, options).run();
}
} // namespace update_services
