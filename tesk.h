// Everything that libtesk exports.
#pragma once

#include "core/stimulus.h"
#include "platform/log.h"
#include "settings/cstr.h"
#include "settings/timeunits.h"
