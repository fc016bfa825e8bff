#include "service_runner/service_update_compare_runner.h"

#include "common/ProxyBackToolUtilities.h"
#include "common/module_directory.h"
#include "global_config.h"
#include "option_names.h"
#include "result_codes.h"
#include "xmodule_log.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>

#include <iostream>
#include <memory>

namespace
{
// The backslash is kept: scripts that read the log look for the record so.
constexpr char kSource[] = "service\\service_runner/service_update_compare_runner";

constexpr char kToolPathItem[] = "VELPAKI_PATH";
constexpr char kToolName[] = "velpaki";
constexpr char kProxyToolFile[] = "velpaki.exe";

constexpr int kPathWrong = static_cast<int>(result_code::kUpdateLegacyToolPathWrong);
constexpr int kToolIsProxy = static_cast<int>(result_code::kLegacyToolIsProxy);
constexpr int kUnsupported = static_cast<int>(result_code::kUpdateLegacyCommandUnsupported);

int refuse(int code, int line)
{
    if (XModule::Log::GetMinLogLevel() >= 1)
    {
        XModule::Log(1, kSource, line).Stream() << GetErrorMessage(static_cast<std::uint32_t>(code));
    }
    return code;
}

// The tool that lies beside the running program is the program's own proxy and would only call back.
bool isOwnProxyTool(const boost::filesystem::path& tool)
{
    std::string programDirectory = GetModuleDirectory(nullptr);
    if (!programDirectory.empty())
    {
        programDirectory.pop_back();
    }
    return boost::filesystem::path(programDirectory) == tool.parent_path() &&
           tool.filename() == boost::filesystem::path(kProxyToolFile);
}

// 0 and the configured path, or the code that refuses it.
int toolPath(std::string& path)
{
    if (XModule::GlobalConfig::GetConfigItem(kToolPathItem, path) != 0)
    {
        return refuse(kPathWrong, __LINE__);
    }
    boost::system::error_code error;
    if (boost::filesystem::status(path, error).type() != boost::filesystem::regular_file)
    {
        return refuse(kPathWrong, __LINE__);
    }
    if (isOwnProxyTool(path))
    {
        return refuse(kToolIsProxy, __LINE__);
    }
    // Letter case counts: a tool named in capitals is refused although the file exists.
    if (path.find(kToolName) == std::string::npos)
    {
        return refuse(kPathWrong, __LINE__);
    }
    return 0;
}

// Null when there is no legacy command for the user's words; the reason was printed where there is one to print.
std::unique_ptr<CompareUpdateCommand> makeCommand(const Parameters& parameters)
{
    if (parameters.command != "update")
    {
        return nullptr;
    }
    if (parameters.subCommand == "compare")
    {
        return std::make_unique<CompareUpdateCommand>(&parameters, "compare");
    }
    if (parameters.subCommand == "flash")
    {
        return std::make_unique<CompareUpdateCommand>(&parameters, "update");
    }
    if (parameters.subCommand.empty())
    {
        std::cout << "Please specify the command!" << std::endl;
    }
    else
    {
        std::cout << "The command: " << parameters.subCommand << " is not supported." << std::endl;
    }
    return nullptr;
}
} // namespace

int CompareRunner::GetBlueCmd(std::string& command)
{
    KORVAN_LOG(4, kSource) << "Entering  "
                           << "CompareRunner::GetBlueCmd";
    const Parameters parameters(context_.argumentCount, context_.argumentVector);
    std::string path;
    const int pathCode = toolPath(path);
    if (pathCode != 0)
    {
        return pathCode;
    }
    std::unique_ptr<CompareUpdateCommand> translation = makeCommand(parameters);
    if (translation == nullptr || !parameters.CheckShape() || !translation->Build())
    {
        return refuse(kUnsupported, __LINE__);
    }
    KORVAN_LOG(4, kSource) << "BlueHelper::GetFullCmd vellitePath=" << path;
    command = path + " " + translation->argumentString();
    std::cout << "VELPAKI cmd:" << translation->argumentString() << std::endl;
    // The line would carry the ESXi address with its password.
    if (HasOption(context_, option::kEsxi))
    {
        KORVAN_LOG(4, kSource) << "BlueHelper::GetFullCmd ESXi case";
    }
    else
    {
        KORVAN_LOG(4, kSource) << "BlueHelper::GetFullCmd fullCmd=" << command;
    }
    translation.reset();
    KORVAN_LOG(4, kSource) << "Exiting  "
                           << "CompareRunner::GetBlueCmd";
    return 0;
}
