// Stimuli that replay a stretch of a recorded signal: what all kinds share, and the kind for event-stream files.
//
//     /custom FILE,SIGNAL[,START[,END]] [[@]OFFSET] [-r PERIOD] [-cancel [@]TIME]
//
// The stretch from START to END, both inclusive, begins to play at OFFSET, starts over every PERIOD, and is silent from
// the cancel time on. OFFSET and the cancel time count from the creation of the stimulus, or with "@" from tick 0.
#pragma once

#include <cstdint>
#include <memory>

#include "core/stimulus.h"

class ISignal;

namespace tesk {
class IFileUse;
class IWaveformFile;
struct SWaveformFileRules;
}  // namespace tesk

namespace Morvel {
class IMorvelRead;
class KEventData;
class KEventsStore;
}  // namespace Morvel

/// Base of the stimuli that replay a file. Simulation times are ticks of `g_simRes`, file times those of the file.
class TESK_API ICustomStimulus : public IStimulus {
public:
    ICustomStimulus() = default;
    ICustomStimulus(const ICustomStimulus &) = delete;
    ICustomStimulus &operator=(const ICustomStimulus &) = delete;

    /// The file time whose value is in force at a simulation time, a negative one being 0.
    /// @return -1 before the offset, from the cancel time on, and between the end of the stretch and the next period
    long long MapToWaveTime(long long time) const;

    /// Gives up the signal. Deliberate: the object itself stays; the kinds of files end it.
    void Destroy() override;
    /// Lets `GetBinary8BytesValue` answer.
    void AllowBinary8BytesValues() override;
    bool IsCustom() const override;
    const Kestrin::KTypeInfo *GetSignalTypeInfo() const override;
    bool IsFinishedAt(long long time) override;

    virtual ~ICustomStimulus();

protected:
    static constexpr std::uint32_t BinaryAllowed = 0x90000000;

    bool AllowsBinary() const { return (m_timeUnit & BinaryAllowed) != 0; }
    /// Unit id of the file's resolution.
    TESK_LOCAL int FileUnit() const;
    /// The place in the period at `time`, which must not lie before the offset.
    TESK_LOCAL long long PlaceInPeriod(long long time) const;
    /// Converts a place of the file, in simulation ticks, to file ticks.
    TESK_LOCAL long long ToFileTicks(long long place) const;
    /// Converts a count of `FileUnit` to simulation ticks.
    TESK_LOCAL static long long ToSimTicks(long long count, int unit);
    /// Bytes that a raw value must have to be turned into text.
    TESK_LOCAL std::size_t RawValueSize() const;
    /// Stores the text of a raw value of `RawValueSize` bytes; `value` stays where there is none.
    /// @return whether `value` then holds a text
    TESK_LOCAL bool StoreText(const void *rawValue, SimpleString::CStr &value) const;
    TESK_LOCAL void ReleaseSignal();

    long long m_fileResolution = 1;  // femtoseconds per file tick
    long long m_fileScale = 1;       // the number part of the file resolution, whose unit part is m_timeUnit
    ISignal *m_signal = nullptr;     // owned; gives the type and turns raw values into text
    std::uint32_t m_timeUnit = 0;    // unit id, and the flag BinaryAllowed
    STimeValue m_start;              // the stretch, in simulation ticks from the beginning of the file
    STimeValue m_end;
    STimeValue m_offset;  // when the stretch begins to play
    STimeValue m_repeat;  // 0 ticks for none
    STimeValue m_cancel;  // 0 ticks for none
};

/// What the three kinds do alike: being filled from a formula, and walking from change to change.
class TESK_API CReplayStimulus : public ICustomStimulus {
public:
    long long GetNextEventTime(long long time) override;
    bool IsFinishedAt(long long time) override;

protected:
    /// What follows a place of the stretch.
    struct SNextChange {
        enum EKind {
            Change,   ///< a change at `position`
            Nothing,  ///< no change in this period; the next period begins with one
            Never     ///< no change at all
        };
        EKind kind;
        long long position = 0;  ///< simulation ticks from the start of the stretch
    };

    /// Looks for the first change behind a file time.
    virtual SNextChange FindNextChange(long long fileTime) const = 0;

    /// The change at a place of the file, in simulation ticks, unless it lies beyond the stretch or the period.
    TESK_LOCAL SNextChange ChangeAt(long long place) const;

    /// Fills a new object from the arguments of a formula, and keeps the file that they name.
    /// @param now  simulation ticks; when the stimulator is applied
    /// @return false if it cannot be used
    TESK_LOCAL bool Fill(tesk::IFileUse &use, const tesk::SWaveformFileRules &rules, long long now,
                         const char *arguments);

private:
    TESK_LOCAL bool MakeSignal(tesk::IWaveformFile &file, const tesk::SWaveformFileRules &rules,
                               const SimpleString::CStr &signalName);
    TESK_LOCAL bool ReadStretch(tesk::IWaveformFile &file, const tesk::SWaveformFileRules &rules, const char *start,
                                const char *end);
};

/// Replays a signal of an event-stream file, of which it keeps the signal's events only. It has no binary values and
/// cannot tell its formula, repeat or cancel time.
class TESK_API CCustomStimulus : public CReplayStimulus {
public:
    CCustomStimulus();

    /// Called once, on a new object. @param arguments  of the formula, behind its keyword
    /// @return false if the object cannot be used
    bool InitFromFormula(long long now, const char *arguments);

    void Destroy() override;
    bool GetValue(long long time, SimpleString::CStr &value) override;
    /// Empties `formula`.
    void GetFormula(SimpleString::CStr &formula) override;
    /// @return 0
    int CheckSettings(long long *time) override;

    ~CCustomStimulus() override;

protected:
    SNextChange FindNextChange(long long fileTime) const override;

private:
    TESK_LOCAL long long Round(long long fileTime) const;
    TESK_LOCAL bool IsBeyond(long long fileTime, long long limit) const;
    TESK_LOCAL long long LastFileTime(long long from, long long limit) const;
    TESK_LOCAL bool FindEvent(long long fileTime, Morvel::KEventData &event) const;

    Morvel::IMorvelRead *m_reserved = nullptr;  // stays null
    std::unique_ptr<Morvel::KEventsStore> m_store;
};

/// Finds a signal of an event stream by its full name in any letter case: the names from the top-level signal down,
/// one behind the other. The top-level call passes -1, null and 0 behind `name`. Internal.
/// @return its handle, -1 if there is none
int FindStreamSignalHandle(Morvel::IMorvelRead *stream, const char *name, int parent, const char *parentName,
                           int childCount);
