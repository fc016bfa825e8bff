#include "common/ProxyBackToolUtilities.h"

#include "xmodule_log.h"

#include <iostream>

namespace
{
constexpr char kSource[] = "Update/common/ProxyBackToolUtilities";

constexpr char kType[] = "--type";
constexpr char kForceId[] = "--forceid";
constexpr char kDir[] = "--dir";
constexpr char kExcludeId[] = "--excludeid";
constexpr char kIncludeId[] = "--includeid";
constexpr char kScope[] = "--scope";
constexpr char kNoScan[] = "--noscan";
constexpr char kXml[] = "--xml";
constexpr char kEsxi[] = "--esxi";
constexpr char kPmx[] = "--pmx";
constexpr char kMt[] = "--mt";
constexpr char kBackup[] = "--backup";
// Accepted and not passed on.
constexpr char kLog[] = "--log";
constexpr char kOutput[] = "--output";
constexpr char kConfig[] = "--config";

constexpr char kCompareWord[] = "compare";
constexpr char kUpdateWord[] = "update";
constexpr char kAll[] = "all";

void refuseValue(const char* option, const std::string& value)
{
    std::cout << "The value of the parameter " << option << " " << value << " is not valid. " << std::endl;
}
} // namespace

CommandBase::CommandBase(const Parameters* parameters) : parameters_(parameters) {}

bool CommandBase::extraCheck()
{
    return true;
}

bool CommandBase::Build()
{
    fillOptionTable();
    return parameters_->CheckTable(optionTable_) && extraCheck() && translateParameters();
}

void CommandBase::setCommand(const std::string& word)
{
    argumentString_ = word;
}

bool CommandBase::standsAlready(const std::string& flag) const
{
    return argumentString_.find(" " + flag + " ") != std::string::npos;
}

void CommandBase::addFlag(const std::string& flag)
{
    if (!standsAlready(flag))
    {
        argumentString_ += " " + flag;
    }
}

void CommandBase::addFlagWithValue(const std::string& flag, const std::string& value)
{
    if (standsAlready(flag))
    {
        return;
    }
    argumentString_ += " " + flag;
    if (argumentString_.find("esxi") == std::string::npos)
    {
        argumentString_ += " ";
    }
    const bool quoted = value.find(' ') != std::string::npos;
    argumentString_ += quoted ? "\"" + value + "\"" : value;
}

bool CommandBase::translateValued(const std::string& option, const std::string& flag)
{
    if (!parameters_->Has(option))
    {
        return true;
    }
    std::string value = parameters_->GetValue(option);
    if (value.empty())
    {
        std::cout << "The parameter value of " << option << " can not be empty. " << std::endl;
        return false;
    }
    if (option.find(kEsxi) != std::string::npos)
    {
        value.insert(0, "=https://");
    }
    addFlagWithValue(flag, value);
    return true;
}

bool CommandBase::translateFlag(const std::string& option, const std::string& flag)
{
    if (!parameters_->Has(option))
    {
        return true;
    }
    if (!parameters_->GetValue(option).empty())
    {
        std::cout << "The parameter " << option << " can not carry value. " << std::endl;
        return false;
    }
    addFlag(flag);
    return true;
}

CompareUpdateCommand::CompareUpdateCommand(const Parameters* parameters, const std::string& commandWord)
    : CommandBase(parameters), commandWord_(commandWord)
{
}

void CompareUpdateCommand::fillOptionTable()
{
    optionTable_.clear();
    for (const char* name : {kType, kForceId, kDir, kExcludeId, kIncludeId, kScope, kNoScan, kXml, kEsxi, kPmx, kMt,
                             kBackup, kLog, kOutput, kConfig})
    {
        optionTable_.emplace_back(name, "");
    }
}

bool CompareUpdateCommand::translateParameters()
{
    setCommand(commandWord_ == kCompareWord ? kCompareWord : kUpdateWord);
    addFlag("-u");
    if (!translateType() || !translateForceId() || !translateIds() || !translateScope() || !translateTarget())
    {
        return false;
    }
    std::string updateArgs;
    if (!translatePmx(updateArgs))
    {
        return false;
    }
    translateBackup(updateArgs);
    addUpdateArgs(updateArgs);
    return true;
}

bool CompareUpdateCommand::translateType()
{
    if (!parameters().Has(kType))
    {
        return true;
    }
    const std::string value = parameters().GetValue(kType);
    if (value.empty())
    {
        std::cout << "The parameter --type can not be empty. " << std::endl;
        return false;
    }
    if (value != "fw" && value != "dd")
    {
        refuseValue(kType, value);
        return false;
    }
    addFlag(value == "fw" ? "-F" : "-D");
    return true;
}

bool CompareUpdateCommand::translateForceId()
{
    if (!translateValued(kForceId, "-f"))
    {
        return false;
    }
    if (!parameters().Has(kForceId))
    {
        return true;
    }
    if (parameters().Has(kIncludeId))
    {
        addFlagWithValue("-o", kAll);
        return true;
    }
    return translateValued(kForceId, "-s") && translateValued(kForceId, "-o");
}

bool CompareUpdateCommand::translateIds()
{
    if (!translateValued(kDir, "-l") || !translateValued(kExcludeId, "-e") || !translateValued(kIncludeId, "-i"))
    {
        return false;
    }
    if (parameters().Has(kIncludeId))
    {
        addFlag("-L");
        addFlagWithValue("-e", kAll);
        addFlagWithValue("-s", kAll);
    }
    return true;
}

bool CompareUpdateCommand::translateScope()
{
    if (!parameters().Has(kScope))
    {
        return true;
    }
    const std::string value = parameters().GetValue(kScope);
    if (value == "latest")
    {
        addFlag("-L");
    }
    else if (value == "individual")
    {
        addFlag("-L");
        addFlagWithValue("-e", kAll);
    }
    else if (value != "velpak")
    {
        refuseValue(kScope, value);
        return false;
    }
    return true;
}

bool CompareUpdateCommand::translateTarget()
{
    return translateFlag(kNoScan, "--noinventory") && translateFlag(kXml, "--xml") && translateValued(kMt, "-m") &&
           translateValued(kEsxi, "--vmware-esxi");
}

// user:password@host; the password may hold colons but no at sign.
bool CompareUpdateCommand::translatePmx(std::string& updateArgs)
{
    if (!parameters().Has(kPmx))
    {
        return true;
    }
    const std::string value = parameters().GetValue(kPmx);
    const std::string::size_type colon = value.find(':');
    const std::string::size_type at = colon == std::string::npos ? colon : value.find('@', colon + 1);
    if (at == std::string::npos)
    {
        refuseValue(kPmx, value);
        return false;
    }
    addFlagWithValue("--host", value.substr(at + 1));
    updateArgs += "PMX:--user=" + value.substr(0, colon) + " --password=" + value.substr(colon + 1, at - colon - 1);
    return true;
}

void CompareUpdateCommand::translateBackup(std::string& updateArgs)
{
    if (!parameters().Has(kBackup))
    {
        return;
    }
    // The first letter is missing; kept, scripts look for the line so.
    KORVAN_LOG(3, kSource) << "ompareUpdateCommand::translateParameters ";
    if (!updateArgs.empty())
    {
        updateArgs += ",";
    }
    updateArgs += "UEFI:--backup,PMX:--backup";
    KORVAN_LOG(3, kSource) << "CompareUpdateCommand::translateParameters updateArgs=" << updateArgs;
}

void CompareUpdateCommand::addUpdateArgs(const std::string& updateArgs)
{
    if (updateArgs.empty())
    {
        return;
    }
    const std::string wholeUpdateArgs = "--update-args=\"" + updateArgs + "\"";
    KORVAN_LOG(3, kSource) << "CompareUpdateCommand::translateParameters wholeUpdateArgs=" << wholeUpdateArgs;
    addFlag(wholeUpdateArgs);
    KORVAN_LOG(3, kSource) << "CompareUpdateCommand::translateParameters after addParameter wholeUpdateArgs";
}
