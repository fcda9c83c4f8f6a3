#include "tools/play/recorder.h"

#include <algorithm>
#include <string>
#include <utility>

#include "tools/commandline.h"

namespace tesk {

namespace {

constexpr std::size_t SinkChanges = 65536;    // that a sink takes at a time
constexpr std::size_t MostBytes = 256 << 20;  // of their values

}  // namespace

bool CChangeRecorder::IsFull() const
{
    return m_held >= SinkChanges;
}

void CChangeRecorder::Drain(std::vector<SChange> &changes, const CChangeSink &sink)
{
    if (changes.size() < 2)
        return;
    SChange last = std::move(changes.back());
    changes.pop_back();
    sink(changes);
    changes.clear();
    m_held = 1;
    m_bytes = last.value ? last.value->size() : 0;
    changes.push_back(std::move(last));
}

void CChangeRecorder::Count(const SChange &change)
{
    ++m_held;
    if (m_held > m_most)
        throw CRefusal("more than " + std::to_string(m_most) + " changes; " + m_advice);
    m_bytes += change.value ? change.value->size() : 0;
    if (m_bytes > MostBytes)
        throw CRefusal("the values of the changes have more than " + std::to_string(MostBytes >> 20) +
                       " MiB; give an earlier end with --until");
}

void CChangeRecorder::TakeBack(std::vector<SChange> &changes)
{
    m_bytes -= changes.back().value ? changes.back().value->size() : 0;
    --m_held;
    changes.pop_back();
}

std::vector<SChange> CChangeRecorder::Copy(const std::vector<SChange> &changes)
{
    for (const SChange &change : changes)
        Count(change);
    return changes;
}

void CChangeRecorder::Add(std::vector<SChange> &changes, SChange change, long long from)
{
    if (change.ticks <= from && !changes.empty())
        TakeBack(changes);  // is not in force where the shown stretch begins
    Count(change);
    change.ticks = std::max(change.ticks, from);
    changes.push_back(std::move(change));
}

}  // namespace tesk
