#include "multi_app/output_folder.h"

#include "files/entries.h"

#include <ctime>
#include <filesystem>
#include <iomanip>
#include <sstream>
#include <system_error>

namespace fs = std::filesystem;

namespace
{
constexpr int kMostTries = 1000;

std::string datedName()
{
    const std::time_t now = std::time(nullptr);
    // Called before the tasks' threads exist, so the shared buffer of localtime is no matter.
    const std::tm* const local = std::localtime(&now); // NOLINT(concurrency-mt-unsafe)
    std::ostringstream name;
    name << "Korvan-";
    if (local != nullptr)
    {
        name << std::put_time(local, "%Y%m%d-%H%M%S");
    }
    return name.str();
}

bool isFolder(const std::string& path)
{
    return files::lookAt(path).kind == files::Kind::Folder;
}
} // namespace

namespace output_folder
{
bool make(const std::string& path, std::string& error)
{
    const fs::path target(path);
    if (isFolder(path))
    {
        return true;
    }
    const fs::path parent = target.parent_path();
    if (!parent.empty() && parent != target && !make(parent.string(), error))
    {
        return false;
    }
    switch (makeOne(path, error))
    {
    case Creation::Made:
        return true;
    case Creation::AlreadyThere:
        // Another program may have made it just now.
        if (isFolder(path))
        {
            return true;
        }
        error = "there is something of that name that is no folder";
        return false;
    case Creation::Failed:
        break;
    }
    return false;
}

bool makeDated(std::string& path, std::string& error)
{
    std::error_code failure;
    const fs::path parent = fs::absolute("logs", failure);
    const std::string base = (parent / datedName()).string();
    path = base;
    if (failure)
    {
        error = failure.message();
        return false;
    }
    if (!make(parent.string(), error))
    {
        return false;
    }
    for (int number = 2; number <= kMostTries; ++number)
    {
        const Creation outcome = makeOne(path, error);
        if (outcome != Creation::AlreadyThere)
        {
            return outcome == Creation::Made;
        }
        path = base + "-" + std::to_string(number);
    }
    error = "too many folders of that name";
    return false;
}

bool rename(const std::string& from, const std::string& to, std::string& error)
{
    return files::rename(from, to, error);
}
} // namespace output_folder
