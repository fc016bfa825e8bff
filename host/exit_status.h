#pragma once

// Exit statuses of the program's own; a command that ran ends with its result's number (docs/options.md).
namespace exit_status
{
constexpr int kSuccess = 0;
constexpr int kGenericFailure = 1;
constexpr int kInvalidApplication = 3; // the command's module cannot be loaded
constexpr int kInvalidCommand = 4;
constexpr int kInvalidParameter = 5;
constexpr int kInvalidFile = 7; // what was checked has errors
constexpr int kWriteFailure = 11;
constexpr int kInternalError = 17;
constexpr int kQuit = 37;
} // namespace exit_status
