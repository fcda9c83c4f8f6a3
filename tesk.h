// Everything that libtesk exports.
#pragma once

#include "core/scalarinfo.h"
#include "core/stimiterator.h"
#include "core/stimulus.h"
#include "core/tokenizer.h"
#include "platform/kestrin.h"
#include "platform/log.h"
#include "settings/bitvector.h"
#include "settings/brel.h"
#include "settings/counter.h"
#include "settings/cstr.h"
#include "settings/decconverter.h"
#include "settings/longnumber.h"
#include "settings/random.h"
#include "settings/timeunits.h"
#include "settings/typetext.h"
