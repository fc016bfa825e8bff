#include "repository/dependency_graph.h"

#include <algorithm>
#include <functional>
#include <queue>

namespace repository
{
namespace
{
constexpr std::size_t kUnseen = static_cast<std::size_t>(-1);

// Tarjan's strongly connected components with a stack of its own: chains may be as long as the repository.
class Components
{
  public:
    explicit Components(const std::vector<std::vector<std::size_t>>& edges)
        : edges_(edges), index_(edges.size(), kUnseen), low_(edges.size(), 0), open_(edges.size(), false),
          group_(edges.size(), 0)
    {
        for (std::size_t node = 0; node < edges.size(); ++node)
        {
            if (index_[node] == kUnseen)
            {
                visit(node);
            }
        }
    }

    const std::vector<std::size_t>& groups() const { return group_; }

  private:
    struct Frame
    {
        std::size_t node;
        std::size_t edge;
    };

    void enter(std::size_t node)
    {
        index_[node] = low_[node] = counter_++;
        open_[node] = true;
        path_.push_back(node);
        frames_.push_back({node, 0});
    }

    void visit(std::size_t start)
    {
        enter(start);
        while (!frames_.empty())
        {
            Frame& frame = frames_.back();
            const std::size_t node = frame.node;
            if (frame.edge == edges_[node].size())
            {
                leave(node);
                continue;
            }
            const std::size_t next = edges_[node][frame.edge++];
            if (index_[next] == kUnseen)
            {
                enter(next);
            }
            else if (open_[next])
            {
                low_[node] = std::min(low_[node], index_[next]);
            }
        }
    }

    void leave(std::size_t node)
    {
        frames_.pop_back();
        if (!frames_.empty())
        {
            std::size_t& low = low_[frames_.back().node];
            low = std::min(low, low_[node]);
        }
        if (low_[node] != index_[node])
        {
            return;
        }
        std::size_t member = kUnseen;
        do
        {
            member = path_.back();
            path_.pop_back();
            open_[member] = false;
            group_[member] = groupCount_;
        } while (member != node);
        ++groupCount_;
    }

    const std::vector<std::vector<std::size_t>>& edges_;
    std::vector<std::size_t> index_;
    std::vector<std::size_t> low_;
    std::vector<bool> open_;
    std::vector<std::size_t> group_;
    std::vector<std::size_t> path_;
    std::vector<Frame> frames_;
    std::size_t counter_ = 0;
    std::size_t groupCount_ = 0;
};
} // namespace

DependencyGraph::DependencyGraph(std::size_t nodes) : needed_(nodes) {}

void DependencyGraph::add(std::size_t node, std::size_t needed)
{
    needed_[node].push_back(needed);
}

std::vector<std::size_t> DependencyGraph::groups() const
{
    return Components(needed_).groups();
}

std::vector<std::vector<std::size_t>> DependencyGraph::circles() const
{
    const std::vector<std::size_t> group = groups();
    std::vector<std::vector<std::size_t>> members(needed_.size());
    for (std::size_t node = 0; node < group.size(); ++node)
    {
        members[group[node]].push_back(node);
    }
    std::vector<std::vector<std::size_t>> result;
    for (std::vector<std::size_t>& nodes : members)
    {
        const auto needsItself = [this](std::size_t node)
        { return std::find(needed_[node].begin(), needed_[node].end(), node) != needed_[node].end(); };
        if (nodes.size() > 1 || (nodes.size() == 1 && needsItself(nodes.front())))
        {
            result.push_back(std::move(nodes));
        }
    }
    return result;
}

std::vector<std::size_t> DependencyGraph::order() const
{
    const std::vector<std::size_t> group = groups();
    std::vector<std::vector<std::size_t>> dependents(needed_.size());
    std::vector<std::size_t> open(needed_.size(), 0);
    for (std::size_t node = 0; node < needed_.size(); ++node)
    {
        for (const std::size_t needed : needed_[node])
        {
            if (group[node] != group[needed])
            {
                dependents[needed].push_back(node);
                ++open[node];
            }
        }
    }
    std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>> ready;
    for (std::size_t node = 0; node < open.size(); ++node)
    {
        if (open[node] == 0)
        {
            ready.push(node);
        }
    }
    std::vector<std::size_t> result;
    while (!ready.empty())
    {
        const std::size_t node = ready.top();
        ready.pop();
        result.push_back(node);
        for (const std::size_t dependent : dependents[node])
        {
            if (--open[dependent] == 0)
            {
                ready.push(dependent);
            }
        }
    }
    return result;
}
} // namespace repository
