// The log of the suite. The stand-alone implementation writes one line a message to standard error.
#pragma once

#include "base/export.h"

/// Reports a message.
/// @param level     1 an error, 2 a warning
/// @param category  "KERNEL", or "VCD" during a VCD import
/// @param source    where it comes from; the library always passes ""
/// @param text      the finished message; it is never taken for a format
TESK_API void Q71log_PrintFormattedString(int level, const char *category, const char *source, const char *text);

/// Sends every later message to `sink` instead of standard error; a null `sink` restores standard error.
/// `context` is handed back to `sink` with each message and stays the caller's.
TESK_API void Q71log_SetSink(void (*sink)(void *context, int level, const char *category, const char *text),
                             void *context);
