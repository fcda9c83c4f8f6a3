// A waveform file written in another format.
#pragma once

#include <ostream>
#include <string>

#include "tools/files/wavefile.h"

/// Writes an event stream, whole or not at all. The elements of a bus become children named "(7)".
/// @throw CRefusal if it cannot be written
void WriteEventStream(const std::string &path, tesk::IWaveformFile &file);

/// Writes a value change dump (IEEE 1364-2005, clause 18): vectors of bits as such, with the letters of std_logic where
/// the file has them, reals, integers as such, any other enumeration as the string variables that viewers know. The
/// elements of any other array are variables of their own.
void WriteWaveDump(std::ostream &out, tesk::IWaveformFile &file);

/// Writes an FST file with the same variables as a value change dump. Its ticks are a power of ten of a second.
/// @param out  must be able to seek
/// @throw CRefusal if a time is too long
void WriteFst(std::ostream &out, tesk::IWaveformFile &file);
