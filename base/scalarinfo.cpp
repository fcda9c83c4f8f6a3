#include "base/scalarinfo.h"

#include <algorithm>

namespace tesk {

CSimpleScalarInfo::CSimpleScalarInfo(int count) : m_count(count)
{
    AllocateTable();
}

CSimpleScalarInfo::CSimpleScalarInfo(const CSimpleScalarInfo &other) : m_count(other.m_count)
{
    AllocateTable();
    std::copy_n(other.m_table.get(), std::max(m_count, 0), m_table.get());
}

bool CSimpleScalarInfo::AddEnumValue(int index, char value)
{
    if (!IsInRange(index))
        return false;
    m_table[index] = value;
    return true;
}

char CSimpleScalarInfo::GetElementValue(int index) const
{
    return IsInRange(index) ? m_table[index] : '\0';
}

void CSimpleScalarInfo::AllocateTable()
{
    m_table = std::make_shared<char[]>(static_cast<std::size_t>(std::max(m_count, 0)) + 1);
}

}  // namespace tesk
