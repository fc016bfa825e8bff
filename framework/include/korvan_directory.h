#pragma once

#include "korvan_framework_export.h"

#include <string>

// Directories of the run. Set once, before any task starts; afterwards read from any thread.
class KORVAN_FRAMEWORK_EXPORT KorvanDirectory
{
  public:
    // The command's output directory, below which every target's folder lies; empty before Initialize.
    static std::string getOutputDir();
    static void setOutputDir(const std::string& directory);

    // The path made absolute against the working directory, without "." and ".."; need not exist.
    static std::string GetFullPath(const std::string& path);
};
