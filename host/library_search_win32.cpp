#include "library_search.h"

#include <windows.h>

namespace library_search
{
void narrow()
{
    // Fails on no system that the program starts on.
    ::SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
}
} // namespace library_search
