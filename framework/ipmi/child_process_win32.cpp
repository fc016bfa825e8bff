#include "ipmi/child_process.h"

#include "interrupt.h"
#include "text/environment.h"
#include "text/text.h"
#include "text/wide_text_win32.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <array>
#include <utility>

namespace ipmi
{
namespace
{
using Clock = std::chrono::steady_clock;

constexpr DWORD kPollMilliseconds = 20;
constexpr DWORD kFirstFatalStatus = 0xC0000000; // an NTSTATUS of severity error: the process did not end by itself
constexpr char kProgramEnding[] = ".exe";

class Handle
{
  public:
    Handle() = default;
    explicit Handle(HANDLE value) : value_(value == INVALID_HANDLE_VALUE ? nullptr : value) {}
    ~Handle() { close(); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    HANDLE get() const { return value_; }
    HANDLE* address() { return &value_; }
    bool valid() const { return value_ != nullptr; }

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

SECURITY_ATTRIBUTES inheritable()
{
    return SECURITY_ATTRIBUTES{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
}

// The child's standard streams: nothing to read, two pipes to write to.
struct Streams
{
    Streams()
    {
        SECURITY_ATTRIBUTES attributes = inheritable();
        Handle nothing(::CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &attributes,
                                     OPEN_EXISTING, 0, nullptr));
        std::swap(*nothing.address(), *in.address());
        usable = in.valid() && ::CreatePipe(out.address(), outForChild.address(), &attributes, 0) != 0 &&
                 ::CreatePipe(err.address(), errForChild.address(), &attributes, 0) != 0;
    }

    void closeChildEnds()
    {
        in.close();
        outForChild.close();
        errForChild.close();
    }

    Handle in;
    Handle out;
    Handle outForChild;
    Handle err;
    Handle errForChild;
    bool usable = false;
};

// The list of the handles that the child inherits: no other one of this process's, whatever other threads open.
class InheritedHandles
{
  public:
    explicit InheritedHandles(const Streams& streams)
        : handles_{streams.in.get(), streams.outForChild.get(), streams.errForChild.get()}
    {
        SIZE_T size = 0;
        ::InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        memory_.resize(size);
        usable_ = ::InitializeProcThreadAttributeList(list(), 1, 0, &size) != 0;
        usable_ = usable_ && ::UpdateProcThreadAttribute(list(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                                         sizeof(HANDLE) * handles_.size(), nullptr, nullptr) != 0;
    }
    ~InheritedHandles() { ::DeleteProcThreadAttributeList(list()); }
    InheritedHandles(const InheritedHandles&) = delete;
    InheritedHandles& operator=(const InheritedHandles&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST list() { return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data()); }
    bool usable() const { return usable_; }

  private:
    std::array<HANDLE, 3> handles_;
    std::vector<unsigned char> memory_;
    bool usable_ = false;
};

// A word so that the child's own reading of its command line gives it back (CommandLineToArgvW).
std::wstring quoted(const std::wstring& word)
{
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t letter : word)
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

std::wstring commandLine(const ChildRequest& request)
{
    std::wstring line = quoted(wide_text::fromUtf8(request.program));
    for (const std::string& argument : request.arguments)
    {
        line += L" " + quoted(wide_text::fromUtf8(argument));
    }
    return line;
}

// Sorted by name, as CreateProcess wants it, each with a null unit, and one more at the end.
std::wstring environmentBlock(const std::vector<std::string>& environment)
{
    std::vector<std::wstring> entries;
    entries.reserve(environment.size() + 1);
    for (const std::string& entry : environment)
    {
        entries.push_back(wide_text::fromUtf8(entry));
    }
    // The system's libraries look for themselves with it.
    entries.push_back(L"SystemRoot=" + wide_text::fromUtf8(environment::variable("SystemRoot")));
    std::sort(entries.begin(), entries.end(),
              [](const std::wstring& left, const std::wstring& right)
              { return ::CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_LESS_THAN; });
    std::wstring block;
    for (const std::wstring& entry : entries)
    {
        block.append(entry).push_back(L'\0');
    }
    block.push_back(L'\0');
    return block;
}

enum class Drained
{
    More,
    TooLarge,
};

// Takes what is there without waiting.
Drained drain(Handle& pipe, std::size_t limit, std::string& text)
{
    char buffer[4096];
    while (pipe.valid())
    {
        DWORD available = 0;
        DWORD got = 0;
        if (::PeekNamedPipe(pipe.get(), nullptr, 0, nullptr, &available, nullptr) == 0)
        {
            pipe.close();
            break;
        }
        if (available == 0 ||
            ::ReadFile(pipe.get(), buffer, std::min<DWORD>(available, sizeof buffer), &got, nullptr) == 0)
        {
            break;
        }
        if (text.size() + got > limit)
        {
            return Drained::TooLarge;
        }
        text.append(buffer, got);
    }
    return Drained::More;
}

// Reads until the child has ended or must be stopped.
ChildEnd follow(HANDLE process, Streams& streams, const ChildRequest& request, ChildOutcome& outcome)
{
    const Clock::time_point deadline = Clock::now() + request.timeLimit;
    while (true)
    {
        // Before the reading, which then sees all that it wrote.
        const bool ended = ::WaitForSingleObject(process, kPollMilliseconds) == WAIT_OBJECT_0;
        if (drain(streams.out, request.largestOutput, outcome.out) == Drained::TooLarge ||
            drain(streams.err, request.largestOutput, outcome.err) == Drained::TooLarge)
        {
            return ChildEnd::TooLarge;
        }
        if (ended)
        {
            return ChildEnd::Exited;
        }
        if (interrupt::requested())
        {
            return ChildEnd::Interrupted;
        }
        if (Clock::now() >= deadline)
        {
            return ChildEnd::TimeLimit;
        }
    }
}

// Ends with its last handle whatever was started in it.
HANDLE makeJob()
{
    const HANDLE job = ::CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (job != nullptr)
    {
        ::SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    }
    return job;
}

ChildOutcome notStarted(DWORD number)
{
    ChildOutcome outcome;
    outcome.reason = wide_text::systemReason(number);
    return outcome;
}

bool isProgramFile(const std::string& path)
{
    const std::string lower = text::toLower(path);
    const std::string ending = kProgramEnding;
    return lower.size() > ending.size() && lower.compare(lower.size() - ending.size(), ending.size(), ending) == 0;
}

bool start(const ChildRequest& request, const Streams& streams, PROCESS_INFORMATION& process)
{
    InheritedHandles inherited(streams);
    if (!inherited.usable())
    {
        return false;
    }
    STARTUPINFOEXW startup = {};
    startup.StartupInfo.cb = sizeof startup;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startup.StartupInfo.hStdInput = streams.in.get();
    startup.StartupInfo.hStdOutput = streams.outForChild.get();
    startup.StartupInfo.hStdError = streams.errForChild.get();
    startup.lpAttributeList = inherited.list();
    std::wstring line = commandLine(request);
    std::wstring environment = environmentBlock(request.environment);
    constexpr DWORD kFlags = CREATE_NO_WINDOW | CREATE_SUSPENDED | CREATE_NEW_PROCESS_GROUP |
                             CREATE_UNICODE_ENVIRONMENT | EXTENDED_STARTUPINFO_PRESENT;
    return ::CreateProcessW(wide_text::plainPath(request.program).c_str(), line.data(), nullptr, nullptr, TRUE, kFlags,
                            environment.data(), nullptr, &startup.StartupInfo, &process) != 0;
}
} // namespace

ChildOutcome runChild(const ChildRequest& request)
{
    // CreateProcess hands a batch file to the command interpreter, which reads words in its own way.
    if (!isProgramFile(request.program))
    {
        return notStarted(ERROR_BAD_EXE_FORMAT);
    }
    Streams streams;
    if (!streams.usable)
    {
        return notStarted(::GetLastError());
    }
    PROCESS_INFORMATION information = {};
    if (!start(request, streams, information))
    {
        return notStarted(::GetLastError());
    }
    const Handle process(information.hProcess);
    const Handle thread(information.hThread);
    const Handle job(makeJob());
    // Suspended until it is in the job, so that nothing it starts is outside.
    if (!job.valid() || ::AssignProcessToJobObject(job.get(), process.get()) == 0)
    {
        const DWORD reason = ::GetLastError();
        ::TerminateProcess(process.get(), 1);
        return notStarted(reason);
    }
    streams.closeChildEnds();
    ::ResumeThread(thread.get());
    ChildOutcome outcome;
    outcome.end = follow(process.get(), streams, request, outcome);
    ::TerminateJobObject(job.get(), 1);
    ::WaitForSingleObject(process.get(), INFINITE);
    DWORD status = 0;
    ::GetExitCodeProcess(process.get(), &status);
    if (outcome.end == ChildEnd::Exited)
    {
        outcome.end = status < kFirstFatalStatus ? ChildEnd::Exited : ChildEnd::Signalled;
        outcome.exitStatus = status < kFirstFatalStatus ? static_cast<int>(status) : -1;
    }
    return outcome;
}

// Asked of the system, not of the environment, and only folders that administrators alone can write to.
std::vector<std::string> programFolders()
{
    std::vector<std::string> folders;
    wchar_t* path = nullptr;
    if (::SHGetKnownFolderPath(FOLDERID_ProgramFiles, 0, nullptr, &path) == S_OK)
    {
        const std::string programs = wide_text::toUtf8(path);
        folders = {programs + "\\ipmitool", programs + "\\ipmitool\\bin"};
    }
    ::CoTaskMemFree(path);
    return folders;
}

std::string findProgram(const std::string& name, const std::vector<std::string>& folders)
{
    for (const std::string& folder : folders)
    {
        std::string path = folder;
        path.append("\\").append(name).append(kProgramEnding);
        const DWORD attributes = ::GetFileAttributesW(wide_text::path(path).c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        {
            return path;
        }
    }
    return std::string();
}
} // namespace ipmi
