#pragma once

namespace files
{
// A handle of the system's (HANDLE) to a file, closed with the object.
class FileHandle
{
  public:
    explicit FileHandle(void* value) : value_(value) {}
    ~FileHandle() { close(); }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    void* get() const { return value_; }
    bool valid() const;

    // True too when there is nothing to close; false leaves the reason in GetLastError.
    bool close();

  private:
    void* value_;
};
} // namespace files
