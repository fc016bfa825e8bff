#pragma once

#include <string>

namespace test_support
{
// A new folder below the system's folder for temporary files, in which a test may write and read; removed with all that
// it holds. Its paths have the
// system's own separators, the names that a test gives "/".
class ScratchFolder
{
  public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const;

    // Writes a file, making the folders on its way; returns its path.
    std::string write(const std::string& name, const std::string& content) const;

  private:
    std::string path_;
};

// The whole file as text, with the line ends of a C++ text on every system; empty when there is none.
std::string readFile(const std::string& path);
} // namespace test_support
