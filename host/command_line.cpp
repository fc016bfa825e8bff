#include "command_line.h"

#include "compare_options.h"
#include "console.h"
#include "option_names.h"
#include "text/text.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdint>
#include <map>

namespace
{
using Words = std::vector<std::string>;

constexpr std::size_t kFirstOption = 3;
constexpr char kAdvice[] = "; see 'korvan update compare --help'";

struct WrongLine
{
    std::string reason;
};

const OptionDescription* findOption(const std::string& name)
{
    const std::vector<OptionDescription>& options = compareOptions();
    const auto found =
        std::find_if(options.begin(), options.end(), [&name](const OptionDescription& o) { return name == o.name; });
    return found == options.end() ? nullptr : &*found;
}

// The name of "--name" or "--name=value"; empty for other words.
std::string optionName(const std::string& word)
{
    return text::startsWith(word, "--") ? word.substr(2, word.find('=') - 2) : std::string();
}

bool takesValue(const OptionDescription* description)
{
    return description != nullptr && description->form != OptionForm::Flag;
}

// The parser's own messages may quote a word, and a word may be a password; so the words are looked through here first,
// and the parser gets only what it can read. An option with an empty value, "--name=", becomes two words, because the
// parser would take the word behind it for the value.
Words checkedWords(const Words& words)
{
    Words checked;
    std::string previous;
    for (std::size_t index = kFirstOption; index < words.size(); ++index)
    {
        const std::string& word = words[index];
        if (word == "--help" || word == "-h")
        {
            return {"--help"};
        }
        const std::string name = optionName(word);
        const OptionDescription* const description = findOption(name);
        if (description == nullptr)
        {
            const std::string behind = previous.empty() ? std::string() : " behind --" + previous;
            throw WrongLine{name.empty() ? "unexpected word" + behind : "unknown option --" + name};
        }
        previous = name;
        const std::size_t equals = word.find('=');
        if (!takesValue(description))
        {
            if (equals != std::string::npos)
            {
                throw WrongLine{"option --" + name + " takes no value"};
            }
            checked.push_back(word);
            continue;
        }
        std::string value;
        if (equals != std::string::npos)
        {
            value = word.substr(equals + 1);
        }
        else if (index + 1 < words.size() && findOption(optionName(words[index + 1])) == nullptr)
        {
            value = words[++index];
        }
        else
        {
            throw WrongLine{"option --" + name + " needs a value"};
        }
        checked.push_back("--" + name);
        checked.push_back(value);
    }
    return checked;
}

class Parser
{
  public:
    Parser() : app_("Compares what the targets have with an update repository.", "korvan update compare")
    {
        app_.allow_windows_style_options(false);
        app_.set_help_flag("-h,--help", "Prints this text.");
        for (const OptionDescription& description : compareOptions())
        {
            add(description);
        }
    }

    // False when help is asked for. Throws WrongLine.
    bool parse(Words words)
    {
        std::reverse(words.begin(), words.end());
        try
        {
            app_.parse(words);
        }
        catch (const CLI::CallForHelp&)
        {
            return false;
        }
        catch (const CLI::ParseError&)
        {
            throw WrongLine{complaint()};
        }
        return true;
    }

    std::string help() const { return app_.help(); }

    std::map<std::string, std::string> values() const
    {
        std::map<std::string, std::string> values;
        for (const auto& entry : options_)
        {
            if (entry.second->count() > 0)
            {
                const bool flag = !takesValue(findOption(entry.first));
                values[entry.first] = flag ? std::string() : text::join(entry.second->results(), ",");
            }
        }
        return values;
    }

  private:
    void add(const OptionDescription& description)
    {
        const std::string name = std::string("--") + description.name;
        CLI::Option* added = nullptr;
        if (description.form == OptionForm::Flag)
        {
            added = app_.add_flag(name, description.text);
        }
        else
        {
            // The values are taken from the option itself, as they were written.
            const auto accept = [](const CLI::results_t&) { return true; };
            added = app_.add_option(name, accept, description.text);
            added->type_name(description.value);
            if (description.form == OptionForm::List)
            {
                added->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
            }
        }
        added->group(description.group);
        options_[description.name] = added;
    }

    // After the look through the words only a repetition is left to be wrong.
    std::string complaint() const
    {
        for (const auto& entry : options_)
        {
            const OptionDescription* const description = findOption(entry.first);
            if (entry.second->count() > 1 && takesValue(description) && description->form != OptionForm::List)
            {
                return "option --" + entry.first + " may stand once only";
            }
        }
        return "the options cannot be read";
    }

    CLI::App app_;
    std::map<std::string, CLI::Option*> options_; // owned by app_
};

std::int32_t numberOf(const UserContext& context, const char* name, std::int32_t defaultValue)
{
    if (!HasOption(context, name))
    {
        return defaultValue;
    }
    const OptionDescription* const description = findOption(name);
    const std::string value = GetOption(context, name, std::string());
    constexpr std::size_t kMostDigits = 6;
    const bool digits =
        !value.empty() && value.size() <= kMostDigits && value.find_first_not_of("0123456789") == std::string::npos;
    const int number = digits ? std::stoi(value) : -1;
    if (number < description->lowest || number > description->highest)
    {
        throw WrongLine{std::string("option --") + name + ": the value must be a whole number from " +
                        std::to_string(description->lowest) + " to " + std::to_string(description->highest)};
    }
    return number;
}

UserContext contextOf(const Words& words, const std::map<std::string, std::string>& options)
{
    UserContext context;
    context.programPath = words[0];
    context.command = words[1];
    context.subCommand = words[2];
    context.argumentVector = words;
    context.argumentCount = static_cast<std::int32_t>(words.size());
    context.options = options;
    context.outputDir = GetOption(context, option::kOutput, std::string());
    context.parallel = numberOf(context, option::kParallel, context.parallel);
    context.connectTimeout = numberOf(context, option::kConnectTimeout, context.connectTimeout);
    context.requestTimeout = numberOf(context, option::kRequestTimeout, context.requestTimeout);
    context.targetTimeout = numberOf(context, option::kTargetTimeout, context.targetTimeout);
    // The framework reads the others from the options.
    for (const OptionDescription& description : compareOptions())
    {
        if (description.form == OptionForm::Number)
        {
            numberOf(context, description.name, description.lowest);
        }
    }
    return context;
}
} // namespace

CommandLine parseCompare(const std::vector<std::string>& words)
{
    CommandLine line;
    try
    {
        Parser parser;
        if (!parser.parse(checkedWords(words)))
        {
            line.outcome = CommandLine::Outcome::Help;
            line.text = parser.help();
            return line;
        }
        line.context = contextOf(words, parser.values());
        line.outcome = CommandLine::Outcome::Run;
    }
    catch (const WrongLine& wrong)
    {
        line.text = wrong.reason + kAdvice;
    }
    return line;
}
