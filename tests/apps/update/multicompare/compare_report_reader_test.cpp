#include "compare_report_reader.h"

#include "apps/update/multicompare/report_fixture.h"
#include "support/scratch_folder.h"

#include <boost/filesystem/operations.hpp>
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <gtest/gtest.h>

#include <sstream>

namespace
{
using Texts = std::vector<std::string>;
using Tree = boost::property_tree::ptree;

constexpr char kName[] = "Korvan-update-compare.xml";

Tree parsed(const std::string& xml)
{
    std::istringstream stream(xml);
    Tree tree;
    boost::property_tree::read_xml(stream, tree);
    return tree;
}

ComparePackage package(const std::string& xml)
{
    return ReadComparePackage(parsed(xml).get_child("PACKAGE"));
}

CompareChildUpdate child(const report::Changes& changes)
{
    return package(report::package({report::child(changes)})).children.at(0);
}

// The text of the error that reading the package raises.
std::string packageError(const report::Changes& packageChanges, const report::Changes& childChanges = {})
{
    try
    {
        package(report::package({report::child(childChanges)}, packageChanges));
    }
    catch (const boost::property_tree::ptree_error& error)
    {
        return error.what();
    }
    return "no error";
}

TEST(FindCompareReports, FindsReportsOfEveryTargetSortedByPath)
{
    const test_support::ScratchFolder folder;
    folder.write(std::string("SUCCESS-10.0.0.2/") + kName, "x");
    folder.write(std::string("SUCCESS-10.0.0.1/") + kName, "x");
    folder.write(std::string("FAILURE-10.0.0.3/deep/er/") + kName, "x");
    EXPECT_EQ(FindCompareReports(folder.path(), {kName}),
              (Texts{folder.file(std::string("FAILURE-10.0.0.3/deep/er/") + kName),
                     folder.file(std::string("SUCCESS-10.0.0.1/") + kName),
                     folder.file(std::string("SUCCESS-10.0.0.2/") + kName)}));
}

TEST(FindCompareReports, TakesExactNamesOnly)
{
    const test_support::ScratchFolder folder;
    folder.write("a/korvan-update-compare.xml", "x");
    folder.write("b/Korvan-update-compare.xml.bak", "x");
    folder.write("c/XKorvan-update-compare.xml", "x");
    EXPECT_TRUE(FindCompareReports(folder.path(), {kName}).empty());
}

TEST(FindCompareReports, TakesAnyOfSeveralNames)
{
    const test_support::ScratchFolder folder;
    folder.write("a/one.xml", "x");
    folder.write("b/two.xml", "x");
    EXPECT_EQ(FindCompareReports(folder.path(), {"one.xml", "two.xml"}).size(), 2U);
}

TEST(FindCompareReports, TakesRegularFilesOnly)
{
    const test_support::ScratchFolder folder;
    boost::filesystem::create_directories(folder.path() + "/a/" + kName);
    EXPECT_TRUE(FindCompareReports(folder.path(), {kName}).empty());
}

TEST(FindCompareReports, GivesAFilePathAsItIs)
{
    const test_support::ScratchFolder folder;
    folder.write("any.xml", "x");
    EXPECT_EQ(FindCompareReports(folder.file("any.xml"), {kName}), (Texts{folder.file("any.xml")}));
}

TEST(FindCompareReports, GivesNothingForAMissingDirectory)
{
    const test_support::ScratchFolder folder;
    EXPECT_TRUE(FindCompareReports(folder.path() + "/gone", {kName}).empty());
}

TEST(HostOfReport, RemovesTheOutcomeFromTheFolder)
{
    EXPECT_EQ(HostOfReport("/out/SUCCESS-10.0.0.1/x.xml"), "10.0.0.1");
    EXPECT_EQ(HostOfReport("/out/FAILURE-10.0.0.2/x.xml"), "10.0.0.2");
    EXPECT_EQ(HostOfReport("/out/10.0.0.9/x.xml"), "10.0.0.9");
}

TEST(HostOfReport, RemovesTheOutcomeInAnyLetterCase)
{
    EXPECT_EQ(HostOfReport("/out/success-10.0.0.3/x.xml"), "10.0.0.3");
    EXPECT_EQ(HostOfReport("/out/Failure-h/x.xml"), "h");
}

TEST(HostOfReport, RemovesTheFirstOfEachWhereverItStands)
{
    EXPECT_EQ(HostOfReport("/out/aSUCCESS-bSUCCESS-c/x.xml"), "abSUCCESS-c");
    EXPECT_EQ(HostOfReport("/out/FAILURE-SUCCESS-h/x.xml"), "h");
    EXPECT_EQ(HostOfReport("/out/FAISUCCESS-LURE-h/x.xml"), "h"); // SUCCESS- goes first
}

TEST(ReadCompareHeader, ReadsEveryField)
{
    const CompareHeader header = ReadCompareHeader(parsed(report::file({}, {{"ISPARTITION", "1"}, {"TOTAL", "17"}})));
    EXPECT_EQ(header.machineType, "7Y41");
    EXPECT_EQ(header.bmcType, "PMX3");
    EXPECT_EQ(header.os, "platform");
    EXPECT_EQ(header.arch, "none");
    EXPECT_EQ(header.scope, "latest");
    EXPECT_EQ(header.type, "all");
    EXPECT_EQ(header.directory, "pkgs\\");
    EXPECT_EQ(header.isPartition, 1);
    EXPECT_EQ(header.total, 17);
}

TEST(ReadCompareHeader, NeedsEveryField)
{
    for (const char* key : {"MT", "BMCTYPE", "OS", "ARCH", "SCOPE", "TYPE", "DIRETORY", "ISPARTITION", "TOTAL"})
    {
        try
        {
            ReadCompareHeader(parsed(report::file({}, {{key, report::kAbsent}})));
            ADD_FAILURE() << key << " is not needed";
        }
        catch (const boost::property_tree::ptree_bad_path& error)
        {
            EXPECT_EQ(error.what(), std::string("No such node (COMPARISON.CONTENT.") + key + ")");
        }
    }
}

TEST(ReadCompareHeader, NeedsTheXmlVersionThoughItIsNotUsed)
{
    try
    {
        ReadCompareHeader(parsed(report::file({}, {{"XMLVERSION", report::kAbsent}})));
        ADD_FAILURE() << "not needed";
    }
    catch (const boost::property_tree::ptree_bad_path& error)
    {
        EXPECT_STREQ(error.what(), "No such node (COMPARISON.XMLVERSION)");
    }
}

// Of two keys that are missing the one that is read first is named.
TEST(ReadCompareHeader, ReadsItsFieldsInOrder)
{
    const Texts order = {"XMLVERSION", "BMCTYPE", "MT",       "OS",          "ARCH",
                         "SCOPE",      "TYPE",    "DIRETORY", "ISPARTITION", "TOTAL"};
    for (std::size_t i = 0; i + 1 < order.size(); ++i)
    {
        try
        {
            ReadCompareHeader(parsed(report::file({}, {{order[i], report::kAbsent}, {order[i + 1], report::kAbsent}})));
            ADD_FAILURE() << order[i] << " is not needed";
        }
        catch (const boost::property_tree::ptree_bad_path& error)
        {
            EXPECT_NE(std::string(error.what()).find(order[i] + ")"), std::string::npos) << error.what();
        }
    }
}

TEST(ReadCompareHeader, RefusesNumbersThatAreNone)
{
    EXPECT_THROW(ReadCompareHeader(parsed(report::file({}, {{"TOTAL", "many"}}))),
                 boost::property_tree::ptree_bad_data);
    EXPECT_THROW(ReadCompareHeader(parsed(report::file({}, {{"ISPARTITION", ""}}))),
                 boost::property_tree::ptree_bad_data);
    EXPECT_THROW(ReadCompareHeader(parsed(report::file({}, {{"TOTAL", "99999999999"}}))),
                 boost::property_tree::ptree_bad_data);
}

TEST(PackagesNode, HoldsEveryChildWhateverItsName)
{
    const Tree tree = parsed(report::file({report::package({}), "<OTHER><NAME>x</NAME></OTHER>"}));
    EXPECT_EQ(PackagesNode(tree).size(), 2U);
}

TEST(ReadComparePackage, ReadsEveryField)
{
    const ComparePackage read =
        package(report::package({}, {{"FORCEID", "1"}, {"UNSELECTEDREASON", "2-older"}, {"SELECTED", "0"}}));
    EXPECT_EQ(read.name, "Nic package");
    EXPECT_EQ(read.component, "Nic");
    EXPECT_EQ(read.severity, "1");
    EXPECT_EQ(read.severityDescription, "Suggested");
    EXPECT_EQ(read.reboot, "0");
    EXPECT_EQ(read.rebootDescription, "None");
    EXPECT_EQ(read.macroPackageId, "macro1");
    EXPECT_EQ(read.updateId, "krv_fw_nic_2.0");
    EXPECT_EQ(read.packageVersion, "Nic Version 2.0-[N20]");
    EXPECT_EQ(read.requisite, "req");
    EXPECT_EQ(read.prerequisite, "pre");
    EXPECT_EQ(read.corequisite, "co");
    EXPECT_EQ(read.payloadFile, "nic.bin");
    EXPECT_EQ(read.packageXml, "nic.xml");
    EXPECT_EQ(read.velpakXml, "pack.xml");
    EXPECT_EQ(read.commandLine, "run");
    EXPECT_EQ(read.agentlessSupport, "true");
    EXPECT_EQ(read.alsoSelect, "also");
    EXPECT_EQ(read.alsoDeselect, "deselect");
    EXPECT_EQ(read.forceId, 1);
    EXPECT_EQ(read.selected, 0);
    EXPECT_EQ(read.compareResult, 1);
    EXPECT_EQ(read.unselectedReason, "2-older");
    EXPECT_EQ(read.supersede, "old");
    EXPECT_EQ(read.flashOrder, 2);
}

TEST(ReadComparePackage, NeedsEveryField)
{
    for (const char* key :
         {"NAME",           "COMPONENT",       "SEVERITY",   "SEVERITYDES", "REBOOT",           "REBOOTDES",
          "MACROPACAKGEID", "UPDATEID",        "PKGVERSION", "REQUISITE",   "PREREQUISITE",     "COREQUISITE",
          "PAYLOADFILE",    "PACKAGEXML",      "VELPAKXML",  "COMMANDLINE", "CHILDUPDATES",     "ALSOSELECT",
          "ALSODESELECT",   "FORCEID",         "SELECTED",   "COMPRESULT",  "UNSELECTEDREASON", "SUPERSEDE",
          "FLASHORDER",     "AGENTLESSSUPPORT"})
    {
        EXPECT_EQ(packageError({{key, report::kAbsent}}), std::string("No such node (") + key + ")");
    }
}

TEST(ReadComparePackage, NeedsTheRequiredFieldsOfAChild)
{
    for (const char* key : {"CNAME", "CNEWVERSION", "CINSTALLED", "CDESCRIPTION", "CCOMPARERESULT"})
    {
        EXPECT_EQ(packageError({}, {{key, report::kAbsent}}), std::string("No such node (") + key + ")");
    }
}

TEST(ReadComparePackage, ReadsItsFieldsInOrder)
{
    const Texts order = {"NAME",         "COMPONENT",      "SEVERITY",         "SEVERITYDES",  "REBOOT",
                         "REBOOTDES",    "MACROPACAKGEID", "UPDATEID",         "PKGVERSION",   "REQUISITE",
                         "PREREQUISITE", "COREQUISITE",    "PAYLOADFILE",      "PACKAGEXML",   "VELPAKXML",
                         "COMMANDLINE",  "CHILDUPDATES",   "ALSOSELECT",       "ALSODESELECT", "SELECTED",
                         "COMPRESULT",   "SUPERSEDE",      "UNSELECTEDREASON", "FLASHORDER",   "AGENTLESSSUPPORT",
                         "FORCEID"};
    for (std::size_t i = 0; i + 1 < order.size(); ++i)
    {
        EXPECT_EQ(packageError({{order[i], report::kAbsent}, {order[i + 1], report::kAbsent}}),
                  "No such node (" + order[i] + ")");
    }
}

TEST(ReadComparePackage, ReadsTheChildrenBetweenTheTextsAndTheRest)
{
    EXPECT_EQ(packageError({{"ALSOSELECT", report::kAbsent}}, {{"CNAME", report::kAbsent}}), "No such node (CNAME)");
    EXPECT_EQ(packageError({{"COMMANDLINE", report::kAbsent}}, {{"CNAME", report::kAbsent}}),
              "No such node (COMMANDLINE)");
}

TEST(ReadComparePackage, ReadsTheFieldsOfAChildInOrder)
{
    const Texts order = {"CNAME", "CNEWVERSION", "CINSTALLED", "CDESCRIPTION", "CCOMPARERESULT"};
    for (std::size_t i = 0; i + 1 < order.size(); ++i)
    {
        EXPECT_EQ(packageError({}, {{order[i], report::kAbsent}, {order[i + 1], report::kAbsent}}),
                  "No such node (" + order[i] + ")");
    }
}

TEST(ReadComparePackage, RefusesNumbersThatAreNone)
{
    for (const char* key : {"FORCEID", "SELECTED", "COMPRESULT", "FLASHORDER"})
    {
        EXPECT_NE(packageError({{key, "yes"}}).find("conversion"), std::string::npos) << key;
    }
    for (const char* key : {"CSELECTED", "CCOMPARERESULT"})
    {
        EXPECT_NE(packageError({}, {{key, ""}}).find("conversion"), std::string::npos) << key;
    }
}

TEST(ReadComparePackage, ReadsEveryFieldOfAChild)
{
    const CompareChildUpdate read = child({});
    EXPECT_EQ(read.name, "NIC-1");
    EXPECT_EQ(read.newVersion, "2.0");
    EXPECT_EQ(read.installedVersion, "1.0");
    EXPECT_EQ(read.description, "a device");
    EXPECT_EQ(read.category, "Network");
    EXPECT_EQ(read.instanceId, "inst1");
    EXPECT_EQ(read.slotNumber, "3");
    EXPECT_EQ(read.slotType, "1");
    EXPECT_EQ(read.classification, "10");
    EXPECT_EQ(read.selected, 1);
    EXPECT_EQ(read.adapterName, "Twoport");
    EXPECT_EQ(read.compareResult, 1);
}

TEST(ReadComparePackage, LeavesOptionalFieldsOfAChildEmpty)
{
    report::Changes changes;
    for (const char* key : {"CCATEGORY", "CINSTANCEID", "CSLOTNUM", "CSLOTTYPE", "CCLASSIFICATION", "CADAPTERNAME"})
    {
        changes[key] = report::kAbsent;
    }
    const CompareChildUpdate read = child(changes);
    EXPECT_EQ(
        read.category + read.instanceId + read.slotNumber + read.slotType + read.classification + read.adapterName, "");
}

TEST(ReadComparePackage, TakesTheChildsSelectionFromEitherKey)
{
    EXPECT_EQ(child({{"CSELECTED", "0"}, {"SELECTED", "1"}}).selected, 0);
    EXPECT_EQ(child({{"CSELECTED", report::kAbsent}, {"SELECTED", "0"}}).selected, 0);
    EXPECT_EQ(child({{"CSELECTED", report::kAbsent}}).selected, 1);
}

TEST(ReadComparePackage, KeepsTheOrderOfTheChildren)
{
    const ComparePackage read =
        package(report::package({report::child({{"CNAME", "b"}}), report::child({{"CNAME", "a"}})}));
    ASSERT_EQ(read.children.size(), 2U);
    EXPECT_EQ(read.children[0].name, "b");
    EXPECT_EQ(read.children[1].name, "a");
}

TEST(ComparePackage, WithoutChildrenIsUndetected)
{
    EXPECT_TRUE(package(report::package({})).undetected());
}

TEST(ComparePackage, IsUndetectedWhenAllItsChildrenAre)
{
    const std::string gone = report::child({{"CINSTALLED", "Undetected"}});
    EXPECT_TRUE(package(report::package({gone, gone})).undetected());
    EXPECT_FALSE(package(report::package({gone, report::child()})).undetected());
}

TEST(CompareChildUpdate, IsDetectedWhenTheWordIsInLowerCase)
{
    EXPECT_TRUE(child({{"CINSTALLED", "Undetected"}}).undetected());
    EXPECT_FALSE(child({{"CINSTALLED", "undetected"}}).undetected());
    EXPECT_FALSE(child({{"CINSTALLED", ""}}).undetected());
}
} // namespace
