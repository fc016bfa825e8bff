#pragma once

#include "compare_package.h"

#include <boost/property_tree/ptree_fwd.hpp>

#include <string>
#include <vector>

// Reading of the compare reports that the targets' tasks left. A key that must be there and is not, or a number that is
// none, leaves by the property tree's own error.

// Full paths of the regular files below the directory whose name is exactly one of `names`, sorted by path. A path of a
// regular file gives itself, whatever its name; a path of anything else gives nothing. Throws boost::filesystem::filesystem_error, with the path, for a
// directory that cannot be read.
std::vector<std::string> FindCompareReports(const std::string& outputDirectory, const std::vector<std::string>& names);

// True for a file whose elements nest deeper than any report's, which the XML reader would not survive.
bool NestsTooDeeply(const std::string& path);

// The target of a report: the name of the directory that holds it, without the framework's "SUCCESS-" and "FAILURE-".
std::string HostOfReport(const std::string& reportPath);

CompareHeader ReadCompareHeader(const boost::property_tree::ptree& report);

// The node whose children are the packages, whatever their names.
const boost::property_tree::ptree& PackagesNode(const boost::property_tree::ptree& report);

ComparePackage ReadComparePackage(const boost::property_tree::ptree& packageNode);
