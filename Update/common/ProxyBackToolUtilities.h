#pragma once

#include "common/ProxyBackToolParameters.h"

#include <string>

// Turns the program's own options into the argument string of the legacy installer tool. Used by one thread, once.
class CommandBase
{
  public:
    // The parameters are not owned and must outlive the command.
    explicit CommandBase(const Parameters* parameters);
    virtual ~CommandBase() = default;
    CommandBase(const CommandBase&) = delete;
    CommandBase& operator=(const CommandBase&) = delete;

  protected:
    virtual void fillOptionTable() = 0;
    virtual bool extraCheck();
    virtual bool translateParameters() = 0;

  public:
    // Checks the options and translates them. False after a refusal was printed to standard output; the argument string
    // is then left as far as it was built.
    bool Build();

    const std::string& argumentString() const { return argumentString_; }

  protected:
    void setCommand(const std::string& word);

    // Appends the flag unless it stands, with a blank behind it, in the string already. A flag that stands last is not
    // seen and comes a second time; kept, the tool takes it and its callers' scripts compare the string.
    void addFlag(const std::string& flag);

    // The same with a value, in double quotes when it holds a blank. Once the string holds "esxi", every later flag is
    // joined to its value without a blank, which is how the tool wants that case.
    void addFlagWithValue(const std::string& flag, const std::string& value);

    // Nothing when the option is absent; false when it has no value.
    bool translateValued(const std::string& option, const std::string& flag);

    // Nothing when the option is absent; false when it has a value.
    bool translateFlag(const std::string& option, const std::string& flag);

    const Parameters& parameters() const { return *parameters_; }

    Parameters::OptionTable optionTable_;

  private:
    bool standsAlready(const std::string& flag) const;

    const Parameters* parameters_;
    std::string argumentString_;
};

// The compare command's options for the legacy tool's "compare" or "update" command.
class CompareUpdateCommand : public CommandBase
{
  public:
    // `commandWord`: "compare"; anything else means "update".
    CompareUpdateCommand(const Parameters* parameters, const std::string& commandWord);

  protected:
    void fillOptionTable() override;
    bool translateParameters() override;

  private:
    bool translateType();
    bool translateForceId();
    bool translateIds();
    bool translateScope();
    bool translateTarget();
    bool translatePmx(std::string& updateArgs);
    void translateBackup(std::string& updateArgs);
    void addUpdateArgs(const std::string& updateArgs);

    std::string commandWord_;
};
