#pragma once

#include "connect_option.h"
#include "dynamic_progress_bar.h"
#include "korvan_framework_export.h"
#include "korvan_result.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

// Settings of one target's scan. The order of the fields is part of the contract with the loaded modules.
struct UpdateScanOption
{
    std::int32_t ioBay = -1;
    bool useTarn = false;
    bool checkDevice = false;
    bool cfcSystem = false;
    bool checkTrust = false;
    std::string outputDir;   // into which the scan's files go
    std::string dir;         // "--dir"
    std::string commandLine; // may hold a password: it goes into no log or report
    std::string type = "all";
    ConnectOption connectOption;
};

namespace service
{
// One installed update: a firmware, a driver or a piece of software.
struct ScanItem
{
    std::string id; // the resource's own id
    std::string name;
    std::string softwareId; // what packages are matched by; never empty after a scan
    std::string version;
    std::string category; // "Firmware", "Driver" or "Software"
    std::string classification;
    std::string manufacturer;
    std::string releaseDate;
    std::string slotNumber; // decimal; empty: unknown
    std::string slotType;   // "0": on the system board; "1": in a slot; empty: unknown
    bool updateable = true;
    bool backupBank = false;
};

// A target's inventory. A value: copies are independent.
class KORVAN_FRAMEWORK_EXPORT UpdateScanReport
{
  public:
    const std::vector<ScanItem>& GetScanResults() const { return items_; }
    std::string GetMT() const { return machineType_; }
    std::string GetOS() const { return os_; }     // a key or display name of os_names.h
    std::string GetArch() const { return arch_; } // the same
    std::string GetOSMinorVersion() const { return osMinorVersion_; }
    std::string GetBmcType() const { return bmcType_; }
    bool IsPartition() const { return partition_; } // one node of a system that is partitioned

    void AddScanResult(const ScanItem& item) { items_.push_back(item); }
    void SetMT(const std::string& value) { machineType_ = value; }
    void SetOS(const std::string& value) { os_ = value; }
    void SetArch(const std::string& value) { arch_ = value; }
    void SetOSMinorVersion(const std::string& value) { osMinorVersion_ = value; }
    void SetBmcType(const std::string& value) { bmcType_ = value; }
    void SetPartition(bool value) { partition_ = value; }

  private:
    std::vector<ScanItem> items_;
    std::string machineType_;
    std::string os_;
    std::string arch_;
    std::string osMinorVersion_;
    std::string bmcType_;
    bool partition_ = false;
};

// Scans one target. Used once, by one thread; several may run at once for different targets.
class KORVAN_FRAMEWORK_EXPORT ServiceUpdateScan
{
  public:
    explicit ServiceUpdateScan(const UpdateScanOption& option);

    // The bar is not owned and must outlive Run.
    void SetProgressBar(DynamicProgressBar* bar);

    // Fills the report with what could be read, also when the result is a failure. Failures: 12 authentication,
    // 13 connection, 18 time limit, 36 certificate, 47 interrupted, 52 no Redfish service, 60 an answer that cannot be
    // read. The message names the target and what to do.
    KorvanResult Run(UpdateScanReport& report);

    static std::string ActionName();

  private:
    UpdateScanOption option_;
    DynamicProgressBar* bar_ = nullptr;
};

// Scan reports as files and tables (docs/files.md).
class KORVAN_FRAMEWORK_EXPORT SerializeScanReport
{
  public:
    // 0, or the code of the failure: 6 no such file, 10 not readable, 88 not a scan report. On a failure the report is left alone.
    static int LoadFromXml(const std::string& path, UpdateScanReport& report);

    // 0, or 11 when the file cannot be written; then no file is left under its final name.
    static int SaveToXml(const UpdateScanReport& report, const std::string& path);

    // `type` as "--type": "all", or a list of "fw", "dd", "sw", "mm" that narrows the rows.
    static void PrintResult(const UpdateScanReport& report, const std::string& type);
    static void PrintResult(const UpdateScanReport& report, std::ostream& out, const std::string& type);
};
} // namespace service
