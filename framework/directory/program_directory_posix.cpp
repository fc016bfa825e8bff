#include "directory/program_directory.h"

#include <filesystem>
#include <system_error>

std::string programDirectory()
{
    std::error_code failure;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
    return failure ? std::string() : program.parent_path().string();
}
