#include "tools/progress.h"

#include <cstdio>

#include "tools/output.h"

namespace tesk {

CProgressLine::CProgressLine(const char *label) : m_label(label), m_isShown(IsErrorTerminal()) {}

CProgressLine::~CProgressLine()
{
    if (m_number >= 0)
        std::fputs("\r\x1B[K", stderr);
}

void CProgressLine::Show(long long done, long long total)
{
    constexpr unsigned Calls = 1024;  // between two looks at the clock
    if (m_isShown && m_calls++ % Calls == 0)
        ShowNow(done, total);
}

void CProgressLine::ShowNow(long long done, long long total)
{
    if (IsLong())
        Draw(total > 0 ? static_cast<int>(100.0 * static_cast<double>(done) / static_cast<double>(total)) : 0, "%");
}

void CProgressLine::ShowBytes(long long done)
{
    if (IsLong())
        Draw(static_cast<int>(done >> 20), "MiB");
}

bool CProgressLine::IsLong() const
{
    return m_isShown && std::chrono::steady_clock::now() - m_begin >= std::chrono::seconds(1);
}

void CProgressLine::Draw(int number, const char *unit)
{
    if (number == m_number)
        return;
    m_number = number;
    std::fprintf(stderr, "\r%s: %d %s", m_label, number, unit);
}

}  // namespace tesk
