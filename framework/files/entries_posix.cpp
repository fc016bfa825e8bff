#include "files/entries.h"

#include <system_error>

namespace fs = std::filesystem;

namespace files
{
Entry lookAt(const std::string& path)
{
    Entry entry;
    std::error_code failure;
    switch (fs::status(path, failure).type())
    {
    case fs::file_type::not_found:
        return entry;
    case fs::file_type::directory:
        entry.kind = Kind::Folder;
        return entry;
    case fs::file_type::regular:
        entry.kind = Kind::RegularFile;
        entry.size = fs::file_size(path, failure);
        break;
    case fs::file_type::none:
        entry.kind = Kind::Unknown;
        return entry;
    default:
        entry.kind = Kind::Other;
        return entry;
    }
    if (failure)
    {
        // Gone or closed meanwhile.
        entry = Entry{Kind::Unknown, 0};
    }
    return entry;
}

bool listRegularFiles(const std::string& folder, std::vector<std::string>& names, std::string& error)
{
    std::error_code failure;
    fs::directory_iterator entry(folder, failure);
    while (!failure && entry != fs::directory_iterator())
    {
        std::error_code typeFailure;
        if (entry->is_regular_file(typeFailure))
        {
            names.push_back(entry->path().filename().string());
        }
        entry.increment(failure);
    }
    if (failure)
    {
        error = failure.message();
    }
    return !failure;
}

bool rename(const std::string& from, const std::string& to, std::string& error)
{
    std::error_code failure;
    fs::rename(from, to, failure);
    if (failure)
    {
        error = failure.message();
    }
    return !failure;
}

fs::path streamPath(const std::string& path)
{
    return path;
}
} // namespace files
