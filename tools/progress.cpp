#include "tools/progress.h"

#include <cstdio>

#include "tools/output.h"

namespace tesk {

CProgressLine::CProgressLine(const char *label) : m_label(label), m_isShown(IsErrorTerminal()) {}

CProgressLine::~CProgressLine()
{
    if (m_percent >= 0)
        std::fputs("\r\x1B[K", stderr);
}

void CProgressLine::Show(long long done, long long total)
{
    constexpr unsigned Calls = 1024;  // between two looks at the clock
    if (m_isShown && m_calls++ % Calls == 0)
        Draw(done, total);
}

void CProgressLine::Draw(long long done, long long total)
{
    const auto passed = std::chrono::steady_clock::now() - m_begin;
    const int percent =
        total > 0 ? static_cast<int>(100.0 * static_cast<double>(done) / static_cast<double>(total)) : 0;
    if (passed < std::chrono::seconds(1) || percent == m_percent)
        return;
    m_percent = percent;
    std::fprintf(stderr, "\r%s: %d %%", m_label, percent);
}

}  // namespace tesk
