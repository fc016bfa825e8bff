#pragma once

#include <map>
#include <string>
#include <vector>

// Compare reports as the framework's writer lays them out, with single elements changed or left out.
namespace report
{
using Changes = std::map<std::string, std::string>;

// As a change's value: leaves the element out.
constexpr char kAbsent[] = "\x01";

std::string child(const Changes& changes = {});
std::string package(const std::vector<std::string>& children, const Changes& changes = {});
std::string file(const std::vector<std::string>& packages, const Changes& changes = {});
} // namespace report
