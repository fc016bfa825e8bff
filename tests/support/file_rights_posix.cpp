#include "support/file_rights.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace test_support
{
bool isForOwnerAlone(const std::string& path)
{
    std::error_code missing;
    const fs::file_status status = fs::status(path, missing);
    const fs::perms wanted =
        fs::is_directory(status) ? fs::perms::owner_all : fs::perms::owner_read | fs::perms::owner_write;
    return !missing && status.permissions() == wanted;
}

void setReaders(const std::string& path, Readers readers)
{
    fs::permissions(path, fs::perms(readers == Readers::Everybody ? 0644 : 0600));
}

std::string closingCommand(const std::string& path)
{
    return "chmod 600 " + path;
}
} // namespace test_support
