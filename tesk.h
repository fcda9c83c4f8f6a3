// Everything that libtesk exports.
#pragma once

#include "core/fileformulaargs.h"
#include "core/stimiterator.h"
#include "core/stimulus.h"
#include "core/tokenizer.h"
#include "platform/log.h"
#include "settings/clock.h"
#include "settings/cstr.h"
#include "settings/stimstate.h"
#include "settings/stiparser.h"
#include "settings/timeunits.h"
