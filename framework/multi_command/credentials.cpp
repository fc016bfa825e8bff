#include "multi_command/credentials.h"

#include "files/files.h"
#include "multi_command/private_file.h"
#include "multi_command/standard_input.h"
#include "multi_command/target_address.h"
#include "multi_command/target_name.h"
#include "option_names.h"
#include "result_codes.h"
#include "text/environment.h"
#include "text/text.h"

#include <array>
#include <string>

namespace
{
constexpr std::size_t kLargestSecret = 65536;
constexpr char kUserVariable[] = "KORVAN_USERNAME";
constexpr char kPasswordVariable[] = "KORVAN_PASSWORD";

using Servers = std::vector<nova::ServerInfo>;

struct Login
{
    std::string user;
    std::string password;
};

std::string named(const char* option)
{
    return std::string("option --") + option;
}

KorvanResult wrong(const std::string& reason)
{
    return KorvanResult(result_code::kInvalidParameter, reason);
}

KorvanResult check(const Login& login, const std::string& userSource, const std::string& passwordSource)
{
    if (!multi_command::isValidUser(login.user))
    {
        return wrong(userSource + ": the name holds a ':', a blank or a control character");
    }
    if (!multi_command::isValidPassword(login.password))
    {
        return wrong(passwordSource + ": the password holds a control character");
    }
    return KorvanResult();
}

std::string firstLine(const std::string& content)
{
    const std::string line = content.substr(0, content.find('\n'));
    return !line.empty() && line.back() == '\r' ? line.substr(0, line.size() - 1) : line;
}

KorvanResult takeFirstLine(const std::string& content, const std::string& source, std::string& password)
{
    password = firstLine(content);
    return password.empty() ? KorvanResult(result_code::kInvalidFile, source + ": the first line is empty")
                            : KorvanResult();
}

KorvanResult readPasswordFile(const UserContext& context, std::string& password)
{
    const std::string path = GetOption(context, option::kPasswordFile, std::string());
    if (path.empty())
    {
        return wrong(named(option::kPasswordFile) + ": names no file");
    }
    const std::string source = "password file " + text::visible(path);
    std::string content;
    switch (files::read(path, kLargestSecret, content))
    {
    case files::ReadOutcome::Missing:
        return KorvanResult(result_code::kFileMissing, source + ": there is no such file");
    case files::ReadOutcome::Unreadable:
        return KorvanResult(result_code::kInvalidFile, source + ": cannot be read, or is no regular file");
    case files::ReadOutcome::TooLarge:
        return KorvanResult(result_code::kInvalidFile,
                            source + ": is larger than " + std::to_string(kLargestSecret) + " bytes");
    case files::ReadOutcome::Ok:
        break;
    }
    if (!HasOption(context, option::kAllowOpenFiles) && multi_command::isReadableByOthers(path))
    {
        return KorvanResult(result_code::kInvalidFile, source + ": " + multi_command::openFileComplaint(path));
    }
    return takeFirstLine(content, source, password);
}

KorvanResult readPasswordInput(multi_command::StandardInput input, std::string& password)
{
    const std::string source = named(option::kPasswordStdin);
    if (input == multi_command::StandardInput::Taken)
    {
        return wrong(source + ": standard input gives the targets already");
    }
    std::string content;
    switch (standard_input::readAll(kLargestSecret, content))
    {
    case standard_input::Outcome::Interrupted:
        return KorvanResult(result_code::kInterruptedByUser);
    case standard_input::Outcome::TooLarge:
    case standard_input::Outcome::Unreadable:
        return KorvanResult(result_code::kInvalidFile, source + ": standard input cannot be read, or is too long");
    case standard_input::Outcome::Ok:
        break;
    }
    return takeFirstLine(content, source, password);
}

// `source` says which option gave the password; null without one.
KorvanResult readOptions(const UserContext& context, multi_command::StandardInput input, Login& login,
                         const char*& source)
{
    source = nullptr;
    for (const char* const name : {option::kBmcPassword, option::kPasswordFile, option::kPasswordStdin})
    {
        if (HasOption(context, name) && source != nullptr)
        {
            return wrong("options --" + std::string(source) + " and --" + name + " exclude each other");
        }
        source = HasOption(context, name) ? name : source;
    }
    login.user = GetOption(context, option::kBmcUsername, std::string());
    login.password = GetOption(context, option::kBmcPassword, std::string());
    KorvanResult result;
    if (HasOption(context, option::kPasswordFile))
    {
        result = readPasswordFile(context, login.password);
    }
    else if (HasOption(context, option::kPasswordStdin))
    {
        result = readPasswordInput(input, login.password);
    }
    return result.succeeded()
               ? check(login, named(option::kBmcUsername), source == nullptr ? std::string() : named(source))
               : result;
}

bool lacksUser(const nova::ServerInfo& server)
{
    return server.option != option::kLocal && server.user.empty();
}

bool lacksPassword(const nova::ServerInfo& server)
{
    return server.option != option::kLocal && !server.user.empty() && server.password.empty();
}

void fill(const Login& login, Servers& servers)
{
    for (nova::ServerInfo& server : servers)
    {
        if (lacksUser(server))
        {
            server.user = login.user;
        }
        if (lacksPassword(server))
        {
            server.password = login.password;
        }
    }
}

// Which targets a question is for; empty when there is none.
std::string forWhom(const Servers& servers, bool (*lacks)(const nova::ServerInfo&))
{
    const nova::ServerInfo* first = nullptr;
    std::size_t count = 0;
    for (const nova::ServerInfo& server : servers)
    {
        if (lacks(server))
        {
            first = first == nullptr ? &server : first;
            ++count;
        }
    }
    if (count == 0)
    {
        return std::string();
    }
    return count == 1 ? multi_command::targetName(*first) : std::to_string(count) + " targets that have none";
}

KorvanResult askFor(const std::string& question, standard_input::Echo echo, std::string& answer)
{
    switch (standard_input::ask(question, echo, answer))
    {
    case standard_input::Outcome::Interrupted:
        return KorvanResult(result_code::kInterruptedByUser);
    case standard_input::Outcome::TooLarge:
    case standard_input::Outcome::Unreadable:
        return wrong("the answer cannot be read from the terminal");
    case standard_input::Outcome::Ok:
        break;
    }
    return KorvanResult();
}

// `login`: what is known already.
KorvanResult askUser(Login login, Servers& servers)
{
    std::string whom = forWhom(servers, lacksUser);
    if (!whom.empty())
    {
        KorvanResult result =
            askFor("User for " + whom + " (empty: no login): ", standard_input::Echo::Shown, login.user);
        if (!result.succeeded())
        {
            return result;
        }
        fill(login, servers);
    }
    whom = forWhom(servers, lacksPassword);
    if (!whom.empty())
    {
        KorvanResult result = askFor("Password for " + whom + ": ", standard_input::Echo::Hidden, login.password);
        if (!result.succeeded())
        {
            return result;
        }
    }
    fill(login, servers);
    return check(login, "the answer", "the answer");
}
} // namespace

namespace multi_command
{
KorvanResult fillCredentials(const UserContext& context, StandardInput input, std::vector<nova::ServerInfo>& servers)
{
    Login given;
    const char* source = nullptr;
    KorvanResult result = readOptions(context, input, given, source);
    if (!result.succeeded())
    {
        return result;
    }
    const Login surrounding{environment::variable(kUserVariable), environment::variable(kPasswordVariable)};
    result = check(surrounding, kUserVariable, kPasswordVariable);
    if (!result.succeeded())
    {
        return result;
    }
    const Login known{given.user.empty() ? surrounding.user : given.user,
                      given.password.empty() ? surrounding.password : given.password};
    fill(known, servers);
    const bool mayAsk = input == StandardInput::Free && !HasOption(context, option::kPasswordStdin) &&
                        !HasOption(context, option::kNoInput) && standard_input::isDialogue();
    return mayAsk ? askUser(known, servers) : KorvanResult();
}
} // namespace multi_command
