// The operating system's loader of shared libraries, under the names that the suite uses.
#pragma once

#include "base/export.h"

/// A loaded library.
using HMODULE = void *;

/// Loads a library by its suite name: "libmat.dll" and "libmx.dll" are MATLAB's, of an installed MATLAB or else the ones
/// that come with this library. Folders of PATH and LD_LIBRARY_PATH that are not absolute are passed over. @return null if it cannot be loaded
TESK_API HMODULE LoadLibraryA(const char *name);
/// @return null if the library has no such entry point
TESK_API void *GetProcAddress(HMODULE library, const char *name);
/// Gives a loaded library up. @return 0 for a null or unknown one
TESK_API int FreeLibrary(HMODULE library);
