#pragma once

#include <string>
#include <utility>
#include <vector>

// The program's own command line, read for the hand-over to the legacy installer tool. Refusals are printed to standard
// output, each with a line end; their odd texts are kept, scripts at users' sites match them. Nothing throws. Used by one
// thread.
class Parameters
{
  public:
    // Pairs of option names; both names of a pair must not be given together. An empty second name: no such rule.
    using OptionTable = std::vector<std::pair<std::string, std::string>>;

    // Fewer than three words: nothing is taken.
    Parameters(int argumentCount, const std::vector<std::string>& arguments);
    virtual ~Parameters() = default;
    Parameters(const Parameters&) = default;
    Parameters& operator=(const Parameters&) = default;

    // True when the first word is an option and no option carries two values.
    bool CheckShape() const;

    // True when every option stands in the table and no pair is given whole.
    bool CheckTable(const OptionTable& table) const;

    // Whether the option, with its "--", was given.
    bool Has(const std::string& name) const;

    // What follows the first "=" of the option's first word, or else the next word unless that begins with "-"; empty
    // when there is neither.
    std::string GetValue(const std::string& name) const;

    std::string command;    // first word after the program's name
    std::string subCommand; // second word

  private:
    std::vector<std::string> arguments_; // all further words
};
