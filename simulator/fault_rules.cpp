#include "fault_rules.h"

#include <boost/regex.hpp>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace simulator
{
struct PathPattern::Compiled
{
    boost::regex expression;
};

PathPattern::PathPattern(const std::string& expression)
{
    try
    {
        compiled_ = std::make_shared<Compiled>(Compiled{boost::regex(expression, boost::regex::ECMAScript)});
    }
    catch (const boost::regex_error& error)
    {
        throw std::invalid_argument(error.what());
    }
}

bool PathPattern::matches(const std::string& target) const
{
    try
    {
        return !compiled_ || boost::regex_search(target, compiled_->expression);
    }
    catch (const std::runtime_error&)
    {
        return false;
    }
}

FaultPlan::FaultPlan(std::vector<FaultRule> rules) : rules_(std::move(rules)), matches_(rules_.size(), 0) {}

FaultHit FaultPlan::next(const std::string& method, const std::string& target)
{
    FaultHit hit;
    for (std::size_t i = 0; i < rules_.size(); ++i)
    {
        const FaultRule& rule = rules_[i];
        if ((!rule.method.empty() && rule.method != method) || !rule.path.matches(target))
        {
            continue;
        }
        const std::uint64_t before = matches_[i]++;
        if (before < rule.skip || (rule.times != 0 && before - rule.skip >= rule.times))
        {
            continue;
        }
        if (rule.action == FaultAction::Slow)
        {
            hit.delay += rule.delay;
            continue;
        }
        hit.rule = &rule;
        break;
    }
    return hit;
}

bool FaultPlan::has(FaultAction action) const
{
    return std::any_of(rules_.begin(), rules_.end(), [action](const FaultRule& rule) { return rule.action == action; });
}
} // namespace simulator
