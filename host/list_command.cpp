#include "list_command.h"

#include "console.h"
#include "exit_status.h"
#include "os_names.h"

#include <iostream>

int listCommand(const std::vector<std::string>& arguments)
{
    const bool systems = arguments.size() == 1 && arguments[0] == "os";
    const bool architectures = arguments.size() == 1 && arguments[0] == "arch";
    if (!systems && !architectures)
    {
        console::complain("'list' takes one word: 'os' or 'arch'");
        return exit_status::kInvalidParameter;
    }
    for (const PlatformName& name : systems ? OsNames() : OsArchNames())
    {
        std::cout << name.code << '\t' << name.displayName << '\t' << name.key << '\n';
    }
    return exit_status::kSuccess;
}
