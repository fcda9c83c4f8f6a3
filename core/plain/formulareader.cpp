#include "core/plain/formulareader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "base/ascii.h"
#include "base/wrap.h"
#include "core/plain/tokenviews.h"
#include "platform/crt.h"
#include "settings/text/views.h"

using namespace tesk;

namespace {

bool IsSwitch(std::string_view token, std::string_view name)
{
    return token.size() == name.size() && _strnicmp(token.data(), name.data(), name.size()) == 0;
}

bool TakeAbsoluteMark(std::string_view &time)
{
    if (!time.starts_with('@'))
        return false;
    time.remove_prefix(1);
    return true;
}

// At most so many digits are a whole number that a double holds, and of which the sum of the digits is exact.
constexpr std::size_t MostPlainDigits = 15;

// A time of digits and perhaps a unit, which is what nearly all are, as `TextToTime` reads it. @return false for any other
bool ReadPlainTime(std::string_view text, double &value, int &unit)
{
    long long number = 0;
    std::size_t digits = 0;
    for (; digits < text.size() && IsDigit(text[digits]); ++digits) {
        if (digits == MostPlainDigits)
            return false;
        number = number * 10 + (text[digits] - '0');
    }
    std::array<char, 4> name{};  // no unit is longer
    const std::string_view rest = text.substr(digits);
    if (digits == 0 || rest.size() >= name.size())
        return false;
    std::ranges::copy(rest, name.begin());
    unit = tesk::UnitIDFromName(name.data());
    value = static_cast<double>(number);
    return unit >= 0 || rest.empty();
}

// The time whose number, already taken, may have its unit at the front of the chunk. One that cannot be read is 0. A unit
// may stand apart, "10 ns". It is only peeked at: in "1 5 xx" the word is the next value.
STimeValue ReadTime(std::string_view number, CChunkTokens &chunk)
{
    const std::string word(chunk.Peek());
    const bool isUnitApart = !word.empty() && tesk::UnitIDFromName(word.c_str()) >= 0;
    double value = 0.0;
    int unit = -1;
    if (isUnitApart || !ReadPlainTime(number, value, unit)) {
        value = 0.0;
        unit = -1;
        tesk::TextToTime((std::string(number) + (isUnitApart ? word : "")).c_str(), &value, &unit);
    }
    if (isUnitApart)
        chunk.Take();
    unit = UnitOrDefault(unit);
    STimeValue time;
    time.SetFromValue(value, unit, unit, g_simRes);
    return time;
}

}  // namespace

// Of two parts that were both read.
CStimulus::CFormulaReader::EReading CStimulus::CFormulaReader::Join(EReading left, EReading right)
{
    return left == EReading::Wide ? left : right;
}

CStimulus::CFormulaReader::EReading CStimulus::CFormulaReader::ReadFormula(std::string_view formula)
{
    EReading whole = EReading::Narrow;
    while (!formula.empty()) {
        CChunkTokens chunk(formula);
        const EReading reading = ReadChunk(chunk);
        if (reading == EReading::Refused)
            return reading;
        whole = Join(whole, reading);
        formula = chunk.Behind();
    }
    return m_stimulus.m_events.empty() ? EReading::Refused : whole;
}

CStimulus::CFormulaReader::EReading CStimulus::CFormulaReader::ReadChunk(CChunkTokens &chunk)
{
    if (chunk.IsAtEnd())
        return EReading::Refused;
    EReading whole = EReading::Narrow;
    while (!chunk.IsAtEnd()) {
        const std::string_view token = chunk.Take();
        if (token.empty())
            continue;
        if (IsSwitch(token, "-r")) {
            ReadRepeat(chunk);
        } else if (IsSwitch(token, "-cancel")) {
            ReadCancel(chunk);
        } else {
            const EReading reading = ReadEvent(token, chunk);
            if (reading == EReading::Refused)
                return reading;
            whole = Join(whole, reading);
        }
    }
    return whole;
}

void CStimulus::CFormulaReader::ReadRepeat(CChunkTokens &chunk)
{
    const std::string_view number = chunk.Take();
    m_stimulus.m_repeat = ReadTime(number, chunk);
}

void CStimulus::CFormulaReader::ReadCancel(CChunkTokens &chunk)
{
    std::string_view number = chunk.Take();
    const bool absolute = TakeAbsoluteMark(number);
    STimeValue time = ReadTime(number, chunk);
    if (absolute) {
        m_stimulus.m_flags |= CancelAbsolute;
    } else {
        // Counts from the start time, not from the offset.
        time.m_ticks = tesk::WrapAdd(m_stimulus.m_startTime, time.m_ticks);
        time.m_unit = 0;
        time.m_value = tesk::WrapMultiply(time.m_ticks, g_simRes);
    }
    m_stimulus.m_cancel = time;
}

CStimulus::CFormulaReader::EReading CStimulus::CFormulaReader::ReadEvent(std::string_view value, CChunkTokens &chunk)
{
    std::string_view number = chunk.Take();
    if (IsSwitch(number, "-cancel")) {
        ReadCancel(chunk);
        number = {};
    }
    const bool hasTime = !number.empty();
    bool absolute = false;
    STimeValue time = STimeValue::Zero();
    if (hasTime) {
        absolute = TakeAbsoluteMark(number);
        time = ReadTime(number, chunk);
    }

    auto event = std::make_unique<CSimpleStimulus>();
    if (!event->Init(ValueText(value), time, m_stimulus.m_width, absolute, m_binaryValues, m_rawValues))
        return EReading::Refused;
    event->SetFlag(CSimpleStimulus::HasTime, hasTime);
    const bool wide = m_binaryValues && event->m_value.GetLength() > 1;
    AddEvent(std::move(event));
    return wide ? EReading::Wide : EReading::Narrow;
}

// Most formulas go to and fro between few values.
const SimpleString::CStr &CStimulus::CFormulaReader::ValueText(std::string_view value)
{
    for (const SimpleString::CStr &known : m_values) {
        if (std::string_view(known, static_cast<std::size_t>(known.GetLength())) == value)
            return known;
    }
    SimpleString::CStr &text = m_values[m_nextValue++ % m_values.size()];
    text = ToCStr(value);
    return text;
}

// Of two events at one time the later one wins, in the earlier one's place.
void CStimulus::CFormulaReader::AddEvent(std::unique_ptr<CSimpleStimulus> event)
{
    auto &events = m_stimulus.m_events;
    const long long time = event->GetTime();
    if (m_areTimesRising && (events.empty() || time > events.back()->GetTime())) {
        events.push_back(std::move(event));
        return;
    }
    FindPlaces();
    const auto [place, isNew] = m_places.try_emplace(time, events.size());
    if (isNew)
        events.push_back(std::move(event));
    else
        events[place->second] = std::move(event);
}

void CStimulus::CFormulaReader::FindPlaces()
{
    if (!std::exchange(m_areTimesRising, false))
        return;
    for (std::size_t i = 0; i < m_stimulus.m_events.size(); ++i)
        m_places.emplace(m_stimulus.m_events[i]->GetTime(), i);
}
