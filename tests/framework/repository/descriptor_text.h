#pragma once

#include <string>

// Descriptors as texts, for tests that write repositories.
namespace descriptor_text
{
inline std::string child(const std::string& softwareId, const std::string& version)
{
    return "<CHILD><SOFTWAREID>" + softwareId + "</SOFTWAREID><NEWVERSION>" + version + "</NEWVERSION></CHILD>";
}

struct Package
{
    std::string id;
    std::string softwareId = "UEFI-7Y41";
    std::string version = "2.42";
    std::string type = "fw";
    std::string component = "UEFI";
    std::string machineTypes = "<MACHINETYPE>7Y41</MACHINETYPE>";
    std::string systems = "<OS>platform</OS>";
    std::string archs = "<ARCH>*</ARCH>";
    std::string extra; // further elements
};

inline std::string text(const Package& package)
{
    return "<PACKAGE><UPDATEID>" + package.id + "</UPDATEID><NAME>Name of " + package.id + "</NAME><COMPONENT>" +
           package.component + "</COMPONENT><TYPE>" + package.type + "</TYPE><PKGVERSION>" + package.component +
           " Firmware Version " + package.version + "-[B1]</PKGVERSION>" + package.extra + "<APPLIESTO>" +
           package.machineTypes + package.systems + package.archs + "</APPLIESTO><CHILDREN>" +
           child(package.softwareId, package.version) + "</CHILDREN></PACKAGE>";
}

inline std::string velpak(const std::string& id, const std::string& machineType, const std::string& os,
                          const std::string& updateIds, const std::string& date = "2026-01-01")
{
    return "<VELPAK><ID>" + id + "</ID><RELEASEDATE>" + date + "</RELEASEDATE><APPLIESTO><MACHINETYPE>" + machineType +
           "</MACHINETYPE><OS>" + os + "</OS><ARCH>*</ARCH></APPLIESTO><UPDATEIDS>" + updateIds +
           "</UPDATEIDS></VELPAK>";
}
} // namespace descriptor_text
