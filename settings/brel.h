// The legacy gate-level notation, such as "(H10NS L5)4 [FF]1US": its tree, and its way into a plain formula.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "base/export.h"
#include "settings/cstr.h"
#include "settings/timeunits.h"

// The text behind "/brel" is a row of items, with white space between them or not:
//   <value><time>     an event: the value, one character or "[" hexadecimal digits "]", holds for the time
//   (<items>)<count>  a group: the items, groups among them, are repeated
//   /CLK              the rest is ignored, and the formula has no end: it is a clock
// A time is digits, with a "." and more of them or not, and a unit of two letters; without one it is in "ns". Letter
// case does not matter. An item that cannot be read is dropped without a trace.

/// A part of a formula in the notation. Times are femtoseconds and wrap. The order of the virtual operations is fixed.
class IBrelFormula {
public:
    virtual ~IBrelFormula() = default;
    /// Estimates the length of the text of `WriteFormula`. @param time  where it begins; advanced to its end
    virtual int GetTextLength(long long &time) = 0;
    /// Writes the values and times of a plain formula, a repeated part once, with a terminating zero.
    /// @param time  where it begins; advanced to its end
    /// @param room  bytes at `text`; the text may be up to `SpareRoom` bytes longer before that is noticed
    /// @return false if the text is longer than `room`
    virtual bool WriteFormula(char *text, long long &time, int room) = 0;
    /// Writes the notation back. @return true
    virtual bool GetSource(SimpleString::CStr &text) = 0;
    /// How long it lasts in all, repeats included.
    virtual long long GetDuration() = 0;
    /// @return false if there is no value at `time`
    virtual bool GetValue(long long time, SimpleString::CStr &value) = 0;
    /// @return the time of the first change behind `time`, -1 for none
    virtual long long GetNextEvent(long long time) = 0;
    /// Whether no repeat count is above `maximum`.
    virtual bool CheckRepeat(int maximum) = 0;
    /// Whether anything is repeated.
    virtual bool HasRepeat() = 0;

    static constexpr int SpareRoom = 64;  ///< more than the longest event takes

protected:
    IBrelFormula() = default;
    IBrelFormula(const IBrelFormula &) = default;
    IBrelFormula &operator=(const IBrelFormula &) = default;
};

/// A value that holds for some time. `GetValue` does not care about the time.
class CBrelEvent final : public IBrelFormula {
public:
    /// Reads an event in capital letters; called once.
    /// @param value    hexadecimal digits if `numeric`, else one character, of which H means 1 and L means 0
    /// @param time     may be empty: the duration is then -1 fs
    /// @return false if a part cannot be read
    bool Parse(std::string_view value, bool numeric, std::string_view time);

    int GetTextLength(long long &time) override;
    bool WriteFormula(char *text, long long &time, int room) override;
    bool GetSource(SimpleString::CStr &text) override;
    long long GetDuration() override;
    bool GetValue(long long time, SimpleString::CStr &value) override;
    /// The next multiple of the duration; -1 if that is 0.
    long long GetNextEvent(long long time) override;
    bool CheckRepeat(int maximum) override;
    bool HasRepeat() override;

private:
    bool ParseTime(std::string_view time);

    STimeValue m_duration;
    int m_value = 0;  // the number, or the code of the character
    bool m_numeric = true;
};

/// A row of items that is repeated.
class CBrelSequence final : public IBrelFormula {
public:
    void Append(std::unique_ptr<IBrelFormula> child);
    /// How often it runs. Deliberate: 0 counts as once for the duration, but there are then no values and no changes.
    void SetRepeat(int repeat) { m_repeat = repeat; }

    int GetTextLength(long long &time) override;
    bool WriteFormula(char *text, long long &time, int room) override;
    bool GetSource(SimpleString::CStr &text) override;
    long long GetDuration() override;
    /// Deliberate: answers behind the end, too, as if it ran on for ever.
    bool GetValue(long long time, SimpleString::CStr &value) override;
    long long GetNextEvent(long long time) override;
    bool CheckRepeat(int maximum) override;
    bool HasRepeat() override;

private:
    long long PassDuration();

    std::vector<std::unique_ptr<IBrelFormula>> m_children;
    int m_repeat = 1;
    long long m_childrenDuration = 0;  // the sum, kept so that a deep tree does not add it up at every level
};

/// A whole formula in the notation.
class CBrelFormula {
public:
    CBrelFormula() = default;
    CBrelFormula(const CBrelFormula &) = delete;
    CBrelFormula &operator=(const CBrelFormula &) = delete;

    virtual ~CBrelFormula() = default;
    /// Estimates the length of the plain formula; 0 if there is nothing to write.
    virtual int GetTextLength();
    /// Writes the plain formula: one pass of values and times, "-r" with the time of that pass if anything is
    /// repeated, and unless it is a clock "-cancel" with the whole duration. @return false, `formula` empty, if there
    /// is nothing to write or it becomes far longer than estimated
    virtual bool GetFormula(SimpleString::CStr &formula);
    /// Writes the notation back, without "/CLK". @return false without a formula
    virtual bool GetSource(SimpleString::CStr &text);
    /// Femtoseconds; 0 without a formula.
    virtual long long GetDuration();
    /// @return false if there is no value at `time`, femtoseconds
    virtual bool GetValue(long long time, SimpleString::CStr &value);
    /// @return the time of the first change behind `time` and before the end; -1 for none, 0 for a `time` of -1
    virtual long long GetNextEvent(long long time);

    /// Reads a formula. @param text  what stands behind "/brel"; may be null, which is no item
    /// @return false for a group that is not closed or has nothing, not even a blank, behind it; what was read before
    ///         it is kept. Within another group this only drops the inner one
    bool Parse(const char *text);
    bool CheckRepeat(int maximum);

private:
    std::unique_ptr<IBrelFormula> m_root;
    bool m_isClock = false;
};

/// Rewrites the text behind "/brel" as a plain formula. @return false, `formula` empty, if that cannot be done
bool ExpandBrelFormula(const char *text, SimpleString::CStr &formula);

/// Whether no repeat count of a formula in the notation is above `maximum`; the whole counts as repeated once.
/// @return true for a text that cannot be read
TESK_API bool CheckBrelMaxRepeatCount(const char *text, int maximum);
