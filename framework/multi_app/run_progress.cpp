#include "multi_app/run_progress.h"

#include "multi_app/run_summary.h"
#include "progress_bar/terminal.h"
#include "text/text.h"

#include <iostream>
#include <vector>

RunProgress::RunProgress(std::size_t total) : total_(total), terminal_(terminal::errorIsTerminal()) {}

RunProgress::~RunProgress()
{
    if (terminal_ && total_ > 0)
    {
        status_line::clear();
    }
}

std::string RunProgress::statusText() const
{
    std::string status =
        std::to_string(done_) + "/" + std::to_string(total_) + " done, " + std::to_string(failed_) + " failed";
    if (!running_.empty())
    {
        status += ", running: " + text::join(std::vector<std::string>(running_.begin(), running_.end()), " ");
    }
    return status;
}

void RunProgress::started(const std::string& target)
{
    const std::lock_guard<std::mutex> lock(mutex_);
    running_.insert(target);
    if (terminal_)
    {
        status_line::draw(statusText());
    }
}

void RunProgress::finished(const std::string& target, const KorvanResult& result)
{
    const run_summary::Outcome outcome = run_summary::outcomeOf(result);
    const std::lock_guard<std::mutex> lock(mutex_);
    running_.erase(target);
    ++done_;
    if (outcome == run_summary::Outcome::Failed)
    {
        ++failed_;
    }
    if (terminal_)
    {
        status_line::draw(statusText());
        return;
    }
    std::string line =
        "[" + std::to_string(done_) + "/" + std::to_string(total_) + "] " + target + " " + run_summary::wordOf(outcome);
    if (outcome != run_summary::Outcome::Succeeded || run_summary::hasRemark(result))
    {
        line += " " + std::to_string(result.number()) + " " + text::visible(result.messageText());
    }
    std::cerr << line + "\n" << std::flush;
}
