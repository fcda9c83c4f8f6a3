#include "settings/stimstate.h"

#include <cstring>
#include <iterator>
#include <new>
#include <string>
#include <string_view>

#include "base/wrap.h"
#include "settings/text/fields.h"
#include "settings/timeunits.h"

using tesk::TimeUnit::Femtoseconds;
using tesk::TimeUnit::Minutes;

namespace {

constexpr char Separator = ';';

// Reads a time into femtoseconds.
std::optional<long long> ReadTime(std::string_view text)
{
    double value = 0.0;
    int unit = -1;
    if (!tesk::TextToTime(std::string(text).c_str(), &value, &unit))
        return std::nullopt;
    unit = tesk::UnitOrDefault(unit);
    return tesk::TruncateToInt64(tesk::ChangeTime(value, static_cast<unsigned>(unit), Femtoseconds));
}

std::string WriteTime(long long time)
{
    double value = static_cast<double>(time);
    int unit = Femtoseconds;
    tesk::ScaleNumber(&value, &unit);
    const char *name = tesk::UnitNameFromID(static_cast<unsigned>(unit));
    if (name != nullptr)
        return std::to_string(tesk::TruncateToInt64(value)) + name;
    // ScaleNumber leaves hours behind without a unit.
    return std::to_string(tesk::ChangeTime2(time, Femtoseconds, Minutes)) + tesk::UnitNameFromID(Minutes);
}

}  // namespace

bool CStimState::Create(const char *text)
try {
    if (text == nullptr)
        return false;
    bool state = true;
    std::string_view rest(text);
    while (const auto piece = tesk::TakeField(rest, Separator)) {
        const auto time = ReadTime(*piece);
        if (!time)
            continue;
        Enter(*time, state);
        state = !state;
    }
    return true;
} catch (const std::bad_alloc &) {
    return false;
}

void CStimState::Add(long long time, bool state)
try {
    Enter(time, state);
} catch (const std::bad_alloc &) {
}

unsigned CStimState::Store(char *buffer, unsigned size)
try {
    if (buffer != nullptr)
        *buffer = 0;
    if (m_states.empty())
        return 0;
    std::string text;
    for (const auto &[time, state] : m_states) {
        if (!text.empty())
            text += Separator;
        text += WriteTime(time);
    }
    const std::size_t needed = text.size() + 1;
    if (buffer == nullptr)
        return static_cast<unsigned>(needed);
    if (needed > size)
        return 0;
    std::memcpy(buffer, text.c_str(), needed);
    return static_cast<unsigned>(needed);
} catch (const std::bad_alloc &) {
    return 0;
}

long long CStimState::FirstState()
{
    m_cursor.reset();
    if (!m_states.empty())
        m_cursor = m_states.begin()->first;
    return NextState();
}

long long CStimState::NextState()
{
    if (!m_cursor)
        return -1;
    const auto current = m_states.lower_bound(*m_cursor);
    m_cursor.reset();
    if (current == m_states.end())
        return -1;
    const auto next = std::next(current);
    if (next != m_states.end())
        m_cursor = next->first;
    return current->first;
}

void CStimState::Enter(long long time, bool state)
{
    if (m_states.empty() && !state)
        return;
    const auto entry = m_states.insert_or_assign(time, state).first;
    if (entry != m_states.begin() && std::prev(entry)->second == state)
        m_states.erase(entry);
    if (m_states.size() == 1 && !m_states.begin()->second)
        m_states.clear();
}
