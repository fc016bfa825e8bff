#pragma once

#include "basic_multi_app.h"
#include "interrupt.h"
#include "nova/server_info.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <string>

// A command application whose task is a function of the test.
class TestApplication : public BasicMultiApp
{
  public:
    using Task = std::function<KorvanResult(const TestApplication&, const nova::ServerInfo&, const std::string&)>;

    explicit TestApplication(const Task& task) : task_(task) {}

    KorvanResult RunTask(const nova::ServerInfo& server, const std::string& outputDir) override
    {
        return task_(*this, server, outputDir);
    }

    void HandleResult() override
    {
        ++handled;
        if (handler)
        {
            handler();
        }
    }

    KorvanResult SummarizeResult(const std::map<std::string, KorvanResult>& finished) override
    {
        results = finished;
        return BasicMultiApp::SummarizeResult(finished);
    }

    UserContext inherited(bool keepAllTargets) const { return InheritParentContext(keepAllTargets); }

    int handled = 0;
    std::function<void()> handler;
    std::map<std::string, KorvanResult> results;

  private:
    Task task_;
};

// Runs test applications in a folder of their own and keeps what they print.
class MultiAppTest : public testing::Test
{
  protected:
    MultiAppTest() { context_.outputDir = folder_.file("out"); }
    ~MultiAppTest() override { interrupt::reset(); }

    KorvanResult run(TestApplication& application)
    {
        std::ostringstream out;
        std::ostringstream err;
        std::streambuf* const oldOut = std::cout.rdbuf(out.rdbuf());
        std::streambuf* const oldErr = std::cerr.rdbuf(err.rdbuf());
        KorvanResult result = application.Initialize(context_);
        if (result.succeeded())
        {
            result = application.Running();
        }
        application.Cleanup();
        std::cout.rdbuf(oldOut);
        std::cerr.rdbuf(oldErr);
        out_ = out.str();
        err_ = err.str();
        return result;
    }

    KorvanResult run(const TestApplication::Task& task)
    {
        TestApplication application(task);
        const KorvanResult result = run(application);
        results_ = application.results;
        return result;
    }

    std::set<std::string> entries() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(context_.outputDir))
        {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    const test_support::ScratchFolder folder_;
    UserContext context_;
    std::map<std::string, KorvanResult> results_;
    std::string out_;
    std::string err_;
};
