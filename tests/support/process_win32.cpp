#include "support/process.h"

#include <windows.h>

#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace
{
using Clock = std::chrono::steady_clock;

class Handle
{
  public:
    Handle() = default;
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    HANDLE get() const { return value_; }
    HANDLE* address() { return &value_; }

    HANDLE release()
    {
        const HANDLE value = value_;
        value_ = nullptr;
        return value;
    }

    void close()
    {
        if (value_ != nullptr)
        {
            ::CloseHandle(value_);
            value_ = nullptr;
        }
    }

  private:
    HANDLE value_ = nullptr;
};

std::wstring wide(const std::string& text)
{
    const int size = static_cast<int>(text.size());
    std::wstring result(text.size(), L'\0');
    result.resize(static_cast<std::size_t>(
        ::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, result.data(), static_cast<int>(result.size()))));
    return result;
}

// A pipe whose one end the child gets.
void makePipe(Handle& own, Handle& childs, bool childReads)
{
    SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
    if (::CreatePipe(childReads ? childs.address() : own.address(), childReads ? own.address() : childs.address(),
                     &inheritable, 1U << 20U) == 0)
    {
        throw std::runtime_error("no pipe");
    }
    ::SetHandleInformation(own.get(), HANDLE_FLAG_INHERIT, 0);
}

std::wstring quoted(const std::string& word)
{
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t letter : wide(word))
    {
        if (letter == L'\\')
        {
            ++backslashes;
            continue;
        }
        result.append(letter == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
        backslashes = 0;
        result += letter;
    }
    return result.append(2 * backslashes, L'\\') + L"\"";
}

// This process's variables, which the child inherits, with the test's own ones while it is started.
class Variables
{
  public:
    explicit Variables(const test_support::ProcessOptions& options) : options_(options)
    {
        for (const auto& [name, value] : options_.environment)
        {
            ::SetEnvironmentVariableW(wide(name).c_str(), wide(value).c_str());
        }
    }
    ~Variables()
    {
        for (const auto& [name, value] : options_.environment)
        {
            ::SetEnvironmentVariableW(wide(name).c_str(), nullptr);
        }
    }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;

  private:
    const test_support::ProcessOptions& options_;
};

// Null when it cannot be started. A group of its own, so that an interrupt reaches it alone.
HANDLE startProcess(const std::string& program, const std::vector<std::string>& arguments,
                    const test_support::ProcessOptions& options, HANDLE in, HANDLE out, HANDLE err, DWORD& number)
{
    std::filesystem::path file(wide(program));
    if (!file.has_extension())
    {
        file += L".exe";
    }
    file.make_preferred();
    std::wstring line = quoted(program);
    for (const std::string& argument : arguments)
    {
        line += L" " + quoted(argument);
    }
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = in;
    startup.hStdOutput = out;
    startup.hStdError = err;
    PROCESS_INFORMATION process = {};
    const std::wstring folder = wide(options.workingFolder);
    const Variables variables(options);
    if (::CreateProcessW(file.wstring().c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP, nullptr,
                         folder.empty() ? nullptr : folder.c_str(), &startup, &process) == 0)
    {
        return nullptr;
    }
    ::CloseHandle(process.hThread);
    number = process.dwProcessId;
    return process.hProcess;
}

// Reads what is there; false at the end.
bool drain(HANDLE pipe, std::string& text)
{
    DWORD available = 0;
    if (::PeekNamedPipe(pipe, nullptr, 0, nullptr, &available, nullptr) == 0)
    {
        return false;
    }
    char buffer[16384];
    DWORD got = 0;
    if (available != 0 && ::ReadFile(pipe, buffer, sizeof buffer, &got, nullptr) != 0)
    {
        text.append(buffer, got);
    }
    return true;
}

void takeStatus(HANDLE process, test_support::ProcessOutcome& outcome)
{
    DWORD status = 0;
    ::GetExitCodeProcess(process, &status);
    outcome.exitStatus = static_cast<int>(status);
}

// Programs write lines that end as the system's do; the tests read them as written.
void withPlainLineEnds(std::string& text)
{
    for (std::size_t place = text.find("\r\n"); place != std::string::npos; place = text.find("\r\n", place))
    {
        text.erase(place, 1);
    }
}
} // namespace

namespace test_support
{
ProcessOutcome runProcess(const std::string& program, const std::vector<std::string>& arguments,
                          const ProcessOptions& options)
{
    ProcessOutcome outcome;
    Handle in;
    Handle childIn;
    Handle out;
    Handle childOut;
    Handle err;
    Handle childErr;
    makePipe(in, childIn, true);
    makePipe(out, childOut, false);
    makePipe(err, childErr, false);
    DWORD number = 0;
    Handle process;
    *process.address() =
        startProcess(program, arguments, options, childIn.get(), childOut.get(), childErr.get(), number);
    childIn.close();
    childOut.close();
    childErr.close();
    if (process.get() == nullptr)
    {
        return outcome;
    }
    // What a test gives fits into the pipe, so this does not wait for the reader.
    DWORD given = 0;
    ::WriteFile(in.get(), options.input.data(), static_cast<DWORD>(options.input.size()), &given, nullptr);
    in.close();
    const auto start = Clock::now();
    bool interrupted = options.interruptAfter.count() == 0;
    bool ended = false;
    while (!ended)
    {
        const auto passed = Clock::now() - start;
        if (!interrupted && passed >= options.interruptAfter)
        {
            ::GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, number);
            interrupted = true;
        }
        if (passed >= options.timeout)
        {
            outcome.timedOut = true;
            ::TerminateProcess(process.get(), 1);
        }
        ended = ::WaitForSingleObject(process.get(), 5) == WAIT_OBJECT_0;
        drain(out.get(), outcome.out);
        drain(err.get(), outcome.err);
    }
    takeStatus(process.get(), outcome);
    withPlainLineEnds(outcome.out);
    withPlainLineEnds(outcome.err);
    return outcome;
}

struct BackgroundProcess::System
{
    Handle process;
    Handle input;
    Handle output;
    DWORD number = 0;
};

BackgroundProcess::BackgroundProcess(const std::string& program, const std::vector<std::string>& arguments)
    : system_(std::make_unique<System>())
{
    Handle childIn;
    Handle childOut;
    makePipe(system_->input, childIn, true);
    makePipe(system_->output, childOut, false);
    *system_->process.address() = startProcess(program, arguments, ProcessOptions(), childIn.get(), childOut.get(),
                                               ::GetStdHandle(STD_ERROR_HANDLE), system_->number);
    if (system_->process.get() == nullptr)
    {
        throw std::runtime_error("cannot start " + program);
    }
    pid_ = static_cast<int>(system_->number);
}

void BackgroundProcess::closeInput()
{
    system_->input.close();
}

BackgroundProcess::~BackgroundProcess()
{
    ::TerminateProcess(system_->process.get(), 1);
    ::WaitForSingleObject(system_->process.get(), INFINITE);
}

bool BackgroundProcess::readLine(std::string& line, std::chrono::milliseconds timeout)
{
    const auto end = Clock::now() + timeout;
    for (;;)
    {
        const std::size_t lineEnd = buffered_.find('\n');
        if (lineEnd != std::string::npos)
        {
            line = buffered_.substr(0, lineEnd);
            buffered_.erase(0, lineEnd + 1);
            withPlainLineEnds(line.append("\n"));
            line.pop_back();
            return true;
        }
        const std::size_t before = buffered_.size();
        if (!drain(system_->output.get(), buffered_) || Clock::now() >= end)
        {
            return false;
        }
        if (buffered_.size() == before)
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
}

void BackgroundProcess::sendSignal(int signal) const
{
    if (signal == SIGINT || signal == SIGTERM)
    {
        ::GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, system_->number);
        return;
    }
    ::TerminateProcess(system_->process.get(), 1);
}

bool BackgroundProcess::wait(std::chrono::milliseconds timeout, ProcessOutcome& outcome)
{
    if (::WaitForSingleObject(system_->process.get(), static_cast<DWORD>(timeout.count())) != WAIT_OBJECT_0)
    {
        return false;
    }
    takeStatus(system_->process.get(), outcome);
    return true;
}
} // namespace test_support
