#include "module_run.h"

#include "basic_multi_app.h"
#include "console.h"
#include "directory/program_directory.h"
#include "exit_status.h"
#include "module_loader.h"

#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>

namespace
{
int statusOf(const KorvanResult& result)
{
    constexpr std::uint32_t kStatusMask = 0xFF; // all that the system keeps of it
    const std::uint32_t status = result.number() & kStatusMask;
    // A failure whose low bits are all zero must not look like a success.
    return status == 0 && !result.succeeded() ? exit_status::kGenericFailure : static_cast<int>(status);
}

// True when the user agrees, or is not asked.
bool confirmed(const BasicMultiApp& application, const UserContext& context)
{
    const std::string question = application.ConfirmMessage(context);
    if (question.empty())
    {
        return true;
    }
    if (!console::inputIsTerminal())
    {
        console::complain("this command asks for a confirmation; start it from a terminal");
        return false;
    }
    std::cerr << question << " [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

int runApplication(BasicMultiApp& application, const UserContext& context)
{
    if (!confirmed(application, context))
    {
        return exit_status::kQuit;
    }
    const KorvanResult initialized = application.Initialize(context);
    if (!initialized.succeeded())
    {
        console::complain(initialized.messageText());
        application.Cleanup();
        return statusOf(initialized);
    }
    const KorvanResult result = application.Running();
    application.Cleanup();
    return statusOf(result);
}

// Everything of the module's is gone when this returns, exceptions included.
int runCreated(const LoadedModule& module, const std::string& path, const UserContext& context)
{
    try
    {
        const std::unique_ptr<BasicMultiApp> application(module.create()());
        if (!application)
        {
            console::complain("the module " + path + " made no application");
            return exit_status::kInternalError;
        }
        return runApplication(*application, context);
    }
    catch (const std::exception& failure)
    {
        console::complain("the module " + path + " broke off: " + failure.what());
    }
    catch (...)
    {
        console::complain("the module " + path + " broke off: unknown exception");
    }
    return exit_status::kInternalError;
}
} // namespace

int runModule(const std::string& module, const UserContext& context)
{
    const std::string directory = programDirectory();
    if (directory.empty())
    {
        console::complain("the system does not tell the program's own folder, where its modules lie");
        return exit_status::kInvalidApplication;
    }
    const std::string path = (std::filesystem::path(directory) / LoadedModule::fileName(module)).string();
    std::string error;
    const std::unique_ptr<LoadedModule> loaded = LoadedModule::load(path, error);
    if (!loaded)
    {
        console::complain("cannot load the module " + path + ": " + error);
        return exit_status::kInvalidApplication;
    }
    return runCreated(*loaded, path, context);
}
