// C run-time extras of the suite's first platform, for platforms that lack them.
#pragma once

#if !defined(_WIN32)

#include <strings.h>

#include <cstdlib>
#include <cstring>

/// Compares two texts ignoring case, as `strcmp` otherwise. Neither may be null.
inline int _stricmp(const char *left, const char *right)
{
    return strcasecmp(left, right);
}

/// As `_stricmp` over at most `count` bytes.
inline int _strnicmp(const char *left, const char *right, std::size_t count)
{
    return strncasecmp(left, right, count);
}

/// A copy of a text, to be given up with `free`; null without memory.
inline char *_strdup(const char *text)
{
    return strdup(text);
}

/// Reads a decimal integer as `atoi` does. A number that does not fit becomes the nearest limit.
inline long long _atoi64(const char *text)
{
    return std::strtoll(text, nullptr, 10);
}

#endif
