#pragma once

#include <cstddef>
#include <string>
#include <vector>

// Small operations on texts that come from users, files and targets. UTF-8 inside; nothing here throws on bad bytes.
namespace text
{
// Pieces between separators; empty pieces are kept, an empty text gives one empty piece.
std::vector<std::string> split(const std::string& value, char separator);

std::string join(const std::vector<std::string>& pieces, const std::string& separator);

// Without blanks, tabs and line ends at both ends.
std::string trim(const std::string& value);

// ASCII letters only; other bytes stay.
std::string toLower(const std::string& value);
std::string toUpper(const std::string& value);

bool startsWith(const std::string& value, const std::string& prefix);

// Control characters and bytes that are no UTF-8 as \xNN, for terminals and logs.
std::string visible(const std::string& value);

// " 'word'" for a message, or nothing when the word could hold a password: an address or something long.
std::string quotedIfHarmless(const std::string& word);

// With what XML 1.0 (section 2.2) does not allow, and bytes that are no UTF-8, replaced by U+FFFD.
std::string validXml(const std::string& value);

// Columns that a terminal needs for the text: wide characters count two, combining ones none.
std::size_t displayWidth(const std::string& value);
} // namespace text
