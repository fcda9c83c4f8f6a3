// Stimuli: the interface IStimulus with its factory, the events of a formula, and the stimulus of a plain formula.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/export.h"
#include "settings/cstr.h"
#include "settings/timeunits.h"

namespace Kestrin {
class KTypeInfo;
}

namespace tesk {
class CSimpleScalarInfo;
}

// Library-wide state. There is one of each and no lock: the library belongs to one thread.

/// Femtoseconds per simulation tick; 1000 (one picosecond) at start. Whatever turns a time text into ticks reads it.
TESK_API extern long long g_simRes;
/// Name of the signal being stimulated; not copied, the caller keeps it alive. Null at start.
TESK_API extern const char *g_SignalName;
/// Type description of the stimulated signal, from which array bounds are read.
TESK_API extern SimpleString::CStr g_TypeDescription;
/// Type description from which signals are made for file formulas.
TESK_API extern SimpleString::CStr g_SignalTypeDescription;

/// Says what value a signal has at a time and when it changes next.
///
/// Times are ticks: whole steps of `g_simRes`. A stimulus belongs to the caller of `Create`, who ends it with `Destroy`,
/// as `tesk::StimulusPtr` does, and never deletes it. The order of the virtual operations is part of the binary interface.
class TESK_API IStimulus {
public:
    /// Gives the object up.
    virtual void Destroy() = 0;
    /// The value in force at `time`. @return false if there is none; `value` is then unspecified
    virtual bool GetValue(long long time, SimpleString::CStr &value) = 0;
    /// The value in force at `time` as up to 64 bits. @return false if there is none or the kind has no such values
    virtual bool GetBinary8BytesValue(long long time, long long &value) const;
    /// @return the time of the first change later than `time`, -1 if there is none
    virtual long long GetNextEventTime(long long time) = 0;
    /// The stimulus as formula text. A plain formula with an offset can be asked only once, see `CStimulus`.
    virtual void GetFormula(SimpleString::CStr &formula) = 0;
    /// Announces that the caller will ask with `GetBinary8BytesValue`.
    virtual void AllowBinary8BytesValues();
    /// Whether the stimulus replays a file.
    virtual bool IsCustom() const;
    /// @return the type of the replayed signal, owned by the stimulus; null for other kinds
    virtual const Kestrin::KTypeInfo *GetSignalTypeInfo() const;
    /// Whether the stimulator has stopped for good at `time`.
    virtual bool IsFinishedAt(long long time) = 0;
    virtual bool IsCounter() const;
    /// Checks that the times make sense. @param time may be null. @return 0 if they do; codes at `CStimulus`
    virtual int CheckSettings(long long *time) = 0;
    /// The text of the event at `time`, such as "@10ns".
    virtual void GetTimeString(long long time, SimpleString::CStr &text) const;
    virtual bool GetRepeatString(SimpleString::CStr &text) const;
    /// @return false if the stimulator is never cancelled
    virtual bool GetCancelString(SimpleString::CStr &text) const;
    /// The repeat period in ticks, 0 for none.
    virtual long long GetRepeatRateInSimUnits() const;
    /// The repeat period in the unit in which it is written, truncated.
    virtual long long GetRepeatRate() const;

    /// Makes the stimulus that a formula describes.
    ///
    /// Keywords ("/custom", "\counter", ...) are recognised in any letter case and anywhere in the text; without one it
    /// is a plain formula. A null or empty formula gives a shared stimulus that never has an event.
    /// @param startTime     ticks; when the stimulator is applied. Times that are not absolute count from here
    /// @param simRes        femtoseconds per tick; stored in `g_simRes` first of all
    /// @param scalarInfo    alphabet of an enumerated signal, read by "\random" alone; may be null
    /// @param binaryValues  of a plain formula: based literals become bit text, and if a value is longer than one
    ///                      character the lowest bit of the returned pointer is set; clear it before use
    /// @param rawValues     of a plain formula: leaves the values as written even with `binaryValues`
    /// @return null if the formula cannot be used
    static IStimulus *Create(const char *formula, long long startTime, long long simRes,
                             tesk::CSimpleScalarInfo *scalarInfo, bool binaryValues, bool rawValues);

    /// Tells about the signal for which formulas are created next. With a null `signalName` only
    /// `g_SignalTypeDescription` is set; otherwise the pointer is kept and both type descriptions are.
    static void SetupAdditionalInfo(const char *signalName, const char *typeDescription);

    /// Ends a simulation run: closes the open waveform files, destroys the loaded samples and lets go of the MATLAB
    /// libraries. Stimuli that replay files have no values any more, and must not be asked.
    static void OnEndsim();

protected:
    IStimulus() = default;
    IStimulus(const IStimulus &) = default;
    IStimulus &operator=(const IStimulus &) = default;
    ~IStimulus() = default;
};

namespace tesk {

struct SDestroyStimulus {
    void operator()(IStimulus *stimulus) const { stimulus->Destroy(); }
};
/// Owns a stimulus.
using StimulusPtr = std::unique_ptr<IStimulus, SDestroyStimulus>;

}  // namespace tesk

/// One event of a formula: a value and the time at which it begins. Owned by its stimulus or iterator.
class TESK_API ISimpleStimulus {
public:
    virtual void GetValue(SimpleString::CStr &value) const = 0;
    virtual void SetValue(const SimpleString::CStr &value) = 0;
    virtual void GetBinary8BytesValue(long long &value) const = 0;
    virtual void SetBinary8BytesValue(long long value) = 0;
    /// Ticks: from tick 0 for an absolute event, otherwise from where the relative events begin.
    virtual long long GetTime() const = 0;
    /// The time as written, such as "10ns" or "@10ns"; empty if the formula wrote none.
    virtual void GetTimeString(SimpleString::CStr &text) const = 0;

protected:
    ISimpleStimulus() = default;
    ISimpleStimulus(const ISimpleStimulus &) = default;
    ISimpleStimulus &operator=(const ISimpleStimulus &) = default;
    ~ISimpleStimulus() = default;
};

/// The event record.
class TESK_API CSimpleStimulus : public ISimpleStimulus {
public:
    CSimpleStimulus();
    CSimpleStimulus(const CSimpleStimulus &) = default;
    CSimpleStimulus &operator=(const CSimpleStimulus &) = default;

    /// Fills a new event.
    /// @param width         for based literals: bits of the value, -1 for as many as its digits have
    /// @param absolute      the time was written with a leading "@" and does not repeat
    /// @param binaryValues  turns a based literal into bit text, unless `rawValues`
    /// @return false for an empty value or a negative time; the event is filled all the same
    bool Init(const SimpleString::CStr &value, const STimeValue &time, int width, bool absolute, bool binaryValues,
              bool rawValues);

    void GetValue(SimpleString::CStr &value) const override;
    void SetValue(const SimpleString::CStr &value) override;
    void GetBinary8BytesValue(long long &value) const override;
    void SetBinary8BytesValue(long long value) override;
    long long GetTime() const override;
    void GetTimeString(SimpleString::CStr &text) const override;

    virtual ~CSimpleStimulus() = default;

protected:
    friend class CStimulus;

    static constexpr unsigned Absolute = 1;  // the time was written with "@"
    static constexpr unsigned HasTime = 2;   // the formula wrote a time

    bool IsAbsolute() const { return (m_flags & Absolute) != 0; }
    bool HasWrittenTime() const { return (m_flags & HasTime) != 0; }
    TESK_LOCAL std::string TimeText() const;
    TESK_LOCAL void SetFlag(unsigned flag, bool on);

    long long m_binaryValue = 0;
    STimeValue m_time;
    SimpleString::CStr m_value;
    unsigned m_flags = HasTime;
};

/// The stimulus of a plain formula: events with an optional repeat period and cancel time, for instance
/// "1 0ns, 0 10ns -r 20ns -cancel 1us".
///
/// An event whose time is written with "@" is absolute: it happens once, counted from tick 0. All others are relative:
/// they count from the start time plus the offset, which is the time of the first of them, and they are repeated.
class TESK_API CStimulus : public IStimulus {
public:
    /// @param width  bits to which values are converted, -1 for as many as they have
    explicit CStimulus(int width);
    CStimulus(const CStimulus &) = delete;
    CStimulus &operator=(const CStimulus &) = delete;

    /// Reads a formula; called once, on a new object. After a failure the object must be thrown away.
    /// @param formula     a null one fails
    /// @param startTime   ticks; when the stimulator is applied
    /// @param scalarInfo  not read
    /// @return 0 failure; 1 success; -1 success with a value of more than one character, told only with `binaryValues`
    int Parse(const char *formula, long long startTime, tesk::CSimpleScalarInfo *scalarInfo, bool binaryValues,
              bool rawValues);

    void Destroy() override;
    bool GetValue(long long time, SimpleString::CStr &value) override;
    bool GetBinary8BytesValue(long long time, long long &value) const override;
    long long GetNextEventTime(long long time) override;
    /// Writes the formula in its canonical form. Deliberate: the offset is added to the events in place, so on a
    /// stimulus with an offset a second call adds it once more.
    void GetFormula(SimpleString::CStr &formula) override;
    bool IsFinishedAt(long long time) override;
    /// @return 0 the times are consistent; 1 an absolute event, at `time`, lies before the start; 2 relative events are
    ///         not in rising order; 3 the repeat period is shorter than the sequence; 4 cancelled before it starts;
    ///         5 cancelled not later than the last relative event
    int CheckSettings(long long *time) override;
    /// `text` is left alone if no event has this time.
    void GetTimeString(long long time, SimpleString::CStr &text) const override;
    /// Deliberate: answers only for a stimulus without a repeat, with "0fs".
    bool GetRepeatString(SimpleString::CStr &text) const override;
    bool GetCancelString(SimpleString::CStr &text) const override;
    long long GetRepeatRateInSimUnits() const override;
    long long GetRepeatRate() const override;

    virtual ~CStimulus();

private:
    friend class CStimIterator;
    class TESK_LOCAL CFormulaReader;

    static constexpr unsigned UseAbsolute = 1;     // absolute events take part in GetNextEventTime
    static constexpr unsigned CancelAbsolute = 2;  // the cancel time was written with "@"

    // Times of the events of one kind, absolute or relative, in rising order, with their places in m_events.
    struct SIndexEntry {
        long long time;
        std::size_t event;
    };
    using CTimeIndex = std::vector<SIndexEntry>;

    enum class EDirection { Backward, Forward };

    TESK_LOCAL void MoveRelativeEventsToOffset();
    TESK_LOCAL void BuildIndex();
    TESK_LOCAL static const SIndexEntry *FindNearest(const CTimeIndex &index, long long time, EDirection direction);
    TESK_LOCAL long long Base() const;
    TESK_LOCAL bool IsCancelledAt(long long time) const;
    TESK_LOCAL const CSimpleStimulus *FindEvent(long long time) const;
    TESK_LOCAL static long long Nearer(long long absolute, long long relative);
    TESK_LOCAL long long NextAbsoluteTime(long long from) const;
    TESK_LOCAL long long NextTime(long long from, bool useAbsolute) const;
    TESK_LOCAL long long NextRelativeTime(long long from, bool wraps) const;
    TESK_LOCAL long long FirstOfNextPeriod() const;
    TESK_LOCAL void AppendEventText(CSimpleStimulus &event, std::string &text);

    std::vector<std::unique_ptr<CSimpleStimulus>> m_events;  // in the order of the formula
    STimeValue m_repeat;
    STimeValue m_offset;
    STimeValue m_cancel;
    long long m_startTime = 0;
    int m_width;
    unsigned m_flags = UseAbsolute;
    CTimeIndex m_absoluteIndex;
    CTimeIndex m_relativeIndex;
};

/// Never has an event. All empty formulas share one object; a cancelled one is finished at any time.
class TESK_API CEmptyStimulus final : public IStimulus {
public:
    explicit CEmptyStimulus(bool cancelled) : m_cancelled(cancelled) {}

    /// The two objects that there are. The cancelled one stands for a file that has no data for the signal.
    static IStimulus *Shared(bool cancelled);

    /// Does nothing: the objects are shared.
    void Destroy() override;
    /// Empties `value`. @return true
    bool GetValue(long long time, SimpleString::CStr &value) override;
    long long GetNextEventTime(long long time) override;
    void GetFormula(SimpleString::CStr &formula) override;
    /// Whether it is the cancelled one.
    bool IsFinishedAt(long long time) override;
    int CheckSettings(long long *time) override;

private:
    bool m_cancelled;
};
