// The one table of the kinds of waveform files.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "settings/cstr.h"

class IStimulus;

namespace tesk {

class IFileUse;
class IWaveformFile;

enum class EFileKind { Stream, Vcd, Database };

/// The differences between the kinds of files where a formula replays them. They are deliberate.
struct SWaveformFileRules {
    bool renamesBrackets;       ///< "(" and ")" in the name of the signal stand for "[" and "]"
    bool logsFaults;            ///< a missing or damaged file, and a signal that the file does not have
    bool allowsEmptyStretch;    ///< also one at the very end of the file
    bool comparesDisplayUnits;  ///< with the end of the file, instead of ticks
    bool scalesEnd;             ///< the end of the file counts file ticks, as it should, and not time units

    void Log(const char *text) const;
};

struct SFileKind {
    EFileKind kind;
    SWaveformFileRules rules;
    /// Opens a file for its caller alone. @return null, with a line in the log, if it cannot be opened; may raise
    std::unique_ptr<IWaveformFile> (*open)(const char *fileName);
    /// How a formula uses a file.
    std::unique_ptr<IFileUse> (*makeUse)();
    /// Makes the stimulus of "/custom". @param arguments  behind the keyword. @return null if they cannot be used
    IStimulus *(*createStimulus)(long long now, const char *arguments);
    /// Ends a reader out of the table of open files.
    void (*endReader)(void *reader);
};

const SFileKind &FileKind(EFileKind kind);

/// What a formula takes a file for: a name with ".zyn" or ".tmp" in it, in that letter case and not at its beginning, is
/// an event stream; one with ".vcd" a VCD file; any other one a waveform database.
EFileKind KindOfName(std::string_view fileName);

/// Tells a file by its first 64 bytes. @return nothing if they tell nothing
std::optional<EFileKind> KindOfContents(std::string_view beginning);

/// Turns "(" and ")" in the name of a signal into the "[" and "]" of the file's own names.
void RenameBrackets(SimpleString::CStr &signalName);

/// Ends all readers in the order of their keys and empties the table of open files. Whatever points to a reader must not
/// be used any more.
void CloseOpenWaveformFiles();

}  // namespace tesk
