// CStimIterator walks the events of a stimulus.
#pragma once

#include "core/stimulus.h"

class CCustomEventCursor;

/// Walks the events of one stimulus, which it must not outlive.
///
/// The events of a plain formula come in the order in which it wrote them, once each. A stimulus that replays a file
/// is walked by time. Any other kind has nothing to walk.
class TESK_API CStimIterator {
public:
    /// @param stimulus  not owned; a null one has no events
    explicit CStimIterator(const IStimulus *stimulus);
    CStimIterator(const CStimIterator &) = delete;
    ~CStimIterator();

    /// Copies the fields as they stand. Deliberate: the copy shares the cursor, so while it holds one exactly one of
    /// the two iterators may be destroyed; and what this iterator held before is given up without being freed.
    CStimIterator &operator=(const CStimIterator &other);

    /// The next event, owned by the stimulus or the iterator; null at the end. Of a stimulus that replays a file the
    /// event is overwritten by the following `Next`, and its `GetTime` means nothing: read its `GetTimeString`.
    /// After null, such a walk begins again.
    ISimpleStimulus *Next();

    /// Begins the walk again.
    void Reset();

private:
    const IStimulus *m_stimulus;
    CCustomEventCursor *m_cursor = nullptr;  // owned; only for a stimulus that replays a file
    unsigned m_position = 0;                 // the next event of a plain formula
};
