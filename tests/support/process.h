#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Starts programs for tests. On Windows a program is found without its ".exe", the line ends of what it writes are those of a
// C++ text, and what interrupts it is Ctrl-Break.
namespace test_support
{
// What a program left behind.
struct ProcessOutcome
{
    int exitStatus = -1; // -1: ended by a signal, or not startable
    int signal = 0;      // that signal, 0: none
    bool timedOut = false;
    std::string out;
    std::string err;
};

struct ProcessOptions
{
    std::string workingFolder;                                    // empty: this process's
    std::string input;                                            // its standard input; afterwards that ends
    std::vector<std::pair<std::string, std::string>> environment; // in addition to this process's
    std::chrono::milliseconds timeout{30000};                     // then it is killed
    std::chrono::milliseconds interruptAfter{0};                  // then it gets SIGINT, once; 0: never
};

// Runs the program to its end. Its standard output and error are no terminal. `arguments` come after the program's name.
ProcessOutcome runProcess(const std::string& program, const std::vector<std::string>& arguments,
                          const ProcessOptions& options = ProcessOptions());

// A program that runs beside the test, such as a simulator; killed and waited for by the destructor.
class BackgroundProcess
{
  public:
    // Its standard output can be read here; its standard error is this process's. Throws std::runtime_error.
    BackgroundProcess(const std::string& program, const std::vector<std::string>& arguments);
    ~BackgroundProcess();
    BackgroundProcess(const BackgroundProcess&) = delete;
    BackgroundProcess& operator=(const BackgroundProcess&) = delete;

    // The next line of its standard output, without the line end; false when none came in time or the output ended.
    bool readLine(std::string& line, std::chrono::milliseconds timeout);

    void sendSignal(int signal) const;

    // Until then its standard input has no end.
    void closeInput();
    int pid() const { return pid_; }

    // Waits for its end; false when it still runs after the time.
    bool wait(std::chrono::milliseconds timeout, ProcessOutcome& outcome);

  private:
    struct System;

    int pid_ = -1;
    std::unique_ptr<System> system_;
    std::string buffered_;
};
} // namespace test_support
