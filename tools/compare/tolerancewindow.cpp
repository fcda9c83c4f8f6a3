#include "tools/compare/tolerancewindow.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "base/saturate.h"
#include "tools/compare/comparison.h"

namespace tesk {

namespace {

constexpr long long Never = std::numeric_limits<long long>::max();
constexpr long long BeforeAll = -1;  // no change has a time below 0

}  // namespace

CToleranceWindow::CToleranceWindow(const SComparePolicy &policy, EComparedKind kind, const CComparedRow &expected,
                                   const CComparedRow &got)
    : m_policy(policy), m_kind(kind)
{
    Append(BeforeAll, expected, got);
}

void CToleranceWindow::Append(long long begin, const CComparedRow &expected, const CComparedRow &got)
{
    if (m_end == m_states.size() && m_first > m_end / 2) {
        std::rotate(m_states.begin(), m_states.begin() + static_cast<std::ptrdiff_t>(m_first), m_states.end());
        m_end -= m_first;
        m_undecided -= m_first;
        m_first = 0;
    }
    if (m_end == m_states.size())
        m_states.emplace_back();
    SState &state = m_states[m_end++];
    state.begin = begin;
    state.expected.assign(expected);
    state.got.assign(got);
}

long long CToleranceWindow::EndOf(std::size_t state) const
{
    return state + 1 < m_end ? m_states[state + 1].begin : Never;
}

bool CToleranceWindow::Add(long long time, const CComparedRow &expected, const CComparedRow &got, SPairVerdict &verdict)
{
    Append(time, expected, got);
    bool isFirst = false;
    while (m_undecided + 1 < m_end && AddSaturating(EndOf(m_undecided), m_policy.tolerance - 1) <= time)
        isFirst = Decide(m_undecided++, verdict) || isFirst;
    Forget();
    return isFirst;
}

bool CToleranceWindow::Finish(SPairVerdict &verdict)
{
    bool isFirst = false;
    while (m_undecided < m_end)
        isFirst = Decide(m_undecided++, verdict) || isFirst;
    return isFirst;
}

// Collects the parts of a stretch that lie further than the tolerance from every state that matches.
template <class IsMatch>
void CToleranceWindow::FindGaps(const CStretch &stretch, const IsMatch &isMatch)
{
    long long covered = stretch.first;
    for (std::size_t i = m_first; i < m_end && covered < stretch.second; ++i) {
        const long long begin = m_states[i].begin - m_policy.tolerance;
        const long long end = AddSaturating(EndOf(i), m_policy.tolerance);
        if (begin >= stretch.second)
            break;
        if (end <= covered || !isMatch(m_states[i]))
            continue;
        if (begin > covered)
            m_gaps.emplace_back(covered, begin);
        covered = end;
    }
    if (covered < stretch.second)
        m_gaps.emplace_back(covered, stretch.second);
}

bool CToleranceWindow::Decide(std::size_t state, SPairVerdict &verdict)
{
    const SState &decided = m_states[state];
    const long long behind = m_policy.until ? AddSaturating(*m_policy.until, 1) : Never;
    const CStretch stretch(std::max(decided.begin, m_policy.from), std::min(EndOf(state), behind));
    if (stretch.first >= stretch.second || MatchesRow(m_policy, m_kind, decided.expected, decided.got))
        return false;
    m_gaps.clear();
    const std::size_t size = ElementSize(m_kind);
    for (std::size_t i = 0; i < decided.got.size(); i += size) {
        const char *const expected = decided.expected.data() + i;
        const char *const got = decided.got.data() + i;
        if (MatchesElement(m_policy, m_kind, expected, got))
            continue;
        FindGaps(stretch,
                 [&](const SState &near) { return MatchesElement(m_policy, m_kind, near.expected.data() + i, got); });
        FindGaps(stretch,
                 [&](const SState &near) { return MatchesElement(m_policy, m_kind, expected, near.got.data() + i); });
    }
    std::ranges::sort(m_gaps);
    // A change that comes too late is missed where it is expected, and again where its old value has lasted too long: less
    // than the tolerance lies between, and it is one difference.
    bool isFirst = false;
    for (std::size_t i = 0; i < m_gaps.size();) {
        const long long begin = m_gaps[i].first;
        long long end = m_gaps[i].second;
        for (; i < m_gaps.size() && m_gaps[i].first <= end; ++i)
            end = std::max(end, m_gaps[i].second);
        isFirst = verdict.Add(begin, end, m_policy.tolerance - 1, decided.expected, decided.got) || isFirst;
    }
    return isFirst;
}

// A state is needed while it ends within the tolerance in front of one that is not decided on.
void CToleranceWindow::Forget()
{
    while (m_undecided > m_first && m_states[m_first + 1].begin <= m_states[m_undecided].begin - m_policy.tolerance)
        ++m_first;
}

}  // namespace tesk
