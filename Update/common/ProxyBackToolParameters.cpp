#include "common/ProxyBackToolParameters.h"

#include <algorithm>
#include <iostream>

namespace
{
bool isOption(const std::string& word)
{
    return word.compare(0, 2, "--") == 0;
}

// The text before the first "=".
std::string nameOf(const std::string& word)
{
    return word.substr(0, word.find('='));
}
} // namespace

Parameters::Parameters(int argumentCount, const std::vector<std::string>& arguments)
{
    const std::size_t count = std::min(static_cast<std::size_t>(std::max(argumentCount, 0)), arguments.size());
    if (count < 3)
    {
        return;
    }
    command = arguments[1];
    subCommand = arguments[2];
    arguments_.assign(arguments.begin() + 3, arguments.begin() + static_cast<std::ptrdiff_t>(count));
}

bool Parameters::CheckShape() const
{
    if (arguments_.empty())
    {
        return true;
    }
    if (!isOption(arguments_.front()))
    {
        std::cout << "The command parameters are not vaild!" << std::endl;
        std::cout << "The korvan paramater should start with  --." << std::endl;
        return false;
    }
    for (std::size_t i = 0; i + 2 < arguments_.size(); ++i)
    {
        if (isOption(arguments_[i]) && !isOption(arguments_[i + 1]) && !isOption(arguments_[i + 2]))
        {
            std::cout << "The command parameters are not vaild!" << std::endl;
            std::cout << "A paramter can not carry two values! " << std::endl;
            return false;
        }
    }
    return true;
}

bool Parameters::CheckTable(const OptionTable& table) const
{
    for (const std::string& word : arguments_)
    {
        if (word.empty() || word.front() != '-')
        {
            continue;
        }
        const std::string name = nameOf(word);
        const auto known = std::find_if(table.begin(), table.end(),
                                        [&name](const OptionTable::value_type& row)
                                        { return row.first == name || (!row.second.empty() && row.second == name); });
        if (known == table.end())
        {
            std::cout << "The parameter: " << name << " is not supported!" << std::endl;
            return false;
        }
    }
    for (const OptionTable::value_type& row : table)
    {
        if (!row.second.empty() && Has(row.first) && Has(row.second))
        {
            std::cout << "Can not set \"" << row.first << "\" and \"" << row.second << "\" at the same time."
                      << std::endl;
            return false;
        }
    }
    return true;
}

bool Parameters::Has(const std::string& name) const
{
    if (name.empty())
    {
        std::cout << " The parameter should not be empty!" << std::endl;
        return false;
    }
    if (!isOption(name))
    {
        std::cout << " The parameter should start with --!" << std::endl;
        return false;
    }
    return std::any_of(arguments_.begin(), arguments_.end(),
                       [&name](const std::string& word) { return nameOf(word) == name; });
}

std::string Parameters::GetValue(const std::string& name) const
{
    if (name.empty())
    {
        std::cout << " The parameter should not be empty!" << std::endl;
        return std::string();
    }
    if (!isOption(name))
    {
        std::cout << " The parameter should start with dash!" << std::endl;
        return std::string();
    }
    const auto word = std::find_if(arguments_.begin(), arguments_.end(),
                                   [&name](const std::string& candidate) { return nameOf(candidate) == name; });
    if (word == arguments_.end())
    {
        return std::string();
    }
    const std::string::size_type equals = word->find('=');
    if (equals != std::string::npos)
    {
        return word->substr(equals + 1);
    }
    const auto next = word + 1;
    const bool hasValue = next != arguments_.end() && next->compare(0, 1, "-") != 0;
    return hasValue ? *next : std::string();
}
