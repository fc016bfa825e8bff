#pragma once

#include "support/process.h"
#include "support/scratch_folder.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

// A copy of the runnable tree with a folder to work in, so that a test can lay its own files beside the program.
class ProgramTree
{
  public:
    ProgramTree();

    std::string bin(const std::string& name) const { return folder_.file("bin/" + name); }
    std::string file(const std::string& name) const { return folder_.file("work/" + name); }

    // Writes a file of the work folder, readable for its owner alone.
    std::string write(const std::string& name, const std::string& content) const;

    // "global.config" beside the program with this one item.
    void configure(const std::string& name, const std::string& value) const;

    // Runs the copied program in the work folder.
    test_support::ProcessOutcome korvan(const std::vector<std::string>& arguments) const;

    // The words of a comparison of the sample repository into "out", and more.
    static std::vector<std::string> compareWords(const std::vector<std::string>& more);

    // Compares one target, given as an entry of a target list.
    test_support::ProcessOutcome compareTarget(const nlohmann::json& target,
                                               const std::vector<std::string>& more) const;

    // Neither the text nor any file of "out" holds the secret.
    void expectNoSecret(const std::string& screen, const std::string& secret) const;

    test_support::ProcessOptions options;

  private:
    test_support::ScratchFolder folder_;
};
