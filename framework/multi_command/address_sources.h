#pragma once

#include "korvan_result.h"
#include "multi_command/private_file.h"
#include "nova/server_info.h"

#include <cstddef>
#include <string>
#include <vector>

namespace multi_command
{
// What one written address names.
struct AddressEntry
{
    std::string where; // for messages: option and place, or file and line
    std::vector<nova::ServerInfo> servers;
};

// The servers that an address with its ranges names, at most `most`, appended. False with a reason (target_address.h).
bool readAddress(const std::string& address, const std::string& kind, std::size_t most,
                 std::vector<nova::ServerInfo>& servers, std::string& error);

// Reads the values of the options that name targets. One object serves one command line: standard input can be read
// once only, and the number of targets is limited over all options.
class AddressSources
{
  public:
    // `openFiles`: what to do with a list file that holds passwords and that others can read.
    explicit AddressSources(OpenFiles openFiles = OpenFiles::Refuse) : openFiles_(openFiles) {}

    // `value`: addresses separated by commas, "@FILE" and "-" (or "@-") among them, each the list of a file or of standard
    // input: one address a line, '#' at the start of a line or behind a blank begins a comment, blank lines mean
    // nothing. Code 5 for a wrong address of the value itself, 6 and 7 for a list, 47 when the user breaks off; the
    // message says where, and holds no password. `entries` may then hold some already.
    KorvanResult read(const std::string& option, const std::string& value, std::vector<AddressEntry>& entries);

    bool inputTaken() const { return inputTaken_; }

    // From here on targets are counted anew: for what is left out instead of named.
    void countAnew() { count_ = 0; }

  private:
    KorvanResult readListed(const std::string& option, const std::string& name, std::vector<AddressEntry>& entries);
    KorvanResult readListFile(const std::string& option, const std::string& path, std::vector<AddressEntry>& entries);
    KorvanResult readLines(const std::string& option, const std::string& name, const std::string& content,
                           std::vector<AddressEntry>& entries);
    bool append(const std::string& option, const std::string& where, const std::string& address,
                std::vector<AddressEntry>& entries, std::string& error);

    OpenFiles openFiles_;
    std::size_t count_ = 0;
    bool inputTaken_ = false;
};
} // namespace multi_command
