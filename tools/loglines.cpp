#include "tools/loglines.h"

#include <cstddef>
#include <set>
#include <string>
#include <utility>

#include "platform/log.h"
#include "tools/message.h"

namespace {

CLogLines *g_innermost = nullptr;

// A file may be read more than once, and each time it is found as it is.
bool IsNewWarning(const std::string &text)
{
    constexpr std::size_t MostKept = 1000;
    static std::set<std::string> s_told;
    return s_told.size() < MostKept ? s_told.insert(text).second : !s_told.contains(text);
}

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
    else if (level != Error && lines.m_warnings == EWarnings::Shown && IsNewWarning(text))
        TellWarning(text);
}
