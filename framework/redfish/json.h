#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <initializer_list>
#include <string>
#include <vector>

// JSON from a service: parsed with limits, read without exceptions. Every accessor takes any value, also one of a
// type that it does not expect, and then gives nothing.
namespace redfish
{
constexpr std::size_t kDeepestJson = 64;
constexpr std::size_t kMostJsonValues = 500000;

// False when the text is no JSON, nests deeper or holds more values than the limits; then `document` is null and
// `reason` says why. Bytes that are no UTF-8 are replaced, services are known to send them in names.
bool parseJson(const std::string& body, nlohmann::json& document, std::string& reason);

// The member, or null when the value is no object or has no such member.
const nlohmann::json* member(const nlohmann::json& value, const std::string& name);

// The same, several steps down.
const nlohmann::json* member(const nlohmann::json& value, std::initializer_list<const char*> path);

// The value as a trimmed text: a string as it is, a number in decimal, empty for everything else. Texts are cut to a
// length that reports can bear.
std::string textOf(const nlohmann::json* value);
std::string textAt(const nlohmann::json& value, const std::string& name);

bool flagAt(const nlohmann::json& value, const std::string& name, bool defaultValue);

// The "@odata.id" of a reference; a plain text counts as one too.
std::string linkOf(const nlohmann::json* reference);

// The links of an array of references or of a single one.
std::vector<std::string> linksOf(const nlohmann::json* references);

// The last part of the first MessageId in an error body ("Base.1.4.0.AccessDenied" gives "AccessDenied"), or empty.
std::string errorMessageId(const nlohmann::json& document);
} // namespace redfish
