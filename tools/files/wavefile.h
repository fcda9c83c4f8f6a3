// Waveform files for the tool: opened by what is in them, with a refusal for every fault.
#pragma once

#include <memory>
#include <string>

#include "platform/tarnutil.h"
#include "waveform/files/filekinds.h"
#include "waveform/files/fileuse.h"
#include "waveform/files/waveformfile.h"

/// Tells a file by what is in it, and by its name if that tells nothing; "-" is standard input. Of a pipe nothing is lost by that.
/// @throw CRefusal if it cannot be read
tesk::EFileKind KindOfFile(const std::string &path);

/// Opens a file; "-" is standard input. Warnings go to standard error. A walk, and what identifies events, is refused if they cannot be read.
/// @throw CRefusal if it cannot be read
std::unique_ptr<tesk::IWaveformFile> OpenWaveFile(const std::string &path);

/// Opens a file as one of a kind, and tells on a terminal how far a long import is.
/// @return null or an exception if it cannot be read; the log then says why, or else the exception
std::unique_ptr<tesk::IWaveformFile> OpenAs(tesk::EFileKind kind, const std::string &path);

/// Imports a VCD with a writer that throws nothing. Warnings go to standard error.
/// @param path  "-" is standard input
/// @throw CRefusal if it cannot be read
void ImportVcd(const std::string &path, NTARN::IDatabaseStreamWriter &writer);

/// A file opened as a formula opens it: as what its name says, and left open until the run ends, so that the stimuli of
/// the formula find it read.
class CFormulaFile {
public:
    /// Warnings go to standard error; what is wrong with the file is told when the stimulus is made.
    explicit CFormulaFile(const std::string &path);
    CFormulaFile(const CFormulaFile &) = delete;

    /// @return null if it cannot be read
    tesk::IWaveformFile *Get() const { return m_file; }

private:
    std::unique_ptr<tesk::IFileUse> m_use;
    tesk::IWaveformFile *m_file = nullptr;  // what the use found
};
