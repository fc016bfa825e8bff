#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace connect
{
// The files in which Linux tells about the machine: sysfs, as its documentation (Documentation/ABI) lays it out, and
// /etc. A root in front of every path lets another tree stand for the real one. Any thread may use it.
class SystemTree
{
  public:
    explicit SystemTree(const std::string& root) : root_(root) {}

    // Whether this is the machine itself.
    bool real() const { return root_.empty(); }

    // The file as one trimmed text; empty, and logged at level 2, when it cannot be read.
    std::string attribute(const std::string& path) const;

    // The same for what only some devices have: that it is missing is not logged.
    std::string optionalAttribute(const std::string& path) const;

    // A file of at most `limit` bytes as it is; empty when it cannot be read, which is not logged.
    std::string content(const std::string& path, std::size_t limit) const;

    // The names in a folder in their order, at most 1024; empty when there is none.
    std::vector<std::string> names(const std::string& folder) const;

    // The last part of what a link leads to ("driver" of a device: the driver's name); empty when it is no link.
    std::string linkName(const std::string& path) const;

  private:
    std::string root_;
};
} // namespace connect
