// What a replayed signal does, worked out step by step with plain scans: the independent computation that the stimuli
// are compared with.
#pragma once

#include <optional>
#include <string>

#include "settings/timeunits.h"
#include "waveform/replay/replayedfiles.h"

/// Works from numbers that are small enough for every step to be exact.
class CReplayModel {
public:
    explicit CReplayModel(const SReplay &replay);

    /// Whether the formula can be used.
    bool IsGood() const { return m_isGood; }
    long long Map(long long time) const;
    long long Next(long long time) const;
    /// The text of the value; empty optional for none.
    std::optional<std::string> Value(long long time) const;

private:
    long long Ticks(const std::string &time) const;
    long long FileTicks(long long place) const;
    long long SimTicks(long long count) const;
    bool Init();
    std::optional<long long> NextPosition(long long fileTime, bool &never) const;

    const SReplay m_replay;
    long long m_scale = 1;
    int m_unit = 0;
    long long m_start = 0, m_end = 0, m_offset = 0, m_repeat = 0, m_cancel = 0;
    bool m_isGood;
};

inline CReplayModel::CReplayModel(const SReplay &replay) : m_replay(replay)
{
    for (m_scale = replay.fileRes; m_scale > 0 && m_scale % 1000 == 0 && m_unit < 5; m_scale /= 1000)
        ++m_unit;
    m_isGood = Init();
}

inline long long CReplayModel::Ticks(const std::string &time) const
{
    STimeValue value;
    ParseTimeArgument(time.c_str(), m_replay.simRes, value, -1);
    return value.m_ticks;
}

inline long long CReplayModel::FileTicks(long long place) const
{
    return place * m_replay.simRes / m_replay.fileRes;
}

inline long long CReplayModel::SimTicks(long long count) const
{
    STimeValue value;
    value.SetFromValue(static_cast<double>(count), m_unit, m_unit, m_replay.simRes);
    return value.m_ticks;
}

inline bool CReplayModel::Init()
{
    const bool isStream = m_replay.kind == EFileKind::Stream;
    const auto compared = [this](const std::string &text) {
        STimeValue value;
        value.SetFromTicks(0, m_replay.simRes);
        value.m_displayUnit = static_cast<std::uint16_t>(m_unit);
        ParseTimeArgument(text.c_str(), m_replay.simRes, value, m_unit);
        return m_replay.kind == EFileKind::Vcd ? value.GetInDisplayUnit() : value.m_ticks;
    };
    m_start = m_replay.start.empty() ? 0 : Ticks(m_replay.start);
    if (isStream ? compared(m_replay.start) > m_replay.fileEnd : compared(m_replay.start) >= m_replay.fileEnd)
        return false;
    if (m_replay.end.empty())
        m_end = SimTicks(m_replay.kind == EFileKind::Vcd ? m_replay.fileEnd : m_scale * m_replay.fileEnd);
    else if (m_end = Ticks(m_replay.end); compared(m_replay.end) >= m_replay.fileEnd)
        return false;
    if (isStream ? m_start > m_end : m_start >= m_end)
        return false;
    const auto point = [this](const std::string &text) {
        return text[0] == '@' ? Ticks(text.substr(1)) : m_replay.now + Ticks(text);
    };
    m_offset = point(m_replay.offset);
    m_cancel = m_replay.cancel.empty() ? 0 : point(m_replay.cancel);
    m_repeat = Ticks(m_replay.repeat);
    return true;
}

inline long long CReplayModel::Map(long long time) const
{
    time = time < 0 ? 0 : time;
    if ((m_cancel != 0 && time >= m_cancel) || time < m_offset)
        return -1;
    const long long r = m_repeat != 0 ? (time - m_offset) % m_repeat : time - m_offset;
    return m_start + r > m_end ? -1 : FileTicks(m_start + r);
}

// Where in the stretch the next change stands; none for the next period.
inline std::optional<long long> CReplayModel::NextPosition(long long fileTime, bool &never) const
{
    const CFileEvents &events = m_replay.events;
    const auto isBehind = [fileTime](const NTARN::SFileEvent &event) { return event.time > fileTime; };
    const auto next = std::find_if(events.begin(), events.end(), isBehind);
    const bool isDatabase = m_replay.kind == EFileKind::Database;
    long long change = 0;
    if (isDatabase) {
        if (events.empty() || events.back().time < fileTime)
            return m_end - m_start;
        if (next == events.end() && m_repeat != 0)
            return std::nullopt;
        change = SimTicks(next == events.end() ? m_end : m_scale * next->time);
    } else {
        const bool isBefore = events.empty() || events.front().time > fileTime;
        never = m_replay.kind == EFileKind::Vcd && events.empty();
        if (next == events.end() || (m_replay.kind == EFileKind::Stream && isBefore))
            return std::nullopt;
        change = SimTicks(m_scale * next->time);
    }
    if (change > m_end && (!isDatabase || m_repeat != 0))
        return std::nullopt;
    if (m_repeat != 0 && change - m_start >= m_repeat)
        return std::nullopt;
    return change - m_start;
}

inline long long CReplayModel::Next(long long time) const
{
    time = time < 0 ? 0 : time;
    const auto cancelled = [this](long long next) { return m_cancel != 0 && next >= m_cancel; };
    if (cancelled(time))
        return -1;
    if (time < m_offset)
        return cancelled(m_offset) ? -1 : m_offset;
    const long long r = m_repeat != 0 ? (time - m_offset) % m_repeat : time - m_offset;
    std::optional<long long> position;
    bool never = false;
    if (m_start + r < m_end)
        position = NextPosition(FileTicks(m_start + r), never);
    if (!position && m_repeat != 0 && !never)
        position = m_repeat;
    if (!position)
        return -1;
    const long long next = time + (*position - r);
    return cancelled(next) ? -1 : next;
}

inline std::optional<std::string> CReplayModel::Value(long long time) const
{
    const long long fileTime = Map(time);
    if (fileTime < 0)
        return std::nullopt;
    const CFileEvents &events = m_replay.events;
    if (events.empty() && m_replay.kind == EFileKind::Vcd)
        return "0";
    if (m_replay.kind == EFileKind::Stream && (events.empty() || events.front().time > fileTime))
        return std::nullopt;
    const auto round = [this](long long t) {
        return static_cast<long long>(static_cast<double>(t) * static_cast<double>(m_replay.fileRes) /
                                          static_cast<double>(m_replay.simRes) +
                                      0.5);
    };
    std::optional<std::string> value;
    for (const NTARN::SFileEvent &event : events) {
        const bool isReached =
            m_replay.kind == EFileKind::Stream ? round(event.time) <= round(fileTime) : event.time <= fileTime;
        if (isReached)
            value = std::to_string(static_cast<int>(event.value));
    }
    return value;
}
