#include "compare_json.h"

#include "support/scratch_folder.h"

#include <boost/filesystem/operations.hpp>
#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

namespace
{
using Tree = boost::property_tree::ptree;
using Texts = std::vector<std::string>;

CompareChildUpdate child(const std::string& installed)
{
    CompareChildUpdate update;
    update.name = "NIC-1";
    update.newVersion = "2.0";
    update.installedVersion = installed;
    update.description = "line\n\"quoted\" \\ / tab\t \xC3\xA9";
    update.category = "Network";
    update.instanceId = "i";
    update.slotNumber = "3";
    update.slotType = "1";
    update.classification = "10";
    update.adapterName = "Twoport";
    update.compareResult = 1;
    return update;
}

ComparePackage package(const std::vector<CompareChildUpdate>& children)
{
    ComparePackage made;
    made.name = "Nic";
    made.macroPackageId = "macro";
    made.updateId = "id";
    made.children = children;
    made.selected = 1;
    made.flashOrder = 4;
    return made;
}

Texts keys(const Tree& node)
{
    Texts result;
    for (const Tree::value_type& member : node)
    {
        result.push_back(member.first);
    }
    return result;
}

std::string content(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

Tree host(const std::string& name)
{
    CompareHeader header;
    header.bmcType = "AMI";
    header.isPartition = 1;
    header.total = 2;
    Tree node = BuildHostJson(name, header);
    Tree packages;
    packages.push_back(Tree::value_type("", BuildPackageJson(package({child("1.0"), child("1.1")}), "AMI")));
    packages.push_back(Tree::value_type("", BuildPackageJson(package({}), "AMI")));
    node.add_child("PACKAGES", packages);
    return node;
}

TEST(BuildHostJson, KeepsItsKeysInOrder)
{
    CompareHeader header;
    header.machineType = "7Y41";
    header.isPartition = 1;
    header.total = 17;
    const Tree node = BuildHostJson("10.0.0.1", header);
    EXPECT_EQ(keys(node),
              (Texts{"HOST", "MT", "BMCTYPE", "OS", "ARCH", "SCOPE", "TYPE", "DIRETORY", "ISPARTITION", "TOTAL"}));
    EXPECT_EQ(node.get<std::string>("HOST"), "10.0.0.1");
    EXPECT_EQ(node.get<std::string>("MT"), "7Y41");
    EXPECT_EQ(node.get<std::string>("TOTAL"), "17");
}

TEST(BuildHostJson, WritesThePartitionAsAText)
{
    CompareHeader header;
    header.isPartition = 1;
    std::ostringstream out;
    boost::property_tree::write_json(out, BuildHostJson("h", header));
    EXPECT_NE(out.str().find("\"ISPARTITION\": \"1\""), std::string::npos);
}

TEST(BuildPackageJson, KeepsItsKeysInOrderAndLeavesTheMacroIdOut)
{
    EXPECT_EQ(keys(BuildPackageJson(package({child("1.0")}), "PMX3")),
              (Texts{"NAME",         "COMPONENT",  "SEVERITY",         "SEVERITYDES", "REBOOT",
                     "REBOOTDES",    "UPDATEID",   "PKGVERSION",       "REQUISITE",   "PREREQUISITE",
                     "COREQUISITE",  "PACKAGEXML", "VELPAKXML",        "PAYLOADFILE", "COMMANDLINE",
                     "CHILDUPDATES", "ALSOSELECT", "ALSODESELECT",     "SELECTED",    "FORCEID",
                     "COMPRESULT",   "SUPERSEDE",  "UNSELECTEDREASON", "FLASHORDER",  "AGENTLESSSUPPORT"}));
}

TEST(BuildPackageJson, PutsTheInstalledTextBehindTheChildren)
{
    const Texts order = keys(BuildPackageJson(package({}), "PMX3"));
    EXPECT_EQ(order.at(15), "CHILDUPDATES");
    EXPECT_EQ(order.at(16), "CINSTALLED");
    EXPECT_EQ(order.at(17), "ALSOSELECT");
}

TEST(BuildPackageJson, KeepsTheKeysOfAChildInOrder)
{
    const Tree node = BuildPackageJson(package({child("1.0")}), "PMX3");
    const Tree& written = node.get_child("CHILDUPDATES.CHILDUPDATE");
    EXPECT_EQ(keys(written),
              (Texts{"CADAPTERNAME", "CNAME", "CCATEGORY", "CINSTANCEID", "CNEWVERSION", "CINSTALLED", "CDESCRIPTION",
                     "CSLOTNUM", "CSLOTTYPE", "CCLASSIFICATION", "CCOMPARERESULT", "CSELECTED"}));
    EXPECT_EQ(written.get<std::string>("CSELECTED"), "1");
}

TEST(BuildPackageJson, LeavesOutUndetectedChildren)
{
    const Tree node = BuildPackageJson(package({child("Undetected"), child("1.0")}), "AMI");
    EXPECT_EQ(keys(node.get_child("CHILDUPDATES")), (Texts{"CHILDUPDATE"}));
    EXPECT_EQ(node.count("CINSTALLED"), 0U);
}

TEST(BuildPackageJson, RepeatsTheMemberForEveryDetectedChild)
{
    const Tree node = BuildPackageJson(package({child("1.0"), child("1.1")}), "AMI");
    EXPECT_EQ(keys(node.get_child("CHILDUPDATES")), (Texts{"CHILDUPDATE", "CHILDUPDATE"}));
}

TEST(BuildPackageJson, WordsAnUndetectedDeviceByTheControllerType)
{
    for (const char* bmcType : {"AMI", "AMD"})
    {
        const Tree node = BuildPackageJson(package({child("Undetected")}), bmcType);
        EXPECT_EQ(node.get<std::string>("CHILDUPDATES"), "");
        EXPECT_EQ(node.get<std::string>("CINSTALLED"), "Undetected Device");
    }
    for (const char* bmcType : {"amd", "ami", "PMX3", ""})
    {
        EXPECT_EQ(BuildPackageJson(package({child("Undetected")}), bmcType).get<std::string>("CINSTALLED"),
                  "Undetected");
    }
}

TEST(BuildPackageJson, WritesAPackageWithoutChildrenAsUndetected)
{
    const Tree node = BuildPackageJson(package({}), "AMD");
    EXPECT_EQ(node.get<std::string>("CHILDUPDATES"), "");
    EXPECT_EQ(node.get<std::string>("CINSTALLED"), "Undetected Device");
}

// The file is written host by host; the property tree's own writer, given the whole tree, says what it must be.
TEST(CompareJsonFile, EqualsTheWholeTreePrettyPrinted)
{
    const test_support::ScratchFolder folder;
    Tree hosts;
    CompareJsonFile file(folder.path() + "//out.json");
    for (const char* name : {"10.0.0.1", "10.0.0.2", "a \"b\"\n"})
    {
        hosts.push_back(Tree::value_type("", host(name)));
        file.AddHost(host(name));
    }
    file.Commit();
    Tree root;
    root.add_child("COMPARISON", hosts);
    std::ostringstream expected;
    boost::property_tree::write_json(expected, root, true);
    EXPECT_EQ(content(folder.path() + "/out.json"), expected.str());
}

TEST(CompareJsonFile, ReplacesAnEarlierFileAndLeavesNothingElse)
{
    const test_support::ScratchFolder folder;
    folder.write("out.json", "old");
    CompareJsonFile file(folder.path() + "/out.json");
    file.AddHost(host("h"));
    EXPECT_EQ(content(folder.path() + "/out.json"), "old");
    file.Commit();
    EXPECT_NE(content(folder.path() + "/out.json").find("\"HOST\": \"h\""), std::string::npos);
    EXPECT_EQ(
        std::distance(boost::filesystem::directory_iterator(folder.path()), boost::filesystem::directory_iterator()),
        1);
}

TEST(CompareJsonFile, LeavesNothingWithoutACommit)
{
    const test_support::ScratchFolder folder;
    {
        CompareJsonFile file(folder.path() + "/out.json");
        file.AddHost(host("h"));
    }
    EXPECT_TRUE(boost::filesystem::is_empty(folder.path()));
}

TEST(CompareJsonFile, KeepsAFailureForTheCommit)
{
    const test_support::ScratchFolder folder;
    const std::string path = folder.path() + "/gone/out.json";
    CompareJsonFile file(path);
    file.AddHost(host("h"));
    file.AddHost(host("i"));
    try
    {
        file.Commit();
        FAIL() << "no error";
    }
    catch (const boost::property_tree::json_parser_error& error)
    {
        EXPECT_EQ(error.what(), path + ": cannot open file");
    }
}

TEST(CompareJsonFile, SaysWhenADirectoryIsInItsPlace)
{
    const test_support::ScratchFolder folder;
    folder.write("out.json/in the way", "x");
    const std::string path = folder.path() + "/out.json";
    {
        CompareJsonFile file(path);
        file.AddHost(host("h"));
        try
        {
            file.Commit();
            ADD_FAILURE() << "no error";
        }
        catch (const boost::property_tree::json_parser_error& error)
        {
            EXPECT_EQ(error.what(), path + ": cannot open file");
        }
    }
    EXPECT_EQ(
        std::distance(boost::filesystem::directory_iterator(folder.path()), boost::filesystem::directory_iterator()),
        1);
}
} // namespace
