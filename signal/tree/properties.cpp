#include "signal/tree/properties.h"

#include <string>

#include "base/wrap.h"

namespace tesk {

const char *CPropertyTable::Find(const char *name) const
{
    if (name == nullptr)
        return nullptr;
    const auto entry = m_texts.find(name);
    return entry != m_texts.end() ? static_cast<const char *>(entry->second) : nullptr;
}

int CPropertyTable::GetNumber(const char *name, int byDefault) const
{
    const char *text = Find(name);
    return text != nullptr ? ReadInt(text) : byDefault;
}

void CPropertyTable::Set(const char *name, const SimpleString::CStr &text)
{
    if (const auto entry = m_texts.find(name); entry != m_texts.end())
        entry->second = text;
    else
        m_texts.emplace(name, text);
}

void CPropertyTable::SetNumber(const char *name, int number)
{
    Set(name, std::to_string(number).c_str());
}

void CPropertyTable::Remove(const char *name)
{
    if (const auto entry = m_texts.find(name); entry != m_texts.end())
        m_texts.erase(entry);
}

}  // namespace tesk
