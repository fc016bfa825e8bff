#pragma once

#include <string>

struct _SECURITY_ATTRIBUTES; // NOLINT(bugprone-reserved-identifier): the system's own name

// Who may use what the program makes, and what it reads: the counterpart of the modes 0600 and 0700.
namespace owner_only
{
// Access for the user that the program runs as, the administrators and the system itself, and for nobody else; what is made
// in such a folder inherits it. For the calls that make files and folders. Made once and kept; null where the system refuses
// to make it, and the parent folder's rules count then. Any thread.
_SECURITY_ATTRIBUTES* access();

// True when anybody beside those may read the file; false too when the system does not tell.
bool isReadableByOthers(const std::string& path);
} // namespace owner_only
