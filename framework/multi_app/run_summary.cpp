#include "multi_app/run_summary.h"

#include "result_codes.h"
#include "text/text.h"

#include <algorithm>
#include <ostream>

namespace
{

std::size_t countOf(const std::map<std::string, KorvanResult>& results, run_summary::Outcome outcome)
{
    return static_cast<std::size_t>(std::count_if(results.begin(), results.end(),
                                                  [outcome](const auto& entry)
                                                  { return run_summary::outcomeOf(entry.second) == outcome; }));
}

std::string padded(const std::string& value, std::size_t width)
{
    return value + std::string(width - std::min(width, text::displayWidth(value)), ' ');
}

std::string paddedNumber(std::uint32_t number)
{
    constexpr std::size_t kWidth = 5;
    const std::string digits = std::to_string(number);
    return std::string(kWidth - std::min(kWidth, digits.size()), ' ') + digits;
}

enum class Remark
{
    Without,
    With
};

void printLines(std::ostream& out, const std::map<std::string, KorvanResult>& results, run_summary::Outcome outcome,
                Remark remark, std::size_t width)
{
    constexpr std::size_t kWordWidth = 7;
    for (const auto& entry : results)
    {
        if (run_summary::outcomeOf(entry.second) == outcome &&
            run_summary::hasRemark(entry.second) == (remark == Remark::With))
        {
            out << padded(text::visible(entry.first), width) << "  " << padded(run_summary::wordOf(outcome), kWordWidth)
                << " " << paddedNumber(entry.second.number()) << "  "
                << text::visible(text::trim(entry.second.messageText())) << '\n';
        }
    }
}
} // namespace

namespace run_summary
{
Outcome outcomeOf(const KorvanResult& result)
{
    if (result.succeeded())
    {
        return Outcome::Succeeded;
    }
    return result.number() == result_code::kInterruptedByUser ? Outcome::Skipped : Outcome::Failed;
}

bool hasRemark(const KorvanResult& result)
{
    return result.succeeded() && result.messageText() != KorvanResult(result.code).messageText();
}

const char* wordOf(Outcome outcome)
{
    switch (outcome)
    {
    case Outcome::Succeeded:
        return "OK";
    case Outcome::Skipped:
        return "SKIPPED";
    case Outcome::Failed:
        break;
    }
    return "FAILED";
}

void print(std::ostream& out, const std::map<std::string, KorvanResult>& results, const std::string& outputDir)
{
    const std::string where = outputDir.empty() ? std::string() : " Results: " + text::visible(outputDir);
    out << '\n';
    if (results.empty())
    {
        out << "No target was named; name controllers with --bmc or --pmx, or several and this machine in a list with "
               "--config."
            << where << '\n';
        return;
    }
    std::size_t width = 0;
    for (const auto& entry : results)
    {
        width = std::max(width, text::displayWidth(text::visible(entry.first)));
    }
    for (const Outcome outcome : {Outcome::Succeeded, Outcome::Skipped, Outcome::Failed})
    {
        printLines(out, results, outcome, Remark::Without, width);
        printLines(out, results, outcome, Remark::With, width);
    }
    out << results.size() << (results.size() == 1 ? " target: " : " targets: ") << countOf(results, Outcome::Succeeded)
        << " succeeded, " << countOf(results, Outcome::Failed) << " failed, " << countOf(results, Outcome::Skipped)
        << " skipped." << where << '\n';
}

KorvanResult overall(const std::map<std::string, KorvanResult>& results)
{
    if (countOf(results, Outcome::Failed) > 0)
    {
        return KorvanResult(result_code::kTasksFailed);
    }
    return countOf(results, Outcome::Skipped) > 0 ? KorvanResult(result_code::kTasksSkipped) : KorvanResult();
}
} // namespace run_summary
