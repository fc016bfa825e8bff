#include "result_handler.h"

#include "compare_json.h"
#include "compare_report_keys.h"
#include "compare_report_reader.h"
#include "compare_table.h"
#include "file_names.h"
#include "table_serializer.h"
#include "xmodule_log.h"

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <boost/regex.hpp>

#include <exception>
#include <iostream>

namespace
{
using Tree = boost::property_tree::ptree;

constexpr char kSource[] = "apps/update/multicompare/multicompare";

// Fixed values of the two records: support staff search logs for them.
constexpr int kReadFailureLine = 487;
constexpr int kNothingToDisplayLine = 554;

void logLine(int level, int line, const char* text)
{
    if (XModule::Log::GetMinLogLevel() >= level)
    {
        XModule::Log(level, kSource, line).Stream() << text << std::endl;
    }
}

// The comparison of all targets while it is built.
class MultiCompare
{
  public:
    MultiCompare(const std::string& pattern, const std::string& outputDirectory)
        : pattern_(pattern, boost::regex::perl | boost::regex::icase), outputDirectory_(outputDirectory),
          table_(kCompareTableColumns, kCompareTableTitle, kCompareTableIndent),
          // The doubled separator is kept.
          json_(outputDirectory + "//" + file_name::kCompareJson)
    {
        AddHeaderRow(table_.sstream());
    }

    void run()
    {
        for (const std::string& path : FindCompareReports(outputDirectory_, {file_name::kCompareXml}))
        {
            addReport(path);
        }
        if (rows_ < 1)
        {
            logLine(4, kNothingToDisplayLine, "No firmware to display");
            std::cout << "\n\n    The pattern you input match none package !";
            return;
        }
        json_.Commit();
        table_.PrintTable(std::cout);
        PrintFootnotes(std::cout, footnotes_);
    }

  private:
    void addReport(const std::string& path)
    {
        Tree report;
        if (!read(path, report))
        {
            logLine(1, kReadFailureLine, "Failed to Read XML");
            return;
        }
        const CompareHeader header = ReadCompareHeader(report);
        const std::string host = HostOfReport(path);
        Tree hostNode = BuildHostJson(host, header);
        Tree& packageNodes = hostNode.add_child(compare_key::kPackages, Tree());
        for (const Tree::value_type& node : PackagesNode(report))
        {
            const bool matched = matches(node.second);
            const ComparePackage package = ReadComparePackage(node.second);
            packageNodes.push_back(Tree::value_type("", BuildPackageJson(package, header.bmcType)));
            AddPackageRows(table_.sstream(), rows_, host, package, footnotes_, pattern_, matched);
        }
        json_.AddHost(hostNode);
    }

    static bool read(const std::string& path, Tree& report)
    {
        if (NestsTooDeeply(path))
        {
            return false;
        }
        try
        {
            boost::property_tree::read_xml(path, report);
        }
        catch (const boost::property_tree::xml_parser_error&)
        {
            return false;
        }
        return true;
    }

    bool matches(const Tree& package) const
    {
        return boost::regex_search(package.get<std::string>(compare_key::kName, ""), pattern_) ||
               boost::regex_search(package.get<std::string>(compare_key::kUpdateId, ""), pattern_);
    }

    boost::regex pattern_;
    std::string outputDirectory_;
    TableSerializer table_;
    CompareJsonFile json_;
    std::int32_t rows_ = 0;
    Footnotes footnotes_;
};
} // namespace

void HandleCompareResult(const std::string& pattern, const std::string& outputDirectory)
{
    try
    {
        MultiCompare(pattern, outputDirectory).run();
    }
    catch (const std::exception& error)
    {
        std::cout << error.what() << std::endl;
    }
}
