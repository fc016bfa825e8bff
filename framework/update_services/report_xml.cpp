#include "update_services/report_xml.h"

#include "result_codes.h"
#include "target_run/target_run.h"
#include "text/text.h"

#include <limits>

namespace update_services
{
std::uint32_t openReport(const std::string& path, const char* root, pugi::xml_document& document, std::string& error)
{
    std::string content;
    std::string reason;
    const xml_text::LoadOutcome outcome = xml_text::load(path, kMaxReportBytes, document, content, reason);
    const std::string found = document.document_element().name();
    if (outcome == xml_text::LoadOutcome::Ok && found == root)
    {
        return result_code::kSucceed;
    }
    error = text::visible(path) + ": " +
            (outcome == xml_text::LoadOutcome::Ok
                 ? "the root element is <" + text::visible(found) + "> instead of <" + root + ">"
                 : reason);
    switch (outcome)
    {
    case xml_text::LoadOutcome::Missing:
        return result_code::kFileMissing;
    case xml_text::LoadOutcome::Unreadable:
        return result_code::kFailedReadFile;
    case xml_text::LoadOutcome::Ok:
    case xml_text::LoadOutcome::Malformed:
        break;
    }
    return result_code::kUpdateIncompatibleReports;
}

bool saveReport(const pugi::xml_document& document, const std::string& path, std::string& error)
{
    if (xml_text::save(document, path, error))
    {
        return true;
    }
    // A scan or a query goes on without its file; the user should not need the log to learn of it.
    target_run::remark(text::visible(path) + " was not written: " + error);
    return false;
}

void ElementReader::text(const char* name, std::string& value)
{
    value = xml_text::textOf(child(name));
}

void ElementReader::integer(const char* name, std::int32_t& value)
{
    if (!xml_text::parseInt(xml_text::textOf(child(name)), value))
    {
        fail(name, "is no 32-bit integer");
    }
}

void ElementReader::unsignedInteger(const char* name, std::uint32_t& value)
{
    std::uint64_t wide = 0;
    unsignedLong(name, wide);
    if (wide > std::numeric_limits<std::uint32_t>::max())
    {
        fail(name, "is no 32-bit number");
        return;
    }
    value = static_cast<std::uint32_t>(wide);
}

void ElementReader::unsignedLong(const char* name, std::uint64_t& value)
{
    if (!xml_text::parseUnsigned(xml_text::textOf(child(name)), value))
    {
        fail(name, "is no number");
    }
}

void ElementReader::flag(const char* name, bool& value)
{
    const std::string content = xml_text::textOf(child(name));
    if (content != "0" && content != "1")
    {
        fail(name, "is neither 0 nor 1");
        return;
    }
    value = content == "1";
}

pugi::xml_node ElementReader::child(const char* name)
{
    const pugi::xml_node node = element_.child(name);
    if (!node)
    {
        fail(name, "is missing");
    }
    return node;
}

void ElementReader::fail(const char* name, const char* reason)
{
    if (error_.empty())
    {
        error_ = std::string("the element ") + name + " of <" + text::visible(element_.name()) + "> " + reason;
    }
}
} // namespace update_services
