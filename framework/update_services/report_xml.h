#pragma once

#include "repository/xml_text.h"

#include <cstddef>
#include <cstdint>
#include <string>

// What the three reports have in common as files: their limits, and readers that say when a value is missing.
namespace update_services
{
constexpr std::size_t kMaxReportBytes = std::size_t{256} * 1024 * 1024;
constexpr char kReportVersion[] = "1.0";

// Opens a report whose root is `root`. 0, or the code of the failure: 6, 10 or 88; `error` then names the file.
std::uint32_t openReport(const std::string& path, const char* root, pugi::xml_document& document, std::string& error);

// Writes a report whole or not at all. A failure also becomes a remark on the target at work.
bool saveReport(const pugi::xml_document& document, const std::string& path, std::string& error);

// Collects the values of one element. A value that is missing or malformed makes the whole report one that is refused:
// `error` keeps the first such element.
class ElementReader
{
  public:
    ElementReader(const pugi::xml_node& element, std::string& error) : element_(element), error_(error) {}

    void text(const char* name, std::string& value);
    void integer(const char* name, std::int32_t& value);
    void unsignedInteger(const char* name, std::uint32_t& value);
    void unsignedLong(const char* name, std::uint64_t& value);
    void flag(const char* name, bool& value); // "1" or "0"

    // The element itself; noted as missing when it is not there.
    pugi::xml_node child(const char* name);

    bool failed() const { return !error_.empty(); }
    void fail(const char* name, const char* reason);

  private:
    pugi::xml_node element_;
    std::string& error_;
};
} // namespace update_services
