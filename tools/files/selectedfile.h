// Some of the signals of a waveform file, over some of its time.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "waveform/files/waveformfile.h"

namespace tesk {

struct SSelection {
    std::vector<std::string> globs;  ///< of full names; none for all signals
    std::optional<long long> from;   ///< file ticks, inside
    std::optional<long long> until;  ///< file ticks, inside
    bool showsValueInForce = false;  ///< that at `from` becomes an event there
};

/// Whether a name is of a pattern: "*" stands for any letters, dots included, "?" for one. Letter case does not count, and
/// parentheses are as good as brackets.
bool IsLikeGlob(std::string_view name, std::string_view glob);

/// A name as names are compared: in lower case, with brackets for parentheses.
std::string FoldName(std::string_view name);

/// The file as it is seen through the selection. @throw CRefusal for a pattern of no signal, with the nearest names
std::unique_ptr<IWaveformFile> Select(std::unique_ptr<IWaveformFile> file, const std::string &path,
                                      const SSelection &selection);

/// Reads the options --from and --until. @param from, until  empty if they were not given
/// @throw CWrongUsage for one that is no time, and for an end before the beginning
void ReadStretch(const std::string &from, const std::string &until, long long resolution, SSelection &selection);

}  // namespace tesk
