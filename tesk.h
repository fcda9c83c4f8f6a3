// Everything that libtesk exports.
#pragma once

<<<<<<< HEAD
#include "core/scalarinfo.h"
=======
#include "core/fileformulaargs.h"
>>>>>>> texts
#include "core/stimiterator.h"
#include "core/stimulus.h"
#include "core/tokenizer.h"
#include "platform/kestrin.h"
#include "platform/log.h"
<<<<<<< HEAD
#include "settings/bitvector.h"
#include "settings/cstr.h"
#include "settings/decconverter.h"
#include "settings/longnumber.h"
=======
#include "settings/clock.h"
#include "settings/cstr.h"
#include "settings/stimstate.h"
#include "settings/stiparser.h"
>>>>>>> texts
#include "settings/timeunits.h"
#include "settings/typetext.h"
