#include "base/extendedid.h"

#include <cstring>

const char *SkipExtendedID(const char *text)
{
    if (text == nullptr || *text != '\\')
        return text;
    const char *end = std::strchr(text + 1, '\\');
    while (end != nullptr && end[1] == '\\')
        end = std::strchr(end + 2, '\\');
    return end != nullptr ? end + 1 : text + std::strlen(text);
}
