#include "repository/repository_circles.h"

#include "repository/dependency_graph.h"
#include "repository/package_fields.h"
#include "text/text.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace repository
{
namespace
{
using service::PackageInfo;

constexpr std::size_t kMostNames = 100;

struct LinkField
{
    const char* element;
    std::string PackageInfo::*member;
};

constexpr LinkField kSupersede{"SUPERSEDE", &PackageInfo::supersede};
constexpr LinkField kPrerequisite{"PREREQUISITE", &PackageInfo::prerequisite};
constexpr LinkField kCorequisite{"COREQUISITE", &PackageInfo::corequisite};
constexpr LinkField kRequisite{"REQUISITE", &PackageInfo::requisite};

class Finder
{
  public:
    explicit Finder(const std::vector<const PackageInfo*>& packages) : packages_(packages)
    {
        for (std::size_t package = 0; package < packages.size(); ++package)
        {
            index_.emplace(packages[package]->updateId, package);
        }
    }

    std::vector<Circle> run()
    {
        for (const Members& members : circlesOf({kPrerequisite}))
        {
            add(members, {kPrerequisite}, true, "these packages are prerequisites of one another in a circle");
            contradictory_.insert(members.begin(), members.end());
        }
        const std::vector<LinkField> needs{kPrerequisite, kCorequisite, kRequisite};
        for (const Members& members : circlesOf(needs))
        {
            if (namesPrerequisite(members) && !contradicts(members))
            {
                add(members, needs, false, "these packages need one another and can only be applied together");
            }
        }
        for (const Members& members : circlesOf({kSupersede}))
        {
            add(members, {kSupersede}, true, "these packages supersede one another in a circle");
        }
        return std::move(circles_);
    }

  private:
    using Members = std::vector<std::size_t>;

    Members namedBy(std::size_t package, const LinkField& field) const
    {
        Members named;
        for (const std::string& id : idList(packages_[package]->*field.member))
        {
            const auto found = index_.find(id);
            if (found != index_.end() && found->second != package)
            {
                named.push_back(found->second);
            }
        }
        return named;
    }

    std::vector<Members> circlesOf(const std::vector<LinkField>& fields) const
    {
        DependencyGraph graph(packages_.size());
        for (std::size_t package = 0; package < packages_.size(); ++package)
        {
            for (const LinkField& field : fields)
            {
                for (const std::size_t named : namedBy(package, field))
                {
                    graph.add(package, named);
                }
            }
        }
        return graph.circles();
    }

    bool names(std::size_t package, const LinkField& field, const Members& members) const
    {
        const Members named = namedBy(package, field);
        return std::any_of(named.begin(), named.end(),
                           [&members](std::size_t other)
                           { return std::binary_search(members.begin(), members.end(), other); });
    }

    bool namesPrerequisite(const Members& members) const
    {
        return std::any_of(members.begin(), members.end(),
                           [&](std::size_t package) { return names(package, kPrerequisite, members); });
    }

    // Whether the contradiction of some members is told already.
    bool contradicts(const Members& members) const
    {
        return std::any_of(members.begin(), members.end(),
                           [this](std::size_t package) { return contradictory_.count(package) != 0; });
    }

    void add(const Members& members, const std::vector<LinkField>& fields, bool breaks, const std::string& what)
    {
        std::vector<std::string> ids;
        for (std::size_t member = 0; member < std::min(members.size(), kMostNames); ++member)
        {
            ids.push_back(packages_[members[member]]->updateId);
        }
        const std::string more =
            members.size() > kMostNames ? " and " + std::to_string(members.size() - kMostNames) + " more" : "";
        Circle circle;
        circle.package = members.front();
        const auto field =
            std::find_if(fields.begin(), fields.end(),
                         [&](const LinkField& candidate) { return names(circle.package, candidate, members); });
        circle.element = field == fields.end() ? kUpdateIdElement : field->element;
        circle.breaks = breaks;
        circle.text = what + ": " + text::join(ids, ", ") + more;
        circles_.push_back(std::move(circle));
    }

    const std::vector<const PackageInfo*>& packages_;
    std::unordered_map<std::string, std::size_t> index_;
    std::set<std::size_t> contradictory_;
    std::vector<Circle> circles_;
};
} // namespace

std::vector<Circle> findCircles(const std::vector<const PackageInfo*>& packages)
{
    return Finder(packages).run();
}
} // namespace repository
