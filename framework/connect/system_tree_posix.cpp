#include "connect/system_tree.h"

#include "files/files.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include <algorithm>

namespace connect
{
namespace
{
namespace fs = boost::filesystem;

constexpr char kSource[] = "framework/connect/system_tree";
constexpr std::size_t kLargestAttribute = 4096; // a page, sysfs's own limit
constexpr std::size_t kMostNames = 1024;

void logUnreadable(const std::string& path)
{
    KORVAN_LOG(2, kSource) << "localhost: " << path << " cannot be read; what it says stays unknown";
}
} // namespace

std::string SystemTree::attribute(const std::string& path) const
{
    std::string content;
    if (files::read(root_ + path, kLargestAttribute, content) != files::ReadOutcome::Ok)
    {
        logUnreadable(root_ + path);
        return std::string();
    }
    return text::trim(content);
}

std::string SystemTree::optionalAttribute(const std::string& path) const
{
    std::string content;
    const files::ReadOutcome outcome = files::read(root_ + path, kLargestAttribute, content);
    if (outcome != files::ReadOutcome::Ok && outcome != files::ReadOutcome::Missing)
    {
        logUnreadable(root_ + path);
    }
    return outcome == files::ReadOutcome::Ok ? text::trim(content) : std::string();
}

std::string SystemTree::content(const std::string& path, std::size_t limit) const
{
    std::string content;
    return files::read(root_ + path, limit, content) == files::ReadOutcome::Ok ? content : std::string();
}

std::vector<std::string> SystemTree::names(const std::string& folder) const
{
    std::vector<std::string> found;
    boost::system::error_code error;
    for (fs::directory_iterator entry(root_ + folder, error), end; !error && entry != end && found.size() < kMostNames;
         entry.increment(error))
    {
        found.push_back(entry->path().filename().string());
    }
    if (error && error != boost::system::errc::no_such_file_or_directory)
    {
        KORVAN_LOG(2, kSource) << "localhost: " << root_ << folder << " cannot be read: " << error.message();
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string SystemTree::linkName(const std::string& path) const
{
    boost::system::error_code error;
    const fs::path target = fs::read_symlink(root_ + path, error);
    return error ? std::string() : target.filename().string();
}
} // namespace connect
