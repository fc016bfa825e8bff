#pragma once

#include "compare_package.h"

#include <boost/property_tree/ptree_fwd.hpp>

#include <fstream>
#include <string>

// A host's node up to its packages: its name and its report's head.
boost::property_tree::ptree BuildHostJson(const std::string& host, const CompareHeader& header);

// One package's node. `bmcType` decides how an undetected device is worded.
boost::property_tree::ptree BuildPackageJson(const ComparePackage& package, const std::string& bmcType);

// "compare_result.json", written host by host so that only one host's tree is in memory. The hosts go to a temporary
// name in the same folder; Commit puts it in place of an earlier file. Without a Commit nothing is left behind.
class CompareJsonFile
{
  public:
    // `path`: the file's final path. Nothing is opened before the first host.
    explicit CompareJsonFile(const std::string& path);
    ~CompareJsonFile();
    CompareJsonFile(const CompareJsonFile&) = delete;
    CompareJsonFile& operator=(const CompareJsonFile&) = delete;

    // Never fails: a failure is kept for Commit, where users expect it.
    void AddHost(const boost::property_tree::ptree& host);

    // Throws the JSON writer's error, with the final path, when the file could not be written.
    void Commit();

  private:
    void open();
    void fail(const std::string& reason);

    std::string path_;
    std::string temporaryPath_;
    std::ofstream file_;
    bool opened_ = false;
    bool committed_ = false;
    std::string failure_;
};
