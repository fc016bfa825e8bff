#pragma once

#include "service/update_compare.h"
#include "update_services/unselected_reasons.h"

#include <string>
#include <unordered_map>
#include <vector>

// Child updates beside what a target has installed.
namespace update_services
{
// What is installed, by software id in any letter case. The scan report must outlive it.
class InstalledItems
{
  public:
    enum class Bank
    {
        Primary,
        Backup,
    };

    InstalledItems(const service::UpdateScanReport& scan, Bank bank);

    bool empty() const { return items_.empty(); }

    // In the scan's order; empty when there is none.
    const std::vector<const service::ScanItem*>& find(const std::string& softwareId) const;

  private:
    std::unordered_map<std::string, std::vector<const service::ScanItem*>> items_;
};

// The children of one package and what stands against selecting it as far as its devices go.
struct ComparedChildren
{
    std::vector<service::ComparedChild> children;
    service::VersionOutcome outcome = service::VersionOutcome::NotDetected;
    UnselectedReason reason = UnselectedReason::NoChildren;
    bool detected = false; // at least one device is there
};

// `forced`: the order of versions does not count.
ComparedChildren compareChildren(const service::PackageInfo& package, const InstalledItems& installed,
                                 const service::CompareOptions& options, bool forced);

service::VersionOutcome compareWithInstalled(const service::PackageChild& update, const std::string& installedVersion);
} // namespace update_services
