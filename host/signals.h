#pragma once

namespace signals
{
// The user's wish to stop becomes interrupt::request(): Ctrl-C and the system's request to end. A second Ctrl-C ends
// the process at once with status 130. A reader that goes away (a closed pipe) is a write error, not the end.
void install();
} // namespace signals
