#pragma once

#include <chrono>
#include <string>

// The user's own folder, and files in it that several programs change at once.
namespace trust
{
// The full path of the user's home folder; empty when there is none.
std::string homeFolder();

// Makes the folder for its owner alone unless it is there; its parent must be. False, with the reason, when that fails.
bool makePrivateFolder(const std::string& path, std::string& error);

// A lock that one holder at a time has, over threads and processes, as long as the object lives. The lock's file is
// made when it is missing and stays: its removal could give two holders the lock.
class FileLock
{
  public:
    FileLock() = default;
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    // Waits up to `limit` for the lock. False, with the reason, when it was not to be had.
    bool acquire(const std::string& path, std::chrono::milliseconds limit, std::string& error);

  private:
    int handle_ = -1;
};
} // namespace trust
