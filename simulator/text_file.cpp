#include "text_file.h"

#include "simulator_error.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

namespace simulator
{
namespace fs = std::filesystem;

std::string readTextFile(const std::string& path, std::size_t limit, const std::string& what)
{
    std::error_code error;
    if (!fs::is_regular_file(path, error))
    {
        throw SimulatorError(what + " '" + path + "' is missing or no regular file");
    }
    std::ifstream file(path, std::ios::binary);
    std::string content(limit + 1, '\0');
    file.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (!file.eof() && file.fail())
    {
        throw SimulatorError(what + " '" + path + "' cannot be read");
    }
    content.resize(static_cast<std::size_t>(file.gcount()));
    if (content.size() > limit)
    {
        throw SimulatorError(what + " '" + path + "' is larger than " + std::to_string(limit) + " bytes");
    }
    return content;
}

void replaceTextFile(const std::string& path, const std::string& content)
{
    const std::string temporary = path + "." + std::to_string(std::random_device{}()) + ".tmp";
    std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    std::error_code error;
    if (file.fail())
    {
        fs::remove(temporary, error);
        throw SimulatorError("'" + path + "' cannot be written");
    }
    fs::rename(temporary, path, error);
    if (error)
    {
        const std::string why = error.message();
        fs::remove(temporary, error);
        throw SimulatorError("'" + path + "' cannot be written: " + why);
    }
}
} // namespace simulator
