#include "support/scratch_folder.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace test_support
{
ScratchFolder::ScratchFolder()
{
    std::random_device random;
    for (int tries = 0; tries < 100; ++tries)
    {
        std::ostringstream name;
        name << "korvan-test-" << std::hex << random() << random();
        const std::filesystem::path path = std::filesystem::temp_directory_path() / name.str();
        if (std::filesystem::create_directory(path))
        {
            std::filesystem::permissions(path, std::filesystem::perms::owner_all);
            path_ = std::filesystem::path(path).make_preferred().string();
            return;
        }
    }
    throw std::runtime_error("no temporary folder");
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ScratchFolder::file(const std::string& name) const
{
    return (std::filesystem::path(path_) / name).make_preferred().string();
}

std::string ScratchFolder::write(const std::string& name, const std::string& content) const
{
    std::filesystem::path target = std::filesystem::path(path_) / name;
    target.make_preferred();
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
    const std::ifstream in(path);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}
} // namespace test_support
