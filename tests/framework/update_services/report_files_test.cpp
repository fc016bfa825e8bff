#include "reports.h"

#include "compare_report_keys.h"
#include "support/scratch_folder.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace
{
// Texts that break naive writers and readers of XML; all of them may stand in XML 1.0.
const std::vector<std::string> kHostileTexts{"",
                                             " ",
                                             "\t leading and trailing \n",
                                             "a\r\nb\rc\nd",
                                             "<PACKAGE>&amp;&lt;]]>\"'-->",
                                             "<![CDATA[x]]>",
                                             "\xE4\xB8\xAD\xE6\x96\x87 \xF0\x9F\x98\x80",
                                             "\xC2\x85\xE2\x80\xA8",
                                             "&#13;&#x0;",
                                             std::string(10000, 'x')};

class TextSource
{
  public:
    std::string next()
    {
        const std::size_t turn = next_++;
        return kHostileTexts[turn % kHostileTexts.size()] + (turn % 3 == 0 ? "." : "");
    }

  private:
    std::size_t next_ = 0;
};

service::ScanItem hostileItem(TextSource& texts)
{
    service::ScanItem item;
    for (std::string* field :
         {&item.id, &item.name, &item.softwareId, &item.version, &item.category, &item.classification,
          &item.manufacturer, &item.releaseDate, &item.slotNumber, &item.slotType})
    {
        *field = texts.next();
    }
    item.updateable = false;
    item.backupBank = true;
    return item;
}

std::vector<std::string*> textsOf(service::PackageInfo& info)
{
    return {&info.name,           &info.component,         &info.severity,       &info.severityDescription,
            &info.reboot,         &info.rebootDescription, &info.macroPackageId, &info.updateId,
            &info.packageVersion, &info.requisite,         &info.prerequisite,   &info.corequisite,
            &info.supersede,      &info.payloadFile,       &info.packageXml,     &info.velpakXml,
            &info.commandLine,    &info.agentlessSupport};
}

std::vector<std::string*> textsOf(service::PackageChild& child)
{
    return {&child.softwareId, &child.newVersion,     &child.description,
            &child.category,   &child.classification, &child.adapterName};
}

template <class Record>
std::vector<std::string> valuesOf(Record record)
{
    std::vector<std::string> result;
    for (const std::string* field : textsOf(record))
    {
        result.push_back(*field);
    }
    return result;
}

template <class Record>
Record hostile(TextSource& texts)
{
    Record record;
    for (std::string* field : textsOf(record))
    {
        *field = texts.next();
    }
    return record;
}

std::string contentOf(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

class ReportFiles : public testing::Test
{
  protected:
    std::string path(const std::string& name) const { return folder_.path() + "/" + name; }
    test_support::ScratchFolder folder_;
    TextSource texts_;
};

TEST_F(ReportFiles, AScanComesBackAsItWas)
{
    for (int round = 0; round < 10; ++round)
    {
        service::UpdateScanReport report;
        report.SetMT(texts_.next());
        report.SetOS(texts_.next());
        report.SetArch(texts_.next());
        report.SetOSMinorVersion(texts_.next());
        report.SetBmcType(texts_.next());
        report.SetPartition(true);
        const service::ScanItem item = hostileItem(texts_);
        report.AddScanResult(item);
        report.AddScanResult(service::ScanItem());
        ASSERT_EQ(service::SerializeScanReport::SaveToXml(report, path("scan.xml")), 0);
        service::UpdateScanReport loaded;
        ASSERT_EQ(service::SerializeScanReport::LoadFromXml(path("scan.xml"), loaded), 0);
        EXPECT_EQ(loaded.GetMT(), report.GetMT());
        EXPECT_EQ(loaded.GetOS(), report.GetOS());
        EXPECT_EQ(loaded.GetArch(), report.GetArch());
        EXPECT_EQ(loaded.GetOSMinorVersion(), report.GetOSMinorVersion());
        EXPECT_EQ(loaded.GetBmcType(), report.GetBmcType());
        EXPECT_TRUE(loaded.IsPartition());
        ASSERT_EQ(loaded.GetScanResults().size(), 2U);
        const service::ScanItem& back = loaded.GetScanResults()[0];
        EXPECT_EQ(back.id, item.id);
        EXPECT_EQ(back.name, item.name);
        EXPECT_EQ(back.softwareId, item.softwareId);
        EXPECT_EQ(back.version, item.version);
        EXPECT_EQ(back.category, item.category);
        EXPECT_EQ(back.classification, item.classification);
        EXPECT_EQ(back.manufacturer, item.manufacturer);
        EXPECT_EQ(back.releaseDate, item.releaseDate);
        EXPECT_EQ(back.slotNumber, item.slotNumber);
        EXPECT_EQ(back.slotType, item.slotType);
        EXPECT_FALSE(back.updateable);
        EXPECT_TRUE(back.backupBank);
        EXPECT_TRUE(loaded.GetScanResults()[1].updateable);
    }
}

TEST_F(ReportFiles, AQueryComesBackAsItWas)
{
    for (int round = 0; round < 10; ++round)
    {
        service::QueryReport report;
        report.options.osType = 402;
        report.options.osMinorVersion = texts_.next();
        report.options.queryDir = texts_.next();
        report.options.scope = texts_.next();
        report.options.typeCodes = {1, -5};
        report.options.includeIds = {"a", "", texts_.next()};
        report.options.forceIds = {texts_.next()};
        report.options.noReq = true;
        report.options.remote = true;
        auto info = hostile<service::PackageInfo>(texts_);
        info.releaseDate = texts_.next();
        info.type = 12;
        info.payloadSize = 1ULL << 40U;
        info.children = {hostile<service::PackageChild>(texts_), service::PackageChild()};
        info.children[0].hexVersion = true;
        report.packages = {info, service::PackageInfo()};
        ASSERT_EQ(report.SaveToXml(path("query.xml")), 0);
        service::QueryReport loaded;
        const KorvanResult result = loaded.LoadFromXml(path("query.xml"));
        ASSERT_TRUE(result.succeeded()) << result.message;
        EXPECT_EQ(loaded.options.osType, 402U);
        EXPECT_EQ(loaded.options.osArch, static_cast<std::uint32_t>(-1));
        EXPECT_EQ(loaded.options.osMinorVersion, report.options.osMinorVersion);
        EXPECT_EQ(loaded.options.queryDir, report.options.queryDir);
        EXPECT_EQ(loaded.options.scope, report.options.scope);
        EXPECT_EQ(loaded.options.typeCodes, report.options.typeCodes);
        EXPECT_EQ(loaded.options.includeIds, report.options.includeIds);
        EXPECT_EQ(loaded.options.forceIds, report.options.forceIds);
        EXPECT_TRUE(loaded.options.excludeIds.empty());
        EXPECT_TRUE(loaded.options.noReq && loaded.options.remote);
        EXPECT_FALSE(loaded.options.forceAll || loaded.options.backup || loaded.options.ignoreMtOsCheck);
        ASSERT_EQ(loaded.packages.size(), 2U);
        EXPECT_EQ(valuesOf(loaded.packages[0]), valuesOf(info));
        EXPECT_EQ(loaded.packages[0].releaseDate, info.releaseDate);
        EXPECT_EQ(loaded.packages[0].type, 12);
        EXPECT_EQ(loaded.packages[0].payloadSize, info.payloadSize);
        ASSERT_EQ(loaded.packages[0].children.size(), 2U);
        EXPECT_EQ(valuesOf(loaded.packages[0].children[0]), valuesOf(info.children[0]));
        EXPECT_TRUE(loaded.packages[0].children[0].hexVersion);
    }
}

service::CompareReport hostileComparison(TextSource& texts)
{
    service::CompareReport report;
    report.machineType = texts.next();
    report.bmcType = texts.next();
    report.directory = texts.next();
    report.partition = true;
    service::ComparedPackage package;
    package.package = hostile<service::PackageInfo>(texts);
    package.alsoSelect = texts.next();
    package.alsoDeselect = texts.next();
    package.unselectedReason = texts.next();
    package.forceId = 1;
    package.outcome = service::VersionOutcome::Older;
    package.flashOrder = 7;
    service::ComparedChild child;
    child.update = hostile<service::PackageChild>(texts);
    child.installedVersion = texts.next();
    child.instanceId = texts.next();
    child.slotNumber = texts.next();
    child.slotType = texts.next();
    child.selected = 1;
    child.outcome = service::VersionOutcome::NotComparable;
    package.children = {child, service::ComparedChild()};
    report.packages = {package, service::ComparedPackage()};
    return report;
}

TEST_F(ReportFiles, AComparisonComesBackAsItWas)
{
    for (int round = 0; round < 10; ++round)
    {
        const service::CompareReport report = hostileComparison(texts_);
        ASSERT_TRUE(service::SerializeCompareReport::SaveToXml(report, path("compare.xml")).succeeded());
        service::CompareReport loaded;
        const KorvanResult result = service::SerializeCompareReport::LoadFromXml(path("compare.xml"), loaded);
        ASSERT_TRUE(result.succeeded()) << result.message;
        EXPECT_EQ(loaded.machineType, report.machineType);
        EXPECT_EQ(loaded.bmcType, report.bmcType);
        EXPECT_EQ(loaded.directory, report.directory);
        EXPECT_TRUE(loaded.partition);
        ASSERT_EQ(loaded.packages.size(), 2U);
        const service::ComparedPackage& back = loaded.packages[0];
        const service::ComparedPackage& was = report.packages[0];
        EXPECT_EQ(valuesOf(back.package), valuesOf(was.package));
        EXPECT_EQ(back.alsoSelect, was.alsoSelect);
        EXPECT_EQ(back.alsoDeselect, was.alsoDeselect);
        EXPECT_EQ(back.unselectedReason, was.unselectedReason);
        EXPECT_EQ(back.forceId, 1);
        EXPECT_EQ(back.outcome, service::VersionOutcome::Older);
        EXPECT_EQ(back.flashOrder, 7);
        ASSERT_EQ(back.children.size(), 2U);
        EXPECT_EQ(valuesOf(back.children[0].update), valuesOf(was.children[0].update));
        EXPECT_EQ(back.children[0].installedVersion, was.children[0].installedVersion);
        EXPECT_EQ(back.children[0].instanceId, was.children[0].instanceId);
        EXPECT_EQ(back.children[0].slotNumber, was.children[0].slotNumber);
        EXPECT_EQ(back.children[0].slotType, was.children[0].slotType);
        EXPECT_EQ(back.children[0].selected, 1);
        EXPECT_EQ(back.children[0].outcome, service::VersionOutcome::NotComparable);
    }
}

TEST_F(ReportFiles, WhatXmlCannotCarryIsReplaced)
{
    service::UpdateScanReport report;
    report.SetMT(std::string("a\0b\x01\xFF", 5));
    ASSERT_EQ(service::SerializeScanReport::SaveToXml(report, path("scan.xml")), 0);
    service::UpdateScanReport loaded;
    ASSERT_EQ(service::SerializeScanReport::LoadFromXml(path("scan.xml"), loaded), 0);
    EXPECT_EQ(loaded.GetMT(), "a\xEF\xBF\xBD"
                              "b\xEF\xBF\xBD\xEF\xBF\xBD");
}

void expectPlainElements(const pugi::xml_node& node)
{
    EXPECT_TRUE(node.attributes().empty()) << node.name();
    for (const pugi::xml_node& child : node.children())
    {
        EXPECT_NE(child.type(), pugi::node_comment);
        if (child.type() == pugi::node_element)
        {
            expectPlainElements(child);
        }
    }
}

TEST_F(ReportFiles, AComparisonHasAllElementsAndNothingElse)
{
    const service::CompareReport report = hostileComparison(texts_);
    ASSERT_TRUE(service::SerializeCompareReport::SaveToXml(report, path("compare.xml")).succeeded());
    pugi::xml_document document;
    ASSERT_TRUE(document.load_file(path("compare.xml").c_str(), pugi::parse_full));
    expectPlainElements(document.document_element());
    const std::string text = contentOf(path("compare.xml"));
    EXPECT_EQ(text.find('\r'), std::string::npos) << "other readers make line feeds of carriage returns";
    for (const char* element :
         {"XMLVERSION", "MT",          "BMCTYPE",          "OS",           "ARCH",           "SCOPE",
          "TYPE",       "DIRETORY",    "ISPARTITION",      "TOTAL",        "NAME",           "COMPONENT",
          "SEVERITY",   "SEVERITYDES", "REBOOT",           "REBOOTDES",    "MACROPACAKGEID", "UPDATEID",
          "PKGVERSION", "REQUISITE",   "PREREQUISITE",     "COREQUISITE",  "PAYLOADFILE",    "PACKAGEXML",
          "VELPAKXML",  "COMMANDLINE", "CHILDUPDATES",     "ALSOSELECT",   "ALSODESELECT",   "FORCEID",
          "SELECTED",   "COMPRESULT",  "UNSELECTEDREASON", "SUPERSEDE",    "FLASHORDER",     "AGENTLESSSUPPORT",
          "CNAME",      "CNEWVERSION", "CINSTALLED",       "CDESCRIPTION", "CCATEGORY",      "CINSTANCEID",
          "CSLOTNUM",   "CSLOTTYPE",   "CCLASSIFICATION",  "CSELECTED",    "CADAPTERNAME",   "CCOMPARERESULT"})
    {
        EXPECT_THAT(text, testing::HasSubstr("<" + std::string(element) + ">")) << element;
    }
}

TEST_F(ReportFiles, APropertyTreeReadsAComparisonTheSameWay)
{
    const service::CompareReport report = hostileComparison(texts_);
    ASSERT_TRUE(service::SerializeCompareReport::SaveToXml(report, path("compare.xml")).succeeded());
    boost::property_tree::ptree tree;
    boost::property_tree::read_xml(path("compare.xml"), tree);
    EXPECT_EQ(tree.get_child("COMPARISON.CONTENT.TOTAL").data(), "2");
    EXPECT_EQ(tree.get_child("COMPARISON.CONTENT.ISPARTITION").data(), "1");
    const auto& packages = tree.get_child("COMPARISON.CONTENT.PACKAGES");
    ASSERT_EQ(packages.size(), 2U);
    const auto& first = packages.front().second;
    EXPECT_EQ(first.get_child("CHILDUPDATES").size(), 2U);
    EXPECT_EQ(first.get_child("UPDATEID").data(), report.packages[0].package.updateId);
    EXPECT_EQ(first.get_child("FLASHORDER").data(), "7");
    const auto& child = first.get_child("CHILDUPDATES").front().second;
    EXPECT_EQ(child.get_child("CINSTALLED").data(), report.packages[0].children[0].installedVersion);
    EXPECT_EQ(child.get_child("CCOMPARERESULT").data(), "4");
    EXPECT_EQ(packages.back().second.get_child("CHILDUPDATES").size(), 0U);
}

TEST_F(ReportFiles, ForeignFilesAreRefusedAndLeaveTheReportAlone)
{
    folder_.write("foreign.xml", "<OTHER/>");
    folder_.write("text.xml", "no markup");
    folder_.write("cut.xml", "<SCAN><XMLVERSION>1.0</XMLVERSION>");
    folder_.write("incomplete.xml", "<SCAN/>");
    folder_.write("query.xml", "<QUERY><OPTIONS/></QUERY>");
    folder_.write("compare.xml", "<COMPARISON><CONTENT/></COMPARISON>");
    folder_.write("folder/x", "");
    constexpr int kIncompatible = 0x10058;
    service::UpdateScanReport scan;
    scan.SetMT("kept");
    service::QueryReport query;
    query.options.scope = "kept";
    service::CompareReport compare;
    compare.scope = "kept";
    for (const char* name : {"foreign.xml", "text.xml", "cut.xml", "incomplete.xml", "query.xml", "compare.xml"})
    {
        EXPECT_EQ(service::SerializeScanReport::LoadFromXml(path(name), scan), kIncompatible) << name;
        const KorvanResult queryResult = query.LoadFromXml(path(name));
        EXPECT_EQ(queryResult.code, static_cast<std::uint32_t>(kIncompatible)) << name;
        EXPECT_THAT(queryResult.message, testing::HasSubstr(name));
        EXPECT_EQ(service::SerializeCompareReport::LoadFromXml(path(name), compare).code,
                  static_cast<std::uint32_t>(kIncompatible))
            << name;
    }
    EXPECT_EQ(service::SerializeScanReport::LoadFromXml(path("nothing.xml"), scan), 6);
    EXPECT_EQ(query.LoadFromXml(path("nothing.xml")).code, 6U);
    EXPECT_EQ(service::SerializeCompareReport::LoadFromXml(path("nothing.xml"), compare).code, 6U);
    EXPECT_EQ(service::SerializeScanReport::LoadFromXml(path("folder"), scan), 10);
    EXPECT_EQ(query.LoadFromXml(path("folder")).code, 10U);
    EXPECT_EQ(service::SerializeCompareReport::LoadFromXml(path("folder"), compare).code, 10U);
    EXPECT_EQ(scan.GetMT() + query.options.scope + compare.scope, "keptkeptkept");
}

TEST_F(ReportFiles, AFileThatCannotBeWrittenIsAFailureAndLeavesNothing)
{
    const std::string file = path("nowhere/report.xml");
    EXPECT_EQ(service::SerializeScanReport::SaveToXml(service::UpdateScanReport(), file), 11);
    EXPECT_EQ(service::QueryReport().SaveToXml(file), 11);
    const KorvanResult result = service::SerializeCompareReport::SaveToXml(service::CompareReport(), file);
    EXPECT_EQ(result.code, 11U);
    EXPECT_THAT(result.message, testing::HasSubstr(file));
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}
} // namespace
