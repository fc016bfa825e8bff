#include "support/scratch_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace test_support
{
ScratchFolder::ScratchFolder() : path_((std::filesystem::temp_directory_path() / "korvan-test-XXXXXX").string())
{
    if (::mkdtemp(&path_[0]) == nullptr)
    {
        throw std::runtime_error("no temporary folder " + path_);
    }
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ScratchFolder::write(const std::string& name, const std::string& content) const
{
    const std::filesystem::path target = std::filesystem::path(path_) / name;
    std::filesystem::create_directories(target.parent_path());
    std::ofstream out(target, std::ios::binary);
    out << content;
    out.flush();
    if (!out)
    {
        throw std::runtime_error("cannot write " + target.string());
    }
    return target.string();
}

std::string readFile(const std::string& path)
{
    const std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}
} // namespace test_support
