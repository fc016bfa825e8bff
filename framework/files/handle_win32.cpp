#include "files/handle_win32.h"

#include <windows.h>

namespace files
{
bool FileHandle::valid() const
{
    return value_ != INVALID_HANDLE_VALUE;
}

bool FileHandle::close()
{
    const HANDLE closing = value_;
    value_ = INVALID_HANDLE_VALUE;
    return closing == INVALID_HANDLE_VALUE || ::CloseHandle(closing) != 0;
}
} // namespace files
