#pragma once

namespace library_search
{
// From then on the system takes libraries that are asked for by a bare name from the program's own folder and its own ones
// alone, never from the working folder or PATH. Where the program starts, before anything else is loaded.
void narrow();
} // namespace library_search
