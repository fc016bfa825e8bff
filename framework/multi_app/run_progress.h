#pragma once

#include "korvan_result.h"
#include "progress_bar/status_line.h"

#include <cstddef>
#include <mutex>
#include <set>
#include <string>

// Tells the user on standard error how far the run is: on a terminal one line that is drawn again and again, otherwise
// one plain line for each target that ends. Safe to use from any thread. The terminal's line is cleared by the
// destructor.
class RunProgress
{
  public:
    explicit RunProgress(std::size_t total);
    ~RunProgress();
    RunProgress(const RunProgress&) = delete;
    RunProgress& operator=(const RunProgress&) = delete;

    void started(const std::string& target);
    void finished(const std::string& target, const KorvanResult& result);

  private:
    std::string statusText() const;

    const std::size_t total_;
    const bool terminal_;
    const status_line::Owner owner_;
    std::mutex mutex_;
    std::size_t done_ = 0;
    std::size_t failed_ = 0;
    std::set<std::string> running_;
};
