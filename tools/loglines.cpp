#include "tools/loglines.h"

#include <cstdio>

#include "platform/log.h"
#include "tools/quote.h"

CLogLines::CLogLines(EWarnings warnings) : m_warnings(warnings)
{
    Q71log_SetSink(Take, this);
}

CLogLines::~CLogLines()
{
    Q71log_SetSink(nullptr, nullptr);
}

void CLogLines::Take(void *context, int level, const char *, const char *text)
{
    constexpr int Error = 1;
    auto &lines = *static_cast<CLogLines *>(context);
    if (level == Error)
        lines.m_lastError = text;
    else if (lines.m_warnings == EWarnings::Shown)
        std::fprintf(stderr, "tesk: warning: %s\n", OneLine(text).c_str());
}
