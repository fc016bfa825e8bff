#include "korvan_directory.h"

#include "files/files.h"

#include <filesystem>
#include <system_error>

namespace
{
std::string& outputDirectory()
{
    static std::string directory;
    return directory;
}
} // namespace

std::string KorvanDirectory::getOutputDir()
{
    return outputDirectory();
}

void KorvanDirectory::setOutputDir(const std::string& directory)
{
    outputDirectory() = directory;
}

std::string KorvanDirectory::GetFullPath(const std::string& path)
{
    const std::filesystem::path given(path.empty() ? "." : path);
    std::error_code failure;
    const std::filesystem::path absolute = std::filesystem::absolute(given, failure);
    return files::withoutTrailingSeparator((failure ? given : absolute).lexically_normal().string());
}
