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
    int (*usualWidth)();  ///< of a picture; null of what is none

    /// The width that a picture has where this one is asked for, 0 for the default. @return 0 if it is no picture
    int PictureWidth(int asked) const { return usualWidth == nullptr ? 0 : asked != 0 ? asked : usualWidth(); }
};

/// @param path  of the output, as `FindOutputFormat` takes it
/// @throw CRefusal where bytes that are no text would go to a terminal
void RefuseBinaryOnTerminal(const SOutputFormat &format, const std::string &path);

/// The names of all formats.
std::set<std::string> OutputFormatNames();

/// The format for an output.
/// @param name  what was given to --format; may be empty
/// @param path  of the file; empty or "-" is standard output. Its ending decides where no name was given; one that stands for
///              no format is as standard output: a table on a terminal, CSV elsewhere
const SOutputFormat &FindOutputFormat(const std::string &name, const std::string &path);

}  // namespace tesk
