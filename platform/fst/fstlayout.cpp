#include "platform/fst/fstlayout.h"

#include <algorithm>
#include <array>
#include <limits>

namespace NTARN {
namespace {

constexpr std::uint64_t BlockHeadSize = 1 + 8;  // kind and length; the length counts its own 8 bytes
constexpr std::uint64_t HeaderSize = 321;
constexpr std::uint64_t VersionAndDateSize = 128 + 119;
constexpr std::uint64_t MostTime = std::numeric_limits<std::int64_t>::max();
constexpr int DefaultScale = -9;

// The number e as the writer's machine stores it.
constexpr std::array<std::uint8_t, 8> LittleEndianE = {0x69, 0x57, 0x14, 0x8B, 0x0A, 0xBF, 0x05, 0x40};

bool IsBigEndian(SFstSpan e)
{
    if (std::ranges::equal(e, LittleEndianE))
        return false;
    if (!std::equal(e.begin(), e.end(), LittleEndianE.rbegin()))
        throw XFstDamage();
    return true;
}

// As the viewers read it: what is no power of ten between 100 s and 1 zs counts as 1 ns.
int ScaleOf(std::uint8_t byte)
{
    const auto scale = static_cast<std::int8_t>(byte);
    return scale > 2 || scale < -21 ? DefaultScale : scale;
}

SFstHeader ReadHeader(CFstBytes bytes)
{
    SFstHeader header;
    header.begin = bytes.Big<std::uint64_t>();
    header.end = bytes.Big<std::uint64_t>();
    header.isBigEndian = IsBigEndian(bytes.Take(8));
    bytes.Take(4 * 8);  // the writer's memory; scopes, variables, handles: counted again in the hierarchy
    header.blocks = bytes.Big<std::uint64_t>();
    header.scale = ScaleOf(bytes.Byte());
    bytes.Take(VersionAndDateSize + 1);  // and the language
    header.timeZero = bytes.Big<long long>();
    if (header.begin > MostTime || header.end > MostTime)
        throw XFstDamage();
    return header;
}

bool IsChanges(EFstBlock kind)
{
    return kind == EFstBlock::Changes || kind == EFstBlock::ChangesAlias || kind == EFstBlock::ChangesAlias2;
}

bool IsHierarchy(EFstBlock kind)
{
    return kind == EFstBlock::Hierarchy || kind == EFstBlock::HierarchyLz4 || kind == EFstBlock::HierarchyLz4Twice;
}

// The block at `position`; none if the file ends before it does.
std::optional<SFstBlock> BlockAt(CFstFile &file, std::uint64_t position)
{
    if (file.Size() - position < BlockHeadSize)
        return std::nullopt;
    const CFstBuffer head = file.Read(position, BlockHeadSize);
    CFstBytes bytes(head);
    const auto kind = static_cast<EFstBlock>(bytes.Byte());
    const std::uint64_t length = bytes.Big<std::uint64_t>();
    if (length < 8 || length > file.Size() - position - 1)
        return std::nullopt;
    return SFstBlock{kind, position + BlockHeadSize, length - 8};
}

SFstChangeBlock ChangeBlock(CFstFile &file, const SFstBlock &block)
{
    SFstChangeBlock changes = {block, 0, 0};
    if (block.size >= 16) {
        const CFstBuffer times = file.Read(block.position, 16);
        CFstBytes bytes(times);
        changes.begin = bytes.Big<std::uint64_t>();
        changes.end = bytes.Big<std::uint64_t>();
    }
    return changes;
}

void AddBlock(CFstFile &file, const SFstBlock &block, SFstLayout &layout)
{
    if (IsChanges(block.kind))
        layout.changes.push_back(ChangeBlock(file, block));
    else if (block.kind == EFstBlock::Geometry)
        layout.geometry = block;
    else if (IsHierarchy(block.kind))
        layout.hierarchy = block;
    else if (block.kind == EFstBlock::Unfinished)
        layout.isCut = true;
}

}  // namespace

std::uint64_t SFstLayout::End() const
{
    std::uint64_t end = isCut ? header.begin : header.end;
    for (const SFstChangeBlock &block : changes) {
        if (block.begin <= block.end && block.end <= MostTime)
            end = std::max(end, block.end);
    }
    return end;
}

std::uint64_t SFstLayout::Begin() const
{
    std::uint64_t begin = header.begin;
    for (const SFstChangeBlock &block : changes)
        begin = std::min(begin, block.begin);
    return begin;
}

SFstLayout ReadFstLayout(CFstFile &file)
{
    std::optional<SFstBlock> block = BlockAt(file, 0);
    if (!block || block->kind != EFstBlock::Header)
        throw XFstDamage();
    SFstLayout layout;
    layout.header = ReadHeader(CFstBytes(file.Read(block->position, std::min(block->size, HeaderSize))));
    std::uint64_t position = block->position + block->size;
    while (position < file.Size() && (block = BlockAt(file, position)).has_value()) {
        AddBlock(file, *block, layout);
        position = block->position + block->size;
    }
    layout.isCut |= position < file.Size() || (!layout.geometry && !layout.hierarchy);
    return layout;
}

}  // namespace NTARN
