#pragma once

#include <pugixml.hpp>

#include <cstddef>
#include <cstdint>
#include <string>

// XML files that hold nothing but elements with text: package descriptors and the reports of the update services.
//
// Reading is strict about the bytes (UTF-8 only, nothing that XML 1.0 section 2.2 forbids, no document type
// declaration and so no entities) and lenient about elements that nobody asks for. Errors are texts for the user; they
// carry the line, the caller adds the file's name. Any thread may use these functions.
namespace xml_text
{
enum class LoadOutcome
{
    Ok,
    Missing,
    Unreadable, // I/O failure, no regular file, or larger than the limit
    Malformed,
};

// Reads a file of at most `limit` bytes. On Ok `document` holds it and `content` its bytes, for lineOf; otherwise `error`
// says why.
LoadOutcome load(const std::string& path, std::size_t limit, pugi::xml_document& document, std::string& content,
                 std::string& error);

// Why a file could not be loaded, for callers that show the line on its own.
struct LoadTrouble
{
    std::size_t line = 0; // from 1; 0: the file as a whole
    std::string text;
};
LoadOutcome load(const std::string& path, std::size_t limit, pugi::xml_document& document, std::string& content,
                 LoadTrouble& trouble);

// The line, from 1, of a node within what was loaded.
std::size_t lineOf(const pugi::xml_node& node, const std::string& content);

// All text right below the element, as it stands. Empty for a null node.
std::string textOf(const pugi::xml_node& element);
std::string childText(const pugi::xml_node& parent, const char* name);

// Decimal texts, nothing around them. False when the text is something else or out of range; `value` then stays.
bool parseInt(const std::string& text, std::int32_t& value);
bool parseUnsigned(const std::string& text, std::uint64_t& value);

// Appends an element with text. What XML cannot carry becomes U+FFFD; everything else is read back as it was.
pugi::xml_node append(pugi::xml_node parent, const char* name);
void appendText(pugi::xml_node parent, const char* name, const std::string& value);
void appendInt(pugi::xml_node parent, const char* name, std::int64_t value);

// Writes the document, whole or not at all. False with the reason when that fails.
bool save(const pugi::xml_document& document, const std::string& path, std::string& error);
} // namespace xml_text
