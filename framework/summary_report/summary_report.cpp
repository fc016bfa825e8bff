#include "summary_report.h"

#include "files/files.h"
#include "korvan_result.h"
#include "summary_report/summary_file.h"
#include "target_run/target_run.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <pugixml.hpp>

#include <cstdint>
#include <set>
#include <sstream>

// The file, UTF-8, one element SERVICE for each service in the order in which they ran, then one SUMMARY:
//
//   <?xml version="1.0" encoding="UTF-8"?>
//   <COMMONRESULT>
//     <SERVICE>
//       <ACTION>scan</ACTION>            the service's name
//       <CODE>0</CODE>                   the number within the category (the code's low 16 bits), decimal
//       <CATEGORY>0</CATEGORY>           the code's high 16 bits, decimal
//       <MESSAGE>Succeed.</MESSAGE>      the code's registered text when the service gave none
//     </SERVICE>
//     <SUMMARY>
//       <CODE>0</CODE>
//       <CATEGORY>0</CATEGORY>
//       <MESSAGE>Succeed.</MESSAGE>
//     </SUMMARY>
//   </COMMONRESULT>

namespace
{
constexpr char kSource[] = "framework/summary_report/summary_report";

void appendText(pugi::xml_node parent, const char* name, const std::string& value)
{
    parent.append_child(name).text().set(text::validXml(value).c_str());
}

void appendOutcome(pugi::xml_node parent, int code, const std::string& message)
{
    const KorvanResult result(static_cast<std::uint32_t>(code), message);
    appendText(parent, summary_file::kCode, std::to_string(result.number()));
    appendText(parent, "CATEGORY", std::to_string(result.code >> 16U));
    appendText(parent, summary_file::kMessage, result.messageText());
}

// A target's steps write one after another into the same file; an outcome stays until its own service replaces it.
void keepEarlierOutcomes(const std::string& path, const std::set<std::string>& replaced, pugi::xml_node root)
{
    pugi::xml_document earlier;
    if (!summary_file::load(path, earlier))
    {
        return;
    }
    for (const pugi::xml_node service : earlier.child(summary_file::kRoot).children(summary_file::kService))
    {
        if (replaced.count(service.child_value(summary_file::kAction)) == 0)
        {
            root.append_copy(service);
        }
    }
}
} // namespace

SummaryReport::SummaryReport(const std::string& outputDir) : outputDir_(outputDir) {}

void SummaryReport::PushServiceResult(const std::string& action, int code, const std::string& message)
{
    services_.push_back({action, code, message});
}

void SummaryReport::PushSummaryResult(int code, const std::string& message)
{
    summary_.code = code;
    summary_.message = message;
}

void SummaryReport::GenerateReportFile() const
{
    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    pugi::xml_node root = document.append_child(summary_file::kRoot);
    const std::string path = summary_file::pathIn(outputDir_);
    std::set<std::string> actions;
    for (const Outcome& service : services_)
    {
        actions.insert(service.action);
    }
    keepEarlierOutcomes(path, actions, root);
    for (const Outcome& service : services_)
    {
        const pugi::xml_node entry = root.append_child(summary_file::kService);
        appendText(entry, summary_file::kAction, service.action);
        appendOutcome(entry, service.code, service.message);
    }
    appendOutcome(root.append_child("SUMMARY"), summary_.code, summary_.message);

    std::ostringstream content;
    document.save(content, "  ");
    std::string error;
    if (!files::replace(path, content.str(), error))
    {
        KORVAN_LOG(1, kSource) << "cannot write the summary report " << path << ": " << error;
        target_run::remark(text::visible(path) + " was not written: " + error);
    }
}
