// Stands for the legacy installer tool: writes its words to the file that FAKE_INSTALLER_RECORD names, one a line, and ends
// with the status that FAKE_INSTALLER_STATUS holds.

#include <cstdlib>
#include <fstream>

int main(int argumentCount, char** arguments)
{
    const char* record = std::getenv("FAKE_INSTALLER_RECORD");
    if (record == nullptr)
    {
        return 99;
    }
    std::ofstream file(record, std::ios::app);
    for (int i = 0; i < argumentCount; ++i)
    {
        file << arguments[i] << '\n';
    }
    const char* status = std::getenv("FAKE_INSTALLER_STATUS");
    return status == nullptr ? 0 : static_cast<int>(std::strtol(status, nullptr, 10));
}
