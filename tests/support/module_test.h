#pragma once

#include "fake_framework/fake_services.h"
#include "log/log_control.h"
#include "support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

// One log record as a test sees it.
struct LogRecord
{
    int level;
    std::string source;
    int line;
    std::string text;
};

inline bool operator==(const LogRecord& left, const LogRecord& right)
{
    return left.level == right.level && left.text == right.text;
}

// Collects what is written to a standard stream while it lives.
class StreamCapture
{
  public:
    explicit StreamCapture(std::ostream& stream) : stream_(stream), old_(stream.rdbuf(buffer_.rdbuf())) {}
    ~StreamCapture() { stream_.rdbuf(old_); }
    StreamCapture(const StreamCapture&) = delete;
    StreamCapture& operator=(const StreamCapture&) = delete;

    std::string text() const { return buffer_.str(); }

  private:
    std::ostringstream buffer_;
    std::ostream& stream_;
    std::streambuf* old_;
};

// A test of the module over the fake framework: a folder of its own, the log and the console at hand.
class ModuleTest : public ::testing::Test
{
  protected:
    ModuleTest() : out_(std::cout), err_(std::cerr)
    {
        fake::reset();
        observeUpTo(4);
    }

    ~ModuleTest() override { log_control::observe(0, nullptr); }

    void observeUpTo(int level)
    {
        log_control::observe(level,
                             [this](int recordLevel, const std::string& source, int line, const std::string& text) {
                                 log_.push_back({recordLevel, source, line, text});
                             });
    }

    std::size_t logged(int level, const std::string& text) const
    {
        return static_cast<std::size_t>(std::count_if(log_.begin(), log_.end(),
                                                      [&](const LogRecord& record)
                                                      { return record.level == level && record.text == text; }));
    }

    // The first record with the text; a made-up one of level -1 when there is none.
    LogRecord record(const std::string& text) const
    {
        const auto found =
            std::find_if(log_.begin(), log_.end(), [&](const LogRecord& candidate) { return candidate.text == text; });
        return found == log_.end() ? LogRecord{-1, "", 0, ""} : *found;
    }

    std::string out() const { return out_.text(); }
    std::string err() const { return err_.text(); }
    std::string path(const std::string& name) const { return folder_.file(name); }

    static std::string content(const std::string& path)
    {
        std::ifstream file(path); // as text: the line ends are the same on every system
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }

    static bool exists(const std::string& path) { return std::ifstream(path).good(); }

    void write(const std::string& name, const std::string& text) const { folder_.write(name, text); }

    test_support::ScratchFolder folder_;
    std::vector<LogRecord> log_;

  private:
    StreamCapture out_;
    StreamCapture err_;
};

// A context with options given as name, value, name, value...
inline UserContext contextWith(std::map<std::string, std::string> options)
{
    UserContext context;
    context.options = std::move(options);
    return context;
}
