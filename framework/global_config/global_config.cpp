#include "global_config.h"

#include "directory/program_directory.h"
#include "files/files.h"
#include "global_config/config_items.h"
#include "xmodule_log.h"

namespace
{
constexpr char kSource[] = "framework/global_config/global_config";
constexpr char kFileName[] = "global.config";
constexpr std::size_t kLargestFile = std::size_t{1} << 20U;
constexpr int kNotFound = 1;
} // namespace

namespace XModule
{
int GlobalConfig::GetConfigItem(const std::string& name, std::string& value)
{
    const std::string path = programDirectory() + "/" + kFileName;
    std::string content;
    switch (files::read(path, kLargestFile, content))
    {
    case files::ReadOutcome::Ok:
        return global_config::findItem(content, name, value) ? 0 : kNotFound;
    case files::ReadOutcome::Missing:
        KORVAN_LOG(3, kSource) << "no configuration file " << path;
        return kNotFound;
    case files::ReadOutcome::Unreadable:
        KORVAN_LOG(2, kSource) << "cannot read the configuration file " << path << "; it counts as empty";
        return kNotFound;
    case files::ReadOutcome::TooLarge:
        KORVAN_LOG(2, kSource) << "the configuration file " << path << " is larger than " << kLargestFile
                               << " bytes; it counts as empty";
        return kNotFound;
    }
    return kNotFound;
}
} // namespace XModule
