#pragma once

#include <cstdint>
#include <string>

// The file of controllers that the user trusts by their certificates' fingerprints (docs/files.md).
namespace trust
{
// What the file says of a controller.
enum class Knowledge
{
    Unknown,
    Known,  // it has this fingerprint
    Other,  // it has another one
    Broken, // the file cannot be used, so nothing may be concluded from it
};

struct Finding
{
    Knowledge knowledge = Knowledge::Unknown;
    std::string known;  // with Other: the fingerprint that the file has
    std::string reason; // with Broken: names the file, and the line where one is wrong
    bool added = false; // addIfUnknown has put it into the file
};

// The controller as the file names it: "host:port", lower case, IPv6 in brackets. `port` 0 is that of HTTPS.
std::string controllerName(const std::string& host, std::uint32_t port);

// One object reads or changes one file; any number of objects, threads and programs may do so at once. A file that is
// missing knows nobody.
class KnownControllers
{
  public:
    explicit KnownControllers(const std::string& path) : path_(path) {}

    // "known_controllers" in the folder ".korvan" of the user's home; empty when there is no home.
    static std::string usualPath();

    const std::string& path() const { return path_; }

    Finding find(const std::string& controller, const std::string& fingerprint) const;

    // As find; an unknown controller is put into the file, which is made, with its folder, when it is missing. Readers
    // see the old file or the new one.
    Finding addIfUnknown(const std::string& controller, const std::string& fingerprint) const;

  private:
    bool read(std::string& content, std::string& reason) const;

    std::string path_;
};
} // namespace trust
