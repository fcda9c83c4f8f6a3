// Files of one signal and the formulas that replay it, for tests of what the kinds of files have in common.
#pragma once

#include <string>

#include "waveform/fakefiles.h"

enum class EFileKind { Stream, Database, Vcd };

/// A file with one signal, and the formula that replays it.
struct SReplay {
    EFileKind kind = EFileKind::Database;
    long long simRes = 1000;
    long long fileRes = 1000;
    long long fileEnd = 100;
    CFileEvents events = {};
    std::string start = {}, end = {}, offset = {}, repeat = {}, cancel = {};
    long long now = 0;

    /// What stands behind the names of file and signal.
    std::string Tail() const
    {
        std::string tail = start.empty() ? "" : "," + start;
        tail += end.empty() ? "" : "," + end;
        tail += offset.empty() ? "" : " " + offset;
        tail += repeat.empty() ? "" : " -r " + repeat;
        return tail + (cancel.empty() ? "" : " -cancel " + cancel);
    }
};

/// Opens files of every kind.
class ReplayedFiles : public WaveformFiles {
protected:
    static const char *FileName(EFileKind kind) { return kind == EFileKind::Database ? "f.db" : "f.vcd"; }

    /// The stimulus of a file that holds the signal "s" only; null if it cannot be used.
    static StimulusPtr Create(const SReplay &replay)
    {
        CloseOpenWaveformFiles();
        if (replay.kind == EFileKind::Database)
            Enter("f.db", new CFakeReader(replay.fileRes, replay.fileEnd, {{"s", IntegerType, replay.events}}));
        else
            Enter("f.vcd", NewStore(replay.fileRes, replay.fileEnd, {{"s", IntegerType, {replay.events}}}));
        return ::Create("/custom " + std::string(FileName(replay.kind)) + ",s" + replay.Tail(), replay.now,
                        replay.simRes);
    }
};

constexpr EFileKind AllKinds[] = {EFileKind::Database, EFileKind::Vcd};
