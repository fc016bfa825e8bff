#include "update_services/requisites.h"

#include "repository/dependency_graph.h"
#include "repository/package_fields.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <unordered_map>

namespace update_services
{
namespace
{
using service::ComparedPackage;

constexpr char kSource[] = "framework/update_services/requisites";

using IdIndex = std::unordered_map<std::string, std::size_t>;

IdIndex indexById(const std::vector<ComparedPackage>& packages)
{
    IdIndex index;
    for (std::size_t package = 0; package < packages.size(); ++package)
    {
        index.emplace(packages[package].package.updateId, package);
    }
    for (std::size_t package = 0; package < packages.size(); ++package)
    {
        for (const std::string& id : repository::idList(packages[package].package.supersede))
        {
            index.emplace(id, package);
        }
    }
    return index;
}

void addNeeds(const IdIndex& index, std::size_t package, const std::string& ids, NeedKind kind,
              std::vector<Need>& needs)
{
    for (const std::string& id : repository::idList(ids))
    {
        const auto found = index.find(id);
        if (found == index.end())
        {
            needs.push_back({kNoPackage, kind, id});
        }
        else if (found->second != package)
        {
            needs.push_back({found->second, kind, id});
        }
    }
}

bool selected(const Decision& decision)
{
    return decision.reason == UnselectedReason::None;
}

// A device that the target lacks asks for nothing: bundles name the requisites of all their variants.
bool met(const Decision& decision)
{
    return selected(decision) || decision.nothingToDo;
}

UnselectedReason unmetReason(const Need& need)
{
    const bool missing = need.package == kNoPackage;
    if (need.kind == NeedKind::Before)
    {
        return missing ? UnselectedReason::PrerequisiteMissing : UnselectedReason::PrerequisiteNotSelected;
    }
    return missing ? UnselectedReason::RequisiteMissing : UnselectedReason::RequisiteNotSelected;
}

const Need* firstUnmet(const std::vector<Need>& needs, const std::vector<Decision>& decisions)
{
    for (const Need& need : needs)
    {
        if (need.package == kNoPackage || !met(decisions[effective(decisions, need.package)]))
        {
            return &need;
        }
    }
    return nullptr;
}

void deselectUnmet(const std::vector<std::vector<Need>>& needs, std::vector<Decision>& decisions)
{
    std::vector<std::vector<std::size_t>> dependents(needs.size());
    std::vector<std::size_t> pending;
    for (std::size_t package = 0; package < needs.size(); ++package)
    {
        pending.push_back(package);
        for (const Need& need : needs[package])
        {
            if (need.package != kNoPackage)
            {
                dependents[effective(decisions, need.package)].push_back(package);
            }
        }
    }
    while (!pending.empty())
    {
        const std::size_t package = pending.back();
        pending.pop_back();
        const Need* unmet = selected(decisions[package]) ? firstUnmet(needs[package], decisions) : nullptr;
        if (unmet == nullptr)
        {
            continue;
        }
        decisions[package].reason = unmetReason(*unmet);
        KORVAN_LOG(3, kSource) << "a package needs " << unmet->id << ", which is missing or cannot be applied";
        pending.insert(pending.end(), dependents[package].begin(), dependents[package].end());
    }
}

void deselectUnneeded(const std::vector<std::vector<Need>>& needs, UnselectedReason reason,
                      std::vector<Decision>& decisions)
{
    std::vector<bool> wanted(decisions.size(), false);
    std::vector<std::size_t> pending;
    for (std::size_t package = 0; package < decisions.size(); ++package)
    {
        if (selected(decisions[package]) && !decisions[package].pulledIn)
        {
            wanted[package] = true;
            pending.push_back(package);
        }
    }
    while (!pending.empty())
    {
        const std::size_t package = pending.back();
        pending.pop_back();
        for (const Need& need : needs[package])
        {
            const std::size_t needed = need.package == kNoPackage ? kNoPackage : effective(decisions, need.package);
            if (needed != kNoPackage && !wanted[needed])
            {
                wanted[needed] = true;
                pending.push_back(needed);
            }
        }
    }
    for (std::size_t package = 0; package < decisions.size(); ++package)
    {
        if (selected(decisions[package]) && !wanted[package])
        {
            decisions[package].reason = reason;
        }
    }
}

bool failedForNeeds(UnselectedReason reason)
{
    return reason == UnselectedReason::PrerequisiteNotSelected || reason == UnselectedReason::RequisiteNotSelected;
}

void appendId(std::string& list, const std::string& id)
{
    if (!list.empty())
    {
        list += ',';
    }
    list += id;
}

void describePair(const Decision& dependent, const Decision& needed, ComparedPackage& dependentPackage,
                  ComparedPackage& neededPackage)
{
    if (selected(dependent) && selected(needed))
    {
        appendId(dependentPackage.alsoSelect, neededPackage.package.updateId);
        appendId(neededPackage.alsoDeselect, dependentPackage.package.updateId);
    }
    else if (failedForNeeds(dependent.reason) && !met(needed))
    {
        appendId(neededPackage.alsoDeselect, dependentPackage.package.updateId);
    }
}

void logCircles(const repository::DependencyGraph& graph, const std::vector<ComparedPackage>& packages)
{
    for (const std::vector<std::size_t>& circle : graph.circles())
    {
        std::vector<std::string> ids;
        ids.reserve(circle.size());
        for (const std::size_t package : circle)
        {
            ids.push_back(packages[package].package.updateId);
        }
        KORVAN_LOG(1, kSource) << "The prerequisites of these packages form a circle and are not followed: "
                               << text::join(ids, ", ");
    }
}
} // namespace

std::vector<std::vector<Need>> collectNeeds(const std::vector<ComparedPackage>& packages)
{
    const IdIndex index = indexById(packages);
    std::vector<std::vector<Need>> result(packages.size());
    for (std::size_t package = 0; package < packages.size(); ++package)
    {
        const service::PackageInfo& info = packages[package].package;
        addNeeds(index, package, info.prerequisite, NeedKind::Before, result[package]);
        addNeeds(index, package, info.corequisite, NeedKind::Together, result[package]);
        addNeeds(index, package, info.requisite, NeedKind::Together, result[package]);
    }
    return result;
}

std::size_t effective(const std::vector<Decision>& decisions, std::size_t package)
{
    // Replacements may point at each other; a chain is never longer than the report.
    for (std::size_t step = 0;
         step < decisions.size() && decisions[package].replacedBy != kNoPackage && !selected(decisions[package]);
         ++step)
    {
        package = decisions[package].replacedBy;
    }
    return package;
}

void applyNeeds(const std::vector<std::vector<Need>>& needs, UnselectedReason reasonForPulledIn,
                std::vector<Decision>& decisions)
{
    deselectUnmet(needs, decisions);
    deselectUnneeded(needs, reasonForPulledIn, decisions);
}

void describeNeeds(const std::vector<std::vector<Need>>& needs, const std::vector<Decision>& decisions,
                   std::vector<ComparedPackage>& packages)
{
    repository::DependencyGraph graph(packages.size());
    for (std::size_t package = 0; package < packages.size(); ++package)
    {
        for (const Need& need : needs[package])
        {
            const std::size_t needed = need.package == kNoPackage ? package : effective(decisions, need.package);
            if (needed == package)
            {
                continue;
            }
            describePair(decisions[package], decisions[needed], packages[package], packages[needed]);
            if (need.kind == NeedKind::Before && selected(decisions[package]) && selected(decisions[needed]))
            {
                graph.add(package, needed);
            }
        }
    }
    logCircles(graph, packages);
    std::int32_t next = 1;
    for (const std::size_t package : graph.order())
    {
        packages[package].flashOrder = selected(decisions[package]) ? next++ : 0;
    }
}
} // namespace update_services
