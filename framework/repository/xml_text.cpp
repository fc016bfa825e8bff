#include "repository/xml_text.h"

#include "files/files.h"
#include "text/text.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <system_error>

namespace xml_text
{
namespace
{
// Line ends stay as they are written: a carriage return inside a value is written as a reference.
constexpr unsigned kParseFlags = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_ws_pcdata_single |
                                 pugi::parse_declaration | pugi::parse_doctype;

std::size_t lineAt(const std::string& content, std::size_t offset)
{
    const auto end = content.begin() + static_cast<std::ptrdiff_t>(std::min(offset, content.size()));
    return 1 + static_cast<std::size_t>(std::count(content.begin(), end, '\n'));
}

// Where the first byte stands that is no UTF-8 or no XML character.
bool findBadByte(const std::string& content, std::size_t& offset)
{
    const std::string valid = text::validXml(content);
    if (valid == content)
    {
        return false;
    }
    const auto difference = std::mismatch(content.begin(), content.end(), valid.begin(), valid.end());
    offset = static_cast<std::size_t>(difference.first - content.begin());
    return true;
}

bool refuseProlog(const pugi::xml_document& document, const std::string& content, LoadTrouble& trouble)
{
    for (const pugi::xml_node& node : document.children())
    {
        if (node.type() == pugi::node_doctype)
        {
            trouble = {lineOf(node, content), "a document type declaration is not allowed; remove it"};
            return true;
        }
        if (node.type() == pugi::node_declaration)
        {
            const std::string encoding = text::toLower(node.attribute("encoding").value());
            if (!encoding.empty() && encoding != "utf-8" && encoding != "us-ascii")
            {
                trouble = {0, "the encoding " + text::visible(encoding) + " is not supported; save the file as UTF-8"};
                return true;
            }
        }
    }
    return false;
}

std::string escaped(const std::string& value)
{
    std::string result;
    result.reserve(value.size());
    for (const char character : value)
    {
        switch (character)
        {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '\r': // would come back as a line feed (XML 1.0, section 2.11)
            result += "&#13;";
            break;
        default:
            result += character;
        }
    }
    return result;
}
} // namespace

LoadOutcome load(const std::string& path, std::size_t limit, pugi::xml_document& document, std::string& content,
                 std::string& error)
{
    LoadTrouble trouble;
    const LoadOutcome outcome = load(path, limit, document, content, trouble);
    if (outcome != LoadOutcome::Ok)
    {
        error = trouble.line == 0 ? trouble.text : "line " + std::to_string(trouble.line) + ": " + trouble.text;
    }
    return outcome;
}

LoadOutcome load(const std::string& path, std::size_t limit, pugi::xml_document& document, std::string& content,
                 LoadTrouble& trouble)
{
    switch (files::read(path, limit, content))
    {
    case files::ReadOutcome::Ok:
        break;
    case files::ReadOutcome::Missing:
        trouble = {0, "no such file"};
        return LoadOutcome::Missing;
    case files::ReadOutcome::Unreadable:
        trouble = {0, "cannot be read as a file"};
        return LoadOutcome::Unreadable;
    case files::ReadOutcome::TooLarge:
        trouble = {0, "larger than the limit of " + std::to_string(limit) + " bytes"};
        return LoadOutcome::Unreadable;
    }
    std::size_t badOffset = 0;
    if (findBadByte(content, badOffset))
    {
        trouble = {lineAt(content, badOffset),
                   "byte " + std::to_string(badOffset) + " is no valid UTF-8 text; save the file as UTF-8"};
        return LoadOutcome::Malformed;
    }
    const pugi::xml_parse_result parsed =
        document.load_buffer(content.data(), content.size(), kParseFlags, pugi::encoding_utf8);
    if (!parsed)
    {
        const auto offset = static_cast<std::size_t>(std::max<std::ptrdiff_t>(parsed.offset, 0));
        trouble = {lineAt(content, offset),
                   std::string(parsed.description()) + " (at byte " + std::to_string(offset) + ")"};
        return LoadOutcome::Malformed;
    }
    return refuseProlog(document, content, trouble) ? LoadOutcome::Malformed : LoadOutcome::Ok;
}

std::size_t lineOf(const pugi::xml_node& node, const std::string& content)
{
    return lineAt(content, static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0)));
}

std::string textOf(const pugi::xml_node& element)
{
    std::string result;
    for (const pugi::xml_node& child : element.children())
    {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
        {
            result += child.value();
        }
    }
    return result;
}

std::string childText(const pugi::xml_node& parent, const char* name)
{
    return textOf(parent.child(name));
}

bool parseInt(const std::string& text, std::int32_t& value)
{
    std::int32_t parsed = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, parsed);
    if (result.ec != std::errc() || result.ptr != end)
    {
        return false;
    }
    value = parsed;
    return true;
}

bool parseUnsigned(const std::string& text, std::uint64_t& value)
{
    std::uint64_t parsed = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, parsed);
    if (result.ec != std::errc() || result.ptr != end)
    {
        return false;
    }
    value = parsed;
    return true;
}

pugi::xml_node append(pugi::xml_node parent, const char* name)
{
    return parent.append_child(name);
}

void appendText(pugi::xml_node parent, const char* name, const std::string& value)
{
    const std::string content = escaped(text::validXml(value));
    parent.append_child(name).append_child(pugi::node_pcdata).set_value(content.c_str());
}

void appendInt(pugi::xml_node parent, const char* name, std::int64_t value)
{
    appendText(parent, name, std::to_string(value));
}

bool save(const pugi::xml_document& document, const std::string& path, std::string& error)
{
    std::ostringstream out;
    // Values are escaped when they are appended: the library's own escaping leaves carriage returns alone.
    document.save(out, "  ", pugi::format_indent | pugi::format_no_escapes | pugi::format_no_declaration,
                  pugi::encoding_utf8);
    return files::replace(path, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + out.str(), error);
}
} // namespace xml_text
