#include "tools/compare/comparison.h"

#include <algorithm>
#include <utility>

#include "tools/compare/tolerancewindow.h"

namespace tesk {

bool SPairVerdict::Add(long long begin, long long end, long long apart, const CComparedRow &expected,
                       const CComparedRow &got)
{
    const bool isFirst = !first;
    if (isFirst)
        first = {begin, expected, got};
    if (isFirst || begin - lastEnd > apart)
        ++stretches;
    lastEnd = end;
    return isFirst;
}

CComparison::CComparison(const SComparePolicy &policy) : m_policy(policy) {}
CComparison::CComparison(CComparison &&) noexcept = default;
CComparison::~CComparison() = default;

std::size_t CComparison::AddPair(const SComparedForm &form)
{
    SPair pair;
    pair.form = form;
    pair.expected = pair.got = EmptyRow(form, m_policy);
    if (m_policy.tolerance > 0)
        pair.window = std::make_unique<CToleranceWindow>(m_policy, form.kind, pair.expected, pair.got);
    m_pairs.push_back(std::move(pair));
    return m_pairs.size() - 1;
}

void CComparison::Touch(std::size_t pair)
{
    m_pairs[pair].isTouched = true;
    m_touched.push_back(pair);
}

void CComparison::MoveTo(long long time)
{
    if (time <= m_now)
        return;
    Settle();
    if (!m_hasBegun && time > m_policy.from)
        Begin();
    m_now = time;
}

// What all changes at one time have made of the pairs.
void CComparison::Settle()
{
    for (const std::size_t pair : m_touched)
        SettlePair(m_pairs[pair]);
    m_touched.clear();
}

void CComparison::SettlePair(SPair &pair)
{
    pair.isTouched = false;
    if (pair.window != nullptr) {
        if (pair.window->Add(m_now, pair.expected, pair.got, pair.verdict) && m_sink)
            m_sink(static_cast<std::size_t>(&pair - m_pairs.data()));
        return;
    }
    const bool differed = std::exchange(pair.differs, !MatchesRow(m_policy, pair.form.kind, pair.expected, pair.got));
    if (pair.differs && !differed && m_hasBegun)
        Note(pair, m_now);
}

// A pair that differs where the comparison begins.
void CComparison::Begin()
{
    m_hasBegun = true;
    for (SPair &pair : m_pairs) {
        if (pair.differs)
            Note(pair, m_policy.from);
    }
}

// Without a tolerance a stretch is noted where it begins: the next one has a gap in front.
void CComparison::Note(SPair &pair, long long begin)
{
    if (IsIn(begin) && pair.verdict.Add(begin, begin, -1, pair.expected, pair.got) && m_sink)
        m_sink(static_cast<std::size_t>(&pair - m_pairs.data()));
}

void CComparison::EndAt(long long last)
{
    m_policy.until = std::min(last, m_policy.until.value_or(last));
    for (SPair &pair : m_pairs) {
        if (pair.window != nullptr)
            pair.window->EndAt(*m_policy.until);
    }
}

void CComparison::Finish(long long last)
{
    EndAt(last);
    Settle();
    if (!m_hasBegun && *m_policy.until >= m_policy.from)
        Begin();
    for (SPair &pair : m_pairs) {
        if (pair.window != nullptr && pair.window->Finish(pair.verdict) && m_sink)
            m_sink(static_cast<std::size_t>(&pair - m_pairs.data()));
    }
}

}  // namespace tesk
