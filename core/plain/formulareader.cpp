#include "core/plain/formulareader.h"

#include <memory>
#include <utility>

#include "base/wrap.h"
#include "core/plain/tokenviews.h"
#include "platform/crt.h"
#include "settings/text/views.h"

using namespace tesk;

namespace {

std::string_view TakeWord(std::string_view &rest)
{
    return TakeToken(rest, ParserOpen, ParserClose, TokenBlanks);
}

bool IsSwitch(std::string_view token, std::string_view name)
{
    return token.size() == name.size() && _strnicmp(token.data(), name.data(), name.size()) == 0;
}

// A unit may stand apart, "10 ns". It is only peeked at: in "1 5 xx" the word is the next value.
void AppendUnit(std::string &number, std::string_view &rest)
{
    std::string_view behind = rest;
    const std::string word(TakeWord(behind));
    if (tesk::UnitIDFromName(word.c_str()) < 0)
        return;
    number += word;
    rest = behind;
}

bool TakeAbsoluteMark(std::string_view &time)
{
    if (!time.starts_with('@'))
        return false;
    time.remove_prefix(1);
    return true;
}

// The time whose number, already taken, may have its unit at the front of `rest`. One that cannot be read is 0.
STimeValue ReadTime(std::string_view numberToken, std::string_view &rest)
{
    std::string number(numberToken);
    AppendUnit(number, rest);
    double value = 0.0;
    int unit = -1;
    tesk::TextToTime(number.c_str(), &value, &unit);
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
        const std::string chunk =
            TakeChunk(formula, ",", ParserOpen, ParserClose, TokenBlanks, EJoin::BehindEveryToken);
        const EReading reading = ReadChunk(chunk);
        if (reading == EReading::Refused)
            return reading;
        whole = Join(whole, reading);
    }
    return m_stimulus.m_events.empty() ? EReading::Refused : whole;
}

CStimulus::CFormulaReader::EReading CStimulus::CFormulaReader::ReadChunk(std::string_view chunk)
{
    if (chunk.empty())
        return EReading::Refused;
    EReading whole = EReading::Narrow;
    while (!chunk.empty()) {
        const std::string_view token = TakeWord(chunk);
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

void CStimulus::CFormulaReader::ReadRepeat(std::string_view &rest)
{
    const std::string_view number = TakeWord(rest);
    m_stimulus.m_repeat = ReadTime(number, rest);
}

void CStimulus::CFormulaReader::ReadCancel(std::string_view &rest)
{
    std::string_view number = TakeWord(rest);
    const bool absolute = TakeAbsoluteMark(number);
    STimeValue time = ReadTime(number, rest);
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

CStimulus::CFormulaReader::EReading CStimulus::CFormulaReader::ReadEvent(std::string_view value, std::string_view &rest)
{
    std::string_view number = TakeWord(rest);
    if (IsSwitch(number, "-cancel")) {
        ReadCancel(rest);
        number = {};
    }
    const bool hasTime = !number.empty();
    bool absolute = false;
    STimeValue time = STimeValue::Zero();
    if (hasTime) {
        absolute = TakeAbsoluteMark(number);
        time = ReadTime(number, rest);
    }

    auto event = std::make_unique<CSimpleStimulus>();
    const SimpleString::CStr text = ToCStr(value);
    if (!event->Init(text, time, m_stimulus.m_width, absolute, m_binaryValues, m_rawValues))
        return EReading::Refused;
    event->SetFlag(CSimpleStimulus::HasTime, hasTime);
    const bool wide = m_binaryValues && event->m_value.GetLength() > 1;
    AddEvent(std::move(event));
    return wide ? EReading::Wide : EReading::Narrow;
}

// Of two events at one time the later one wins, in the earlier one's place.
void CStimulus::CFormulaReader::AddEvent(std::unique_ptr<CSimpleStimulus> event)
{
    auto &events = m_stimulus.m_events;
    const auto [place, isNew] = m_places.try_emplace(event->GetTime(), events.size());
    if (isNew)
        events.push_back(std::move(event));
    else
        events[place->second] = std::move(event);
}
