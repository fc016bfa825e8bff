#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One child update of a compare report as read back.
struct CompareChildUpdate
{
    bool undetected() const; // the target has no such device

    std::string name; // the software id
    std::string newVersion;
    std::string installedVersion;
    std::string description;
    std::string category;
    std::string instanceId;
    std::string slotNumber;
    std::string slotType; // "0": on the system board
    std::string classification;
    std::int32_t selected = 1;
    std::string adapterName;
    std::int32_t compareResult = 0;
};

// One package of a compare report as read back.
struct ComparePackage
{
    // True when no child update was detected, also when there is none.
    bool undetected() const;

    std::string name;
    std::string component;
    std::string severity;
    std::string severityDescription;
    std::string reboot;
    std::string rebootDescription;
    std::string macroPackageId;
    std::string updateId;
    std::string packageVersion; // a phrase with "Version " and a build suffix
    std::string requisite;
    std::string prerequisite;
    std::string corequisite;
    std::string payloadFile;
    std::string packageXml;
    std::string velpakXml;
    std::string commandLine;
    std::string agentlessSupport;
    std::vector<CompareChildUpdate> children;
    std::string alsoSelect;
    std::string alsoDeselect;
    std::int32_t forceId = 0;
    std::int32_t selected = 0; // 1: selected
    std::int32_t compareResult = 0;
    std::string unselectedReason; // number, "-", explanation; may be empty
    std::string supersede;
    std::int32_t flashOrder = 0;
};

// The head of a compare report.
struct CompareHeader
{
    std::string bmcType;
    std::string machineType;
    std::string os;
    std::string arch;
    std::string scope;
    std::string type;
    std::string directory;
    std::int32_t isPartition = 0;
    std::int32_t total = 0; // as the writer stated it
};
