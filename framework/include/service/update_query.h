#pragma once

#include "korvan_framework_export.h"
#include "korvan_result.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace service
{
// What to ask the repository for. The order of the fields is part of the contract with the loaded modules.
struct QueryOptions
{
    std::uint32_t osType = static_cast<std::uint32_t>(-1); // os_names.h; all bits set: none
    std::uint32_t osArch = static_cast<std::uint32_t>(-1);
    std::string osMinorVersion;
    std::string bmcType;
    std::string queryDir; // ends in a backslash on every platform
    std::string machineType;
    std::string scope;                   // "latest", "velpak", "individual"
    std::string typeText;                // "fw,dd,mm", "all"
    std::vector<std::int32_t> typeCodes; // 1 firmware, 3 device driver, 5 MM, 12 software, 99 all
    std::vector<std::string> includeIds;
    std::vector<std::string> excludeIds;
    std::vector<std::string> forceIds;
    bool noReq = false;
    bool ignoreMtOsCheck = false;
    bool forceAll = false;
    bool remote = false;            // the target is reached over its management controller
    bool backup = false;            // ask for the backup bank
    std::array<bool, 8> reserved{}; // keeps the record's size for modules that are built already
};

// One child update of a package: one device's piece of it.
struct PackageChild
{
    std::string softwareId;
    std::string newVersion;
    std::string description;
    std::string category;
    std::string classification;
    std::string adapterName; // the device as users know it
    bool hexVersion = false; // the parts of its versions are hexadecimal numbers
};

// One package of the repository, as its descriptor gives it (docs/repository.md).
struct PackageInfo
{
    std::string name;
    std::string component;
    std::string severity;
    std::string severityDescription;
    std::string reboot;
    std::string rebootDescription;
    std::string macroPackageId;
    std::string updateId;
    std::string packageVersion;
    std::string requisite; // update ids, separated by commas; so the next two and `supersede`
    std::string prerequisite;
    std::string corequisite;
    std::string supersede;
    std::string payloadFile;
    std::string packageXml;
    std::string velpakXml;
    std::string commandLine;
    std::string agentlessSupport; // "true": can be applied over the management controller
    std::string releaseDate;
    std::int32_t type = 1; // a type code
    std::vector<PackageChild> children;
    std::string payloadSha256;     // lower-case hexadecimal; empty: not stated
    std::uint64_t payloadSize = 0; // bytes; 0: not stated
};

// What the repository holds for one platform. A value: copies are independent.
struct KORVAN_FRAMEWORK_EXPORT QueryReport
{
    QueryOptions options; // what was asked, copied into the compare report's head
    std::vector<PackageInfo> packages;

    // Success, or 6 no such file, 10 not readable, 88 not a query report. On a failure the report is left alone.
    KorvanResult LoadFromXml(const std::string& path);

    // 0, or 11 when the file cannot be written; then no file is left under its final name.
    int SaveToXml(const std::string& path) const;
};

// Asks the repository which packages apply. Used once, by one thread.
class KORVAN_FRAMEWORK_EXPORT ServiceUpdateQuery
{
  public:
    explicit ServiceUpdateQuery(const QueryOptions& options);

    // Failures: 38 no such directory, 5 unknown scope, 104 nothing applies. The message names directory and platform.
    KorvanResult RunQuery(QueryReport& report);

    static std::string ActionName();

  private:
    QueryOptions options_;
};
} // namespace service
