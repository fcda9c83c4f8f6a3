#include "tools/loglines.h"

#include <utility>

#include "platform/log.h"
#include "tools/message.h"

namespace {

CLogLines *g_innermost = nullptr;

}  // namespace

CLogLines::CLogLines(EWarnings warnings, EErrors errors)
    : m_warnings(warnings), m_errors(errors), m_outer(std::exchange(g_innermost, this))
{
    Q71log_SetSink(Take, this);
}

CLogLines::~CLogLines()
{
    g_innermost = m_outer;
    Q71log_SetSink(m_outer != nullptr ? Take : nullptr, m_outer);
}

void CLogLines::Take(void *context, int level, const char *, const char *text)
{
    constexpr int Error = 1;
    auto &lines = *static_cast<CLogLines *>(context);
    if (level == Error)
        lines.m_lastError = text;
    if (level == Error && lines.m_errors == EErrors::Shown)
        TellRefusal(text);
    else if (level != Error && lines.m_warnings == EWarnings::Shown)
        TellWarning(text);
}
