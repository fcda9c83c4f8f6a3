// Files of one signal and the formulas that replay it, for tests of what the kinds of files have in common.
#pragma once

#include <cstring>
#include <string>

#include "platform/stream/streamfiles.h"
#include "waveform/fakefiles.h"

inline constexpr long long Latest = 0x7FFFFFFFFFFFFFFF;  ///< of all times

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
    static std::string FileName(EFileKind kind)
    {
        static const CStreamFolder folder;
        return kind == EFileKind::Stream ? folder / "f.zyn" : kind == EFileKind::Database ? "f.db" : "f.vcd";
    }

    /// Makes the file, with the signal "s" only.
    static void MakeFile(const SReplay &replay)
    {
        tesk::CloseOpenWaveformFiles();
        if (replay.kind == EFileKind::Stream)
            WriteStream(FileName(replay.kind), {{"s", IntegerType, BytesOf(replay.events), {}}}, replay.fileRes,
                        replay.fileEnd);
        if (replay.kind == EFileKind::Database)
            Enter("f.db", new CFakeReader(replay.fileRes, replay.fileEnd, {{"s", IntegerType, replay.events}}));
        if (replay.kind == EFileKind::Vcd)
            Enter("f.vcd", NewStore(replay.fileRes, replay.fileEnd, {{"s", IntegerType, {replay.events}}}));
    }

    /// The stimulus of the formula on a file that is made; null if it cannot be used.
    static StimulusPtr Apply(const SReplay &replay)
    {
        return ::Create("/custom " + FileName(replay.kind) + ",s" + replay.Tail(), replay.now, replay.simRes);
    }

    static StimulusPtr Create(const SReplay &replay)
    {
        MakeFile(replay);
        return Apply(replay);
    }

    /// The events of a stream of integers.
    static CEvents BytesOf(const CFileEvents &events)
    {
        CEvents raw;
        for (const NTARN::SFileEvent &event : events) {
            std::string value(sizeof event.value, 0);
            std::memcpy(value.data(), &event.value, sizeof event.value);
            raw.emplace_back(event.time, value);
        }
        return raw;
    }
};

constexpr EFileKind AllKinds[] = {EFileKind::Stream, EFileKind::Database, EFileKind::Vcd};
