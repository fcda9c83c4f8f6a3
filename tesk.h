// Everything that libtesk exports.
#pragma once

#include "core/stimiterator.h"
#include "core/stimulus.h"
#include "core/tokenizer.h"
#include "platform/felvarbase.h"
#include "platform/kestrin.h"
#include "platform/log.h"
#include "platform/tarn.h"
#include "settings/cstr.h"
#include "settings/timeunits.h"
#include "settings/typetext.h"
#include "signal/signal.h"
#include "signal/unknown.h"
#include "signal/wave.h"
