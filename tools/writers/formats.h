// The one table of the formats in which a waveform is written.
#pragma once

#include <ostream>
#include <set>
#include <string>

#include "tools/writers/waveform.h"

namespace tesk {

/// How a waveform is written.
struct SOutputFormat {
    const char *name;    ///< of the option --format
    const char *ending;  ///< of a file's name that stands for it, behind the point; "" if none does
    bool isBinary;       ///< nothing for a terminal
    bool showsRadix;     ///< values are texts for a reader, in the radix that was asked for
    /// @param width  of a picture, in pixels or columns; 0 for the default
    void (*write)(std::ostream &out, const SWaveform &waveform, int width);
};

/// The names of all formats.
std::set<std::string> OutputFormatNames();

/// The format for an output.
/// @param name  what was given to --format; may be empty
/// @param path  of the file; empty or "-" is standard output. Its ending decides where no name was given; one that stands for
///              no format is as standard output: a table on a terminal, CSV elsewhere
const SOutputFormat &FindOutputFormat(const std::string &name, const std::string &path);

}  // namespace tesk
