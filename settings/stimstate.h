// CStimState: when a stimulator is switched on and off.
#pragma once

#include <map>
#include <optional>

#include "base/export.h"

/// The moments at which a stimulator is switched on or off, sorted by time. Times are femtoseconds; negative ones are
/// times like any other. An empty list is a stimulator that is off for ever.
///
/// The text form is a list of times such as "10ns;20ns;30ns": on, off, on.
class TESK_API CStimState {
public:
    CStimState() = default;
    /// Copies the list and the place in it.
    CStimState(const CStimState &other) = default;
    CStimState &operator=(const CStimState &other) = default;
    ~CStimState() = default;

    /// Adds the times of a text, in turns on and off, to the list as it is. A time without a unit is in "ps". A piece
    /// that is no time is skipped and takes no turn.
    /// @return false for a null text, or if memory runs out
    bool Create(const char *text);

    /// Enters a change. What repeats the state before it is left out; so is switching off in an empty list, or as the
    /// only change. Without memory nothing is entered.
    ///
    /// Deliberate: the entry behind the new one is not looked at and may come to repeat its state.
    void Add(long long time, bool state);

    /// Writes the text form. Deliberate: each time is cut to a whole number of the coarsest unit in which it reaches 1,
    /// so 1500 ps are written "1ns". Times of an hour or more are written in "min", negative ones in "fs".
    /// @param buffer  null asks for the size; otherwise it has room for one byte at least, and is left empty on failure
    /// @param size    bytes in `buffer`
    /// @return bytes of the text with its terminator; 0 for an empty list, and if `size` is too small
    unsigned Store(char *buffer, unsigned size);

    /// Starts a walk through the times. @return the first one, -1 if there is none
    long long FirstState();
    /// @return the next time of the walk, -1 at its end and if no walk has been started
    long long NextState();

private:
    TESK_LOCAL void Enter(long long time, bool state);

    std::map<long long, bool> m_states;  // time to the state from then on
    // The time that NextState gives, nothing at the end of a walk. A time and not a place in the map: so it holds in a
    // copy too, and when the entry goes away the walk continues with the one behind it.
    std::optional<long long> m_cursor;
};
