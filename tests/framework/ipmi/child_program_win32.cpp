// What the tests of child processes start: does what its first word says.

#include <windows.h>

#include <cstdio>
#include <string>

#include <fcntl.h>
#include <io.h>

namespace
{
void startAnother(const char* program)
{
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    std::string line = "\"" + std::string(program) + "\" sleep";
    ::CreateProcessA(program, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process);
    std::printf("%lu", process.dwProcessId);
}
} // namespace

int main(int count, char** words)
{
    ::_setmode(1, _O_BINARY);
    ::_setmode(2, _O_BINARY);
    const std::string deed = count > 1 ? words[1] : "";
    if (deed == "streams")
    {
        std::fputs("out\n", stdout);
        std::fputs("err\n", stderr);
        return std::stoi(words[2]);
    }
    if (deed == "words")
    {
        for (int index = 2; index < count; ++index)
        {
            std::printf("%s|", words[index]);
        }
    }
    if (deed == "variables")
    {
        for (int index = 2; index < count; ++index)
        {
            char value[64] = {};
            ::GetEnvironmentVariableA(words[index], value, sizeof value);
            std::printf("%s|", value);
        }
    }
    if (deed == "read")
    {
        std::fputs(std::getchar() == EOF ? "end" : "something", stdout);
    }
    if (deed == "sleep")
    {
        ::Sleep(60000);
    }
    if (deed == "start-another")
    {
        startAnother(words[0]);
    }
    while (deed == "flood")
    {
        std::puts("0123456789");
    }
    if (deed == "crash")
    {
        ::TerminateProcess(::GetCurrentProcess(), STATUS_ACCESS_VIOLATION);
    }
    return 0;
}
