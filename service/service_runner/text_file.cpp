#include "service_runner/text_file.h"

#include <boost/filesystem/path.hpp>

#include <stdexcept>

std::ofstream OpenTextFile(const std::string& directory, const std::string& name)
{
    const std::string path = (boost::filesystem::path(directory) / name).string();
    std::ofstream file(path, std::ios::trunc);
    if (!file)
    {
        throw std::runtime_error("cannot open " + path);
    }
    return file;
}
