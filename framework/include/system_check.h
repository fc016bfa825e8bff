#pragma once

#include "korvan_connect.h"
#include "korvan_framework_export.h"
#include "user_context.h"

#include <string>
#include <utility>
#include <vector>

namespace XModule
{
// Classifies a machine type by four list files (one machine type a line, "#" begins a comment). A list that cannot be
// read counts as empty and is logged.
class KORVAN_FRAMEWORK_EXPORT SystemCheck
{
  public:
    enum ErrorCode
    {
        kSuccess = 0,
        kNoConnection = 1,
        kNoMachineType = 2,
    };

    // Works from the machine type alone.
    SystemCheck(const std::string& tolmarList, const std::string& amdList, const std::string& cfcList,
                const std::string& grantlyList);

    // Can ask the target over the connections, first to last.
    SystemCheck(const std::vector<XModuleConnection::ConnectionInfo>& connections, const std::string& tolmarList,
                const std::string& amdList, const std::string& cfcList, const std::string& grantlyList);

    // 1 when the machine type is a legacy, Tolmar-branded system, else 0; the comparison folds letter case.
    int IsBlueSystem(const std::string& machineType) const;
    int IsAmdSystem(const std::string& machineType) const;
    int IsCfcSystem(const std::string& machineType) const;

    // Asks the target: its machine type and its model name.
    ErrorCode GetMachineType(std::pair<std::string, std::string>& machineType) const;

  private:
    std::vector<XModuleConnection::ConnectionInfo> connections_;
    std::string tolmarList_;
    std::string amdList_;
    std::string cfcList_;
    std::string grantlyList_;
};
} // namespace XModule

// The subject of a check that looks at the target's machine type.
class KORVAN_FRAMEWORK_EXPORT CheckMachineType
{
  public:
    // The machine type that the context states ("mt", its first piece); empty when it states none.
    static std::string machineType(const UserContext& context);
};

// One yes-or-no check of a target.
template <class Subject>
class CheckItem
{
  public:
    virtual ~CheckItem() {}
    virtual bool check(const UserContext& context) const = 0;
};

// Whether the target's machine type stands in the CFC list beside the framework's library.
class KORVAN_FRAMEWORK_EXPORT IsCFCSystem : public CheckItem<CheckMachineType>
{
  public:
    bool check(const UserContext& context) const override;
};
