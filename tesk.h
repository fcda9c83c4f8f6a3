// Everything that libtesk exports.
#pragma once

#include "core/stimiterator.h"
#include "core/stimulus.h"
#include "core/tokenizer.h"
#include "platform/kestrin.h"
#include "platform/log.h"
#include "settings/cstr.h"
#include "settings/timeunits.h"
#include "settings/typetext.h"
