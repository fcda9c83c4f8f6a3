// The alphabet of an enumerated signal, extended identifiers, gate-level state letters.
#pragma once

#include "base/extendedid.h"
#include "base/scalarinfo.h"
#include "base/stdlogic.h"
