// Times on the command line: options read, ticks written.
#pragma once

#include <string>

__extension__ typedef __int128 Int128;  // femtoseconds: a 64-bit count of coarse ticks does not fit 64 bits

/// A number of femtoseconds in the coarsest unit in which it is whole: 1500000 is "1500ps". 0 is in `zeroUnit`.
std::string TimeText(Int128 femtoseconds, int zeroUnit = 1);

/// A number of ticks, as `TimeText`; 0 is in the unit of the resolution.
std::string TickText(long long ticks, long long resolution);

/// A number of ticks in the unit of the resolution, whatever it is: 12000 ticks of 1ps are "12000ps".
std::string FileTimeText(long long ticks, long long resolution);

/// The coarsest unit id, up to "sec", in which a positive number of femtoseconds is whole.
int CoarsestWholeUnit(Int128 femtoseconds);

/// Femtoseconds of one unit.
Int128 UnitLength(int unit);

/// Reads the time given to an option, 0 or later. @throw CWrongUsage that names the option, the text and
/// what would do
/// @param resolution  femtoseconds per tick
/// @return ticks
long long ReadTimeOption(const std::string &option, const std::string &text, long long resolution);

/// Reads the option `--res`. @return femtoseconds per tick, at least 1. @throw as `ReadTimeOption`
long long ReadResolution(const std::string &text);
