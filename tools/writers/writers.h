// The formats in which a waveform is written.
#pragma once

#include <ostream>
#include <string>

#include "tools/writers/waveform.h"

/// The rows of CSV of a single trace as they come, in parts.
class CCsvRows {
public:
    /// @param name  of the signal; may be empty
    CCsvRows(std::ostream &out, long long resolution, const std::string &name);

    /// The names of the columns stand in front of the first part, which may have no changes.
    void Write(const STrace &part);

private:
    std::ostream &m_out;
    long long m_resolution;
    std::string m_header;  // empty once it is written
};

/// Aligned columns for a reader.
void WriteTable(std::ostream &out, const SWaveform &waveform);

/// `ticks,time,value`, with a column for each trace if there are several; quoted as in RFC 4180.
void WriteCsv(std::ostream &out, const SWaveform &waveform);

/// One object: the formula, the resolution and the changes. Bytes that are no UTF-8 become U+FFFD.
void WriteJson(std::ostream &out, const SWaveform &waveform);

/// A value change dump (IEEE 1364-2005, clause 18): bits and vectors as 4-state wires, integers and reals as such, any
/// other text as the string variables that viewers know.
void WriteVcd(std::ostream &out, const SWaveform &waveform);

/// An FST file with the same variables, and the nine letters of std_logic. @throw CRefusal if a time is too long
void WriteFstWaveform(std::ostream &out, const SWaveform &waveform);

/// A picture. @param width  of the drawing, in pixels
void WriteSvg(std::ostream &out, const SWaveform &waveform, int width);

/// The same with block characters. @param width  in columns
void WriteWave(std::ostream &out, const SWaveform &waveform, int width);
