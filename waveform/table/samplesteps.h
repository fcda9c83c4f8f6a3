// The steps that the importers of sample tables have in common.
#pragma once

#include <memory>

#include "waveform/samplecolumn.h"

namespace tesk {

/// Frees the text of an event that is going away.
void FreeSample(const CSampleColumn &column, SampleEvent &event);

/// Frees and erases the events from `first` on, `count` of them.
void EraseSamples(CSampleColumn &column, std::size_t first, std::size_t count);

/// Reads the length of a table's time unit, the `m_interval` text of the arguments, into femtoseconds.
/// @param interval  without a text it is one tick
/// @return false for a text that is no time
bool ReadInterval(const CFileFormulaArgs &args, double &interval);

/// Makes the value in force at `start` the first event, at that time: the last event that is reached while a next one
/// is not later than `start`. Deliberate: a first event that lies behind `start` is moved there too.
void CollapseTo(CSampleColumn &column, long long start);

/// The same for `m_startTime`, of a table with absolute times whose first event lies before it.
void CollapseToStartTime(CSampleColumn &column);

/// Lets the later value win where two events have one time.
/// @return false, with a message, if an event is earlier than the one before
bool OrderSamples(CSampleColumn &column, const char *signal);

/// @return false, with a message, if the column has no events
bool CheckHasSamples(const CSampleColumn &column, const char *signal);

/// Moves a column into `g_SampleColumns`. @return its handle
int RegisterSamples(std::unique_ptr<CSampleColumn> column);

/// Logs a message under "KERNEL" that names a signal and then the column's file.
/// @param level   1 an error, 2 a warning
/// @param format  with two "%s"
void LogSamples(const CSampleColumn &column, int level, const char *format, const char *signal);

/// Destroys all columns; handles count from 1 again.
void ClearSampleColumns();

}  // namespace tesk
