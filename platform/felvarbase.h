// What the library asks the suite's base library: how names of the design hierarchy are written and compared.
#pragma once

#include "base/export.h"

/// The character between two levels of a hierarchical name; '.' at start.
TESK_API char GetVHDLHierarchySeparator();
TESK_API void SetVHDLHierarchySeparator(char separator);

/// Whether hierarchical names that differ only in letter case are different; true at start.
TESK_API bool IsHierarchyCaseSensitive();
/// Lists of signals are ordered by this setting: it is made before signals are, not in between.
TESK_API void SetHierarchyCaseSensitive(bool sensitive);
