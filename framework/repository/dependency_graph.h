#pragma once

#include <cstddef>
#include <vector>

namespace repository
{
// What must go before what. Nodes are numbers from 0; recursion-free, linear in nodes and edges but for a logarithm.
class DependencyGraph
{
  public:
    explicit DependencyGraph(std::size_t nodes);

    // `node` comes after `needed`.
    void add(std::size_t node, std::size_t needed);

    // Groups of nodes, each in ascending order, that need one another in a circle: at least two nodes, or one that needs
    // itself.
    std::vector<std::vector<std::size_t>> circles() const;

    // Each node's group: nodes in one circle share theirs, and only they.
    std::vector<std::size_t> groups() const;

    // All nodes, each after what it needs, otherwise lower numbers first. Edges within a circle are not followed.
    std::vector<std::size_t> order() const;

  private:
    std::vector<std::vector<std::size_t>> needed_;
};
} // namespace repository
