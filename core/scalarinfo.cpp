#include "core/scalarinfo.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

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

namespace {

struct SStateLetter {
    char letter;
    char stdLogic;
};

// Deliberate: capital U and G are levels, small l, h and x are weak states.
constexpr std::array<SStateLetter, 18> StateLetters = {{
    {'1', '1'},
    {'0', '0'},
    {'H', '1'},
    {'L', '0'},
    {'X', 'X'},
    {'Z', 'Z'},
    {'R', 'X'},
    {'V', 'X'},
    {'.', 'X'},
    {'F', 'X'},
    {'U', '1'},
    {'G', '0'},
    {'S', 'X'},
    {'u', 'X'},
    {'d', 'X'},
    {'l', 'L'},
    {'h', 'H'},
    {'x', 'W'},
}};

constexpr std::string_view StdLogicLetters = "UX01ZWLH-";

}  // namespace

const char *SkipExtendedID(const char *text)
{
    if (text == nullptr || *text != '\\')
        return text;
    const char *end = std::strchr(text + 1, '\\');
    while (end != nullptr && end[1] == '\\')
        end = std::strchr(end + 2, '\\');
    return end != nullptr ? end + 1 : text + std::strlen(text);
}

char GateLevel2StdLogic(char letter)
{
    const auto row = std::ranges::find(StateLetters, letter, &SStateLetter::letter);
    return row != StateLetters.end() ? row->stdLogic : '\0';
}

int GateLevel2StdLogicIndex(char letter)
{
    const char stdLogic = GateLevel2StdLogic(letter);
    return stdLogic == 0 ? -1 : static_cast<int>(StdLogicLetters.find(stdLogic));
}
