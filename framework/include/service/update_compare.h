#pragma once

#include "korvan_framework_export.h"
#include "korvan_result.h"
#include "service/update_query.h"
#include "service/update_scan.h"

#include <cstdint>
#include <iosfwd>
#include <list>
#include <string>
#include <vector>

namespace service
{
// How to compare. The order of the fields is part of the contract with the loaded modules.
struct CompareOptions
{
    bool backup = false;
    bool allPsu = false;
    bool noSupersede = false;
    bool noReq = false;
    bool checkDevice = false;
    bool allDriver = false;
    std::list<std::string> psuList;
};

// Outcome of comparing one child update's version with the installed one.
enum class VersionOutcome : std::int32_t
{
    Same = 0,
    Newer = 1, // the package's version is newer than the installed one
    Older = 2,
    NotDetected = 3,
    NotComparable = 4,
};

// One child update beside what is installed. A child that fits several devices stands once for each of them.
struct ComparedChild
{
    PackageChild update;
    std::string installedVersion; // "Undetected" when the target has no such device
    std::string instanceId;
    std::string slotNumber;
    std::string slotType;
    std::int32_t selected = 0; // 1: to be updated
    VersionOutcome outcome = VersionOutcome::NotDetected;
    std::string unselectedReason; // as that of a package; empty when selected
};

struct ComparedPackage
{
    PackageInfo package; // its own children are those of the repository; `children` below are compared
    std::vector<ComparedChild> children;
    std::string alsoSelect;
    std::string alsoDeselect;
    std::int32_t forceId = 0; // 1: named by "--forceid"
    std::int32_t selected = 0;
    VersionOutcome outcome = VersionOutcome::NotDetected;
    std::string unselectedReason; // number, "-", explanation; empty when selected (docs/compare.md)
    std::int32_t flashOrder = 0;  // from 1 for what is selected, else 0
};

// The comparison of one target. A value: copies are independent.
struct CompareReport
{
    std::string machineType;
    std::string bmcType;
    std::string os;
    std::string arch;
    std::string scope;
    std::string type;
    std::string directory;
    bool partition = false;
    std::vector<ComparedPackage> packages;
};

// Compares what a target has with what the repository offers. Used once, by one thread.
class KORVAN_FRAMEWORK_EXPORT ServiceUpdateCompare
{
  public:
    explicit ServiceUpdateCompare(const CompareOptions& options);

    // What to compare. Neither report is owned; both must outlive RunCompare.
    void SetReports(const UpdateScanReport& scan, const QueryReport& query);

    // Fills the report. Failures: 88 when none was set, or when scan and query are of different machine types and no
    // package fits the inventory; 108 when a backup bank is asked for and there is none.
    KorvanResult RunCompare(CompareReport& report);

    static std::string ActionName();

  private:
    CompareOptions options_;
    const UpdateScanReport* scan_ = nullptr;
    const QueryReport* query_ = nullptr;
};

// Compare reports as files and tables (docs/files.md).
class KORVAN_FRAMEWORK_EXPORT SerializeCompareReport
{
  public:
    // Success, or 11 with the path when the file cannot be written; then no file is left under its final name.
    static KorvanResult SaveToXml(const CompareReport& report, const std::string& path);

    // Success, or 6 no such file, 10 not readable, 88 not a compare report.
    static KorvanResult LoadFromXml(const std::string& path, CompareReport& report);

    // `verbose` adds the columns that explain each decision.
    static void PrintResult(const CompareReport& report, bool verbose);
    static void PrintResult(const CompareReport& report, std::ostream& out, bool verbose);
};
} // namespace service
