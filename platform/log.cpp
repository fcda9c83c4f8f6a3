#include "platform/log.h"

#include <cstdio>

namespace {

void (*g_sink)(void *context, int level, const char *category, const char *text) = nullptr;
void *g_sinkContext = nullptr;

const char *LevelName(int level)
{
    switch (level) {
    case 1: return "error";
    case 2: return "warning";
    default: return "note";
    }
}

}  // namespace

void Q71log_PrintFormattedString(int level, const char *category, const char *source, const char *text)
{
    category = category != nullptr ? category : "";
    text = text != nullptr ? text : "";
    if (g_sink != nullptr) {
        g_sink(g_sinkContext, level, category, text);
        return;
    }
    const bool hasSource = source != nullptr && *source != 0;
    std::fprintf(stderr, "%s: %s: %s%s%s\n", category, LevelName(level), hasSource ? source : "", hasSource ? ": " : "",
                 text);
}

void Q71log_SetSink(void (*sink)(void *context, int level, const char *category, const char *text), void *context)
{
    g_sink = sink;
    g_sinkContext = context;
}
