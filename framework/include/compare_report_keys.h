#pragma once

// Element names of "Korvan-update-compare.xml". The framework writes the file, the compare module reads it back, and
// scripts at users' sites read both it and the JSON made from it: the odd spellings (DIRETORY, MACROPACAKGEID) are kept
// for them.
namespace compare_key
{
constexpr char kRoot[] = "COMPARISON";
constexpr char kXmlVersion[] = "XMLVERSION";
constexpr char kContent[] = "CONTENT";
constexpr char kMt[] = "MT";
constexpr char kBmcType[] = "BMCTYPE";
constexpr char kOs[] = "OS";
constexpr char kArch[] = "ARCH";
constexpr char kScope[] = "SCOPE";
constexpr char kType[] = "TYPE";
constexpr char kDirectory[] = "DIRETORY";
constexpr char kIsPartition[] = "ISPARTITION";
constexpr char kTotal[] = "TOTAL";
constexpr char kPackages[] = "PACKAGES";
constexpr char kPackage[] = "PACKAGE";

constexpr char kName[] = "NAME";
constexpr char kComponent[] = "COMPONENT";
constexpr char kSeverity[] = "SEVERITY";
constexpr char kSeverityDescription[] = "SEVERITYDES";
constexpr char kReboot[] = "REBOOT";
constexpr char kRebootDescription[] = "REBOOTDES";
constexpr char kMacroPackageId[] = "MACROPACAKGEID";
constexpr char kUpdateId[] = "UPDATEID";
constexpr char kPackageVersion[] = "PKGVERSION";
constexpr char kRequisite[] = "REQUISITE";
constexpr char kPrerequisite[] = "PREREQUISITE";
constexpr char kCorequisite[] = "COREQUISITE";
constexpr char kPayloadFile[] = "PAYLOADFILE";
constexpr char kPackageXml[] = "PACKAGEXML";
constexpr char kVelpakXml[] = "VELPAKXML";
constexpr char kCommandLine[] = "COMMANDLINE";
constexpr char kAgentlessSupport[] = "AGENTLESSSUPPORT";
constexpr char kAlsoSelect[] = "ALSOSELECT";
constexpr char kAlsoDeselect[] = "ALSODESELECT";
constexpr char kForceId[] = "FORCEID";
constexpr char kSelected[] = "SELECTED";
constexpr char kCompareResult[] = "COMPRESULT";
constexpr char kUnselectedReason[] = "UNSELECTEDREASON";
constexpr char kSupersede[] = "SUPERSEDE";
constexpr char kFlashOrder[] = "FLASHORDER";

constexpr char kChildUpdates[] = "CHILDUPDATES";
constexpr char kChildUpdate[] = "CHILDUPDATE";
constexpr char kChildName[] = "CNAME";
constexpr char kChildNewVersion[] = "CNEWVERSION";
constexpr char kChildInstalled[] = "CINSTALLED";
constexpr char kChildDescription[] = "CDESCRIPTION";
constexpr char kChildCategory[] = "CCATEGORY";
constexpr char kChildInstanceId[] = "CINSTANCEID";
constexpr char kChildSlotNumber[] = "CSLOTNUM";
constexpr char kChildSlotType[] = "CSLOTTYPE";
constexpr char kChildClassification[] = "CCLASSIFICATION";
constexpr char kChildSelected[] = "CSELECTED";
constexpr char kChildAdapterName[] = "CADAPTERNAME";
constexpr char kChildCompareResult[] = "CCOMPARERESULT";
constexpr char kChildUnselectedReason[] = "CUNSELECTEDREASON";

// What stands for the version of a device that the target does not have.
constexpr char kUndetected[] = "Undetected";
} // namespace compare_key
