#include "base/extendedid.h"

namespace tesk {

std::size_t ExtendedLength(std::string_view name)
{
    if (!name.starts_with('\\'))
        return 0;
    std::size_t closer = name.find('\\', 1);
    while (closer != std::string_view::npos && closer + 1 < name.size() && name[closer + 1] == '\\')
        closer = name.find('\\', closer + 2);
    return closer != std::string_view::npos ? closer + 1 : 0;
}

}  // namespace tesk

const char *SkipExtendedID(const char *text)
{
    if (text == nullptr || *text != '\\')
        return text;
    const std::string_view name = text;
    const std::size_t length = tesk::ExtendedLength(name);
    return text + (length != 0 ? length : name.size());
}
