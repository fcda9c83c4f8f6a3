#include "platform/felvarbase.h"

namespace {

char g_hierarchySeparator = '.';
bool g_hierarchyCaseSensitive = true;

}  // namespace

char GetVHDLHierarchySeparator()
{
    return g_hierarchySeparator;
}

void SetVHDLHierarchySeparator(char separator)
{
    g_hierarchySeparator = separator;
}

bool IsHierarchyCaseSensitive()
{
    return g_hierarchyCaseSensitive;
}

void SetHierarchyCaseSensitive(bool sensitive)
{
    g_hierarchyCaseSensitive = sensitive;
}
