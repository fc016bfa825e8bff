#pragma once

#include <pugixml.hpp>

#include <string>

// The summary report in a target's folder (summary_report.cpp describes it), for those who read it.
namespace summary_file
{
constexpr char kRoot[] = "COMMONRESULT";
constexpr char kService[] = "SERVICE";
constexpr char kAction[] = "ACTION";
constexpr char kCode[] = "CODE";
constexpr char kMessage[] = "MESSAGE";

std::string pathIn(const std::string& folder);

// False when there is none, or none that can be read.
bool load(const std::string& path, pugi::xml_document& document);

// The message of the service that failed there, although the target may have been compared all the same. Empty when the
// service succeeded, did not run, or the report cannot be read.
std::string serviceFailure(const std::string& folder, const std::string& action);
} // namespace summary_file
