#include "tools/examine/plainexamination.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/wrap.h"
#include "platform/kestrin.h"
#include "tools/examine/formulaitems.h"
#include "tools/examine/valueexamination.h"
#include "tools/examine/wordexamination.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

using EKind = SFormulaItem::EKind;

// Of each word by itself.
class CWordsExaminer {
public:
    CWordsExaminer(const SExamined &examined, CFindings &findings)
        : m_type(examined.type.c_str()), m_resolution(examined.resolution), m_findings(findings)
    {}

    void Examine(const std::vector<SFormulaItem> &items)
    {
        for (std::size_t i = 0; i < items.size(); ++i) {
            const bool isFirst = i == 0;
            switch (items[i].kind) {
            case EKind::Event:
                if (!isFirst && IsDecimalComma(items[i - 1], items[i]))
                    KeepDecimalComma(items[i - 1], items[i]);
                else
                    ExamineEvent(items[i], isFirst);
                break;
            case EKind::Repeat: ExamineSwitch(items[i], "-r"); break;
            case EKind::Cancel: ExamineSwitch(items[i], "-cancel"); break;
            }
        }
    }

private:
    void Keep(std::optional<SFinding> finding)
    {
        if (finding)
            m_findings.push_back(*std::move(finding));
    }

    // "0 1,5ns": a number without a unit, a comma and a time without blanks between.
    static bool IsDecimalComma(const SFormulaItem &before, const SFormulaItem &event)
    {
        if (!before.time || before.time->hasUnit || !before.time->hasNumber || event.time)
            return false;
        const std::string_view number = before.time->word.text, fraction = event.word.text;
        return number.data() + number.size() + 1 == fraction.data() && fraction.front() >= '0' &&
               fraction.front() <= '9' && ReadFormulaTime(event.word, 1).hasUnit;
    }

    void KeepDecimalComma(const SFormulaItem &before, const SFormulaItem &event)
    {
        const std::string number(before.time->word.text), fraction(event.word.text);
        Keep(FindingAt(event.word, ESeverity::Error,
                       Quote(number + "," + fraction) + " is parted at its comma, and " + Quote(fraction) +
                           " is taken as a value",
                       "write " + number + "." + fraction));
    }

    void ExamineEvent(const SFormulaItem &event, bool isFirst)
    {
        const bool isOdd = ExamineEventValue(event);
        if (event.time)
            Keep(ExamineTimeWord(*event.time, "", m_resolution));
        else if (!isFirst && !isOdd)
            Keep(FindingAt(event.word, ESeverity::Warning,
                           Quote(std::string(event.word.text)) + " has no time, and counts from 0",
                           "write VALUE TIME"));
    }

    // Deliberate: a word that the type has a place for is right, whatever it looks like.
    bool ExamineEventValue(const SFormulaItem &event)
    {
        const SFormulaWord &value = event.word;
        const bool isJudged = KindOf(m_type) != Kestrin::ETypeKind::Invalid;
        const auto fault = isJudged ? ExamineValue(value.text, m_type) : std::nullopt;
        if (isJudged && !fault)
            return false;
        if (auto finding = ExamineValueWord(event)) {
            m_findings.push_back(*std::move(finding));
            return true;
        }
        if (!fault)
            return false;
        m_findings.push_back(
            FindingAt(value, fault->isError ? ESeverity::Error : ESeverity::Warning, fault->text, fault->advice));
        return true;
    }

    void ExamineSwitch(const SFormulaItem &item, const std::string &name)
    {
        if (!item.time) {
            Keep(FindingAt(item.word, ESeverity::Error, name + " has no time, and is ignored",
                           "write " + name + " TIME"));
            return;
        }
        if (auto finding = ExamineTimeWord(*item.time, name, m_resolution)) {
            m_findings.push_back(*std::move(finding));
            return;
        }
        const long long ticks = item.time->value.m_ticks;
        if (item.kind == EKind::Repeat && ticks <= 0)
            Keep(FindingAt(item.time->word, ESeverity::Error,
                           ticks < 0 ? "a period below 0 makes every tick a change" : "a period of 0 is ignored",
                           "give -r a time above 0"));
        if (item.kind == EKind::Cancel && ticks <= 0)
            Keep(FindingAt(item.time->word, ESeverity::Error,
                           ticks < 0 ? "a cancel time below 0 ends the stimulator before it starts"
                                     : "a cancel time of 0 is ignored",
                           "give -cancel a time above 0"));
    }

    Kestrin::KTypeInfo m_type;
    long long m_resolution;
    CFindings &m_findings;
};

// Of the events against one another, the period and the cancel time.
class CTimesExaminer {
public:
    CTimesExaminer(const SExamined &examined, const std::vector<SFormulaItem> &items, CFindings &findings)
        : m_start(examined.start), m_resolution(examined.resolution), m_items(items), m_findings(findings)
    {}

    void Examine()
    {
        ReadSwitches();
        for (const SFormulaItem &item : m_items) {
            if (item.kind == EKind::Event && !IsUnread(item))
                ExamineEvent(item);
        }
    }

private:
    static long long TicksOf(const SFormulaItem &item) { return item.time ? item.time->value.m_ticks : 0; }
    static bool IsAbsolute(const SFormulaItem &item) { return item.time && item.time->isAbsolute; }
    // What cannot be read has a finding of its own.
    static bool IsUnread(const SFormulaItem &item)
    {
        return item.time && !(item.time->isReadable && item.time->hasNumber);
    }

    void ReadSwitches()
    {
        for (const SFormulaItem &item : m_items) {
            if (item.kind == EKind::Repeat)
                m_period = TicksOf(item);
            else if (item.kind == EKind::Cancel)
                m_cancel = IsAbsolute(item) || !item.time ? TicksOf(item) : WrapAdd(m_start, TicksOf(item));
            else if (!m_offset && !IsAbsolute(item))
                m_offset = std::max(TicksOf(item), 0LL);
        }
    }

    void Warn(const SFormulaItem &item, const std::string &why, const std::string &advice = "")
    {
        m_findings.push_back(FindingAt(
            item.word, ESeverity::Warning,
            Quote(std::string(item.word.text)) + " at " + TickText(TicksOf(item), m_resolution) + " " + why, advice));
    }

    void ExamineEvent(const SFormulaItem &event)
    {
        const long long ticks = TicksOf(event);
        if (ticks < 0)
            return;  // refused as a whole
        const auto [place, isNew] = m_places.try_emplace(ticks, &event);
        if (!isNew) {
            Warn(event, "has the time of " + Quote(std::string(place->second->word.text)) + ", which is not played",
                 "of two values at one time the later one counts");
            place->second = &event;
        }
        const long long offset = m_offset.value_or(0);
        const bool isAbsolute = IsAbsolute(event);
        const long long when = isAbsolute ? ticks : WrapAdd(m_start, ticks);
        if (isAbsolute && ticks < m_start)
            Warn(event, "lies before the start", "");
        else if (!isAbsolute && ticks < offset)
            Warn(event, "lies before the first event, with which the formula begins, and is not played",
                 "write the events in the order of their times");
        else if (!isAbsolute && m_period > 0 && ticks - offset >= m_period)
            Warn(event, "lies behind the period of " + TickText(m_period, m_resolution) + ", and is not played",
                 "give -r a longer time");
        else if (m_cancel > 0 && when >= m_cancel)
            Warn(event, "is not before the cancel time, and is not played");
    }

    long long m_start;
    long long m_resolution;
    const std::vector<SFormulaItem> &m_items;
    CFindings &m_findings;
    long long m_period = 0;
    long long m_cancel = 0;             // ticks from 0; 0 for none
    std::optional<long long> m_offset;  // of the first relative event
    std::map<long long, const SFormulaItem *> m_places;
};

}  // namespace

void ExaminePlainFormula(const SExamined &examined, CFindings &findings)
{
    const std::vector<SFormulaItem> items = ReadFormulaItems(examined.formula, examined.resolution);
    CWordsExaminer(examined, findings).Examine(items);
    CTimesExaminer(examined, items, findings).Examine();
    std::ranges::stable_sort(findings, {}, &SFinding::column);
}

}  // namespace tesk
