#include <algorithm>
#include <iterator>
#include <string_view>

#include "fuzz/support/mutators.h"

namespace fuzz {

namespace {

constexpr std::size_t Most = 1 << 16;
constexpr std::size_t ByteOrderPlace = 12;
constexpr std::uint8_t BigEndian = 2;

// A section: its tag, the bytes of tag and counts in front of its contents, and of the tag behind them.
struct SSectionKind {
    std::string_view tag;
    std::ptrdiff_t head;
    std::ptrdiff_t end;
};
using namespace std::string_view_literals;
constexpr SSectionKind Kinds[] = {{"STR\0"sv, 16, 4}, {"TYP\0"sv, 12, 0}, {"WKT\0"sv, 8, 0},  {"HIE\0"sv, 20, 4},
                                  {"SNP\0"sv, 16, 4}, {"CYC\0"sv, 12, 4}, {"DIR\0"sv, 12, 0}, {"TAI\0"sv, 8, 0}};

struct SSection {
    const SSectionKind *kind;  // null in front of the first
    CBytes bytes;
};

const SSectionKind *KindAt(std::string_view text)
{
    for (const SSectionKind &kind : Kinds) {
        if (text.starts_with(kind.tag))
            return &kind;
    }
    return nullptr;
}

std::vector<SSection> TakeSections(const CBytes &file)
{
    const std::string_view text(reinterpret_cast<const char *>(file.data()), file.size());
    std::vector<SSection> sections{{nullptr, {}}};
    for (std::size_t i = 0; i < file.size(); ++i) {
        if (const SSectionKind *kind = KindAt(text.substr(i)))
            sections.push_back({kind, {}});
        sections.back().bytes.push_back(file[i]);
    }
    return sections;
}

void PutWord(CBytes &bytes, std::size_t place, std::size_t word, bool isBigEndian)
{
    for (std::size_t i = 0; i < 4 && place + i < bytes.size(); ++i)
        bytes[place + i] = static_cast<std::uint8_t>(word >> 8 * (isBigEndian ? 3 - i : i));
}

// A string ends with a byte below 32.
void PutStringCount(SSection &section, bool isBigEndian)
{
    const auto ends = std::count_if(section.bytes.begin() + section.kind->head, section.bytes.end() - section.kind->end,
                                    [](int byte) { return byte < 32; });
    PutWord(section.bytes, 8, static_cast<std::size_t>(ends), isBigEndian);
}

void MutateContents(SSection &section, bool isBigEndian, std::mt19937 &random)
{
    const auto [tag, head, end] = *section.kind;
    if (std::ssize(section.bytes) < head + end)
        return;
    const auto last = section.bytes.end() - end;
    CBytes contents(section.bytes.begin() + head, last);
    const CBytes behind(last, section.bytes.end());
    MutateBytes(contents, Most);
    section.bytes.resize(static_cast<std::size_t>(head));
    section.bytes.insert(section.bytes.end(), contents.begin(), contents.end());
    section.bytes.insert(section.bytes.end(), behind.begin(), behind.end());
    if (tag.starts_with("STR") && random() % 4 != 0)
        PutStringCount(section, isBigEndian);
}

// Whole sections once more, or a count.
void MutateWhole(std::vector<SSection> &sections, std::size_t chosen, bool isBigEndian, std::mt19937 &random)
{
    if (random() % 2 == 0)
        sections.insert(sections.begin() + static_cast<std::ptrdiff_t>(1 + random() % (sections.size() - 1)),
                        SSection(sections[chosen]));
    else
        PutWord(sections[chosen].bytes, 8 + random() % 3 * 4, random() % 20, isBigEndian);
}

}  // namespace

bool MutateGhw(CBytes &file, std::mt19937 &random)
{
    std::vector<SSection> sections = TakeSections(file);
    if (sections.size() < 2 || sections.front().bytes.size() <= ByteOrderPlace)
        return false;
    const bool isBigEndian = sections.front().bytes[ByteOrderPlace] == BigEndian;
    const std::size_t chosen = 1 + random() % (sections.size() - 1);
    if (random() % 8 == 0)
        MutateWhole(sections, chosen, isBigEndian, random);
    else
        MutateContents(sections[chosen], isBigEndian, random);
    file.clear();
    for (const SSection &section : sections)
        file.insert(file.end(), section.bytes.begin(), section.bytes.end());
    return true;
}

}  // namespace fuzz
