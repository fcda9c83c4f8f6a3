#include <algorithm>
#include <iterator>
#include <utility>

#include "fuzz/support/mutators.h"
#include "platform/fst/fstlayout.h"
#include "platform/fst/fstunpack.h"
#include "platform/fstwriter/fstpack.h"
#include "platform/fstwriter/fstput.h"

namespace fuzz {

namespace {

using namespace NTARN;

constexpr std::size_t Most = 1 << 16;

struct SBlock {
    std::uint8_t kind;
    CBytes contents;
};
using CBlocks = std::vector<SBlock>;

CBytes Copy(SFstSpan bytes)
{
    return {bytes.begin(), bytes.end()};
}

// One of a few, so that a rare thing happens rarely.
bool IsOneOf(std::size_t count, std::mt19937 &random)
{
    return random() % count == 0;
}

CBlocks TakeBlocks(SFstSpan file)
{
    CBlocks blocks;
    for (CFstBytes bytes(file); !bytes.AtEnd();) {
        const std::uint8_t kind = bytes.Byte();
        const std::uint64_t length = bytes.Big<std::uint64_t>();
        if (length < 8)
            throw XFstDamage();
        blocks.push_back({kind, Copy(bytes.Take(length - 8))});
    }
    return blocks;
}

CBytes Joined(const CBlocks &blocks)
{
    CBytes file;
    for (const SBlock &block : blocks) {
        file.push_back(block.kind);
        PutNumber(file, block.contents.size() + 8);
        PutBytes(file, block.contents);
    }
    return file;
}

// Behind the header the order of the blocks is free, and any may come twice.
void MutateOrder(CBlocks &blocks, std::mt19937 &random)
{
    const std::size_t others = blocks.size() - 1;
    const auto place = [&] { return blocks.begin() + static_cast<std::ptrdiff_t>(1 + random() % others); };
    switch (random() % 3) {
    case 0: blocks.push_back(*place()); break;
    case 1: blocks.erase(place()); break;
    default: std::iter_swap(place(), place()); break;
    }
}

// The size unpacked, the number of stores, and the packed widths.
void MutateGeometry(CBytes &contents, std::mt19937 &random)
{
    CFstBytes bytes(contents);
    const std::uint64_t size = bytes.Big<std::uint64_t>();
    const std::uint64_t count = bytes.Big<std::uint64_t>();
    CBytes widths = FstInflateIfPacked(bytes.Rest(), size);
    MutateBytes(widths, Most);
    contents.clear();
    PutNumber(contents, widths.size());
    PutNumber(contents, IsOneOf(8, random) ? random() % 16 : count);
    PutBytes(contents, FstDeflateIfShorter(widths));
}

CBytes PackGzip(SFstSpan bytes)
{
    CFstGzip packer;
    packer.Add(bytes);
    return packer.Finish();
}

// Whatever packed it, the way back is gzip.
void MutateHierarchy(SBlock &block)
{
    CFstBytes bytes(block.contents);
    const std::uint64_t size = bytes.Big<std::uint64_t>();
    CBytes unpacked;
    switch (static_cast<EFstBlock>(block.kind)) {
    case EFstBlock::Hierarchy: unpacked = FstUnpack(EFstPacker::Gzip, bytes.Rest(), size); break;
    case EFstBlock::HierarchyLz4: unpacked = FstUnpack(EFstPacker::Lz4, bytes.Rest(), size); break;
    default: {
        const std::uint64_t once = bytes.Varint();
        unpacked = FstUnpack(EFstPacker::Lz4, FstUnpack(EFstPacker::Lz4, bytes.Rest(), once), size);
    }
    }
    MutateBytes(unpacked, Most);
    block.kind = static_cast<std::uint8_t>(EFstBlock::Hierarchy);
    block.contents.clear();
    PutNumber(block.contents, unpacked.size());
    PutBytes(block.contents, PackGzip(unpacked));
}

// A block of changes in its parts.
struct SChanges {
    CBytes head;  // begin, end, memory
    std::uint64_t frameStores;
    CBytes frame;
    CBytes chains;  // with their number and packer in front
    CBytes index;
    CBytes times;
    std::uint64_t timeCount;

    explicit SChanges(SFstSpan contents)
    {
        CFstBytes bytes(contents);
        head = Copy(bytes.Take(24));
        const std::uint64_t frameSize = bytes.Varint();
        const std::uint64_t framePacked = bytes.Varint();
        frameStores = bytes.Varint();
        frame = FstInflateIfPacked(bytes.Take(framePacked), frameSize);
        SFstSpan rest = bytes.Rest();
        CFstBytes tail(TakeBack(rest, 24));
        const std::uint64_t timesSize = tail.Big<std::uint64_t>();
        const std::uint64_t timesPacked = tail.Big<std::uint64_t>();
        timeCount = tail.Big<std::uint64_t>();
        times = FstInflateIfPacked(TakeBack(rest, timesPacked), timesSize);
        const std::uint64_t indexSize = CFstBytes(TakeBack(rest, 8)).Big<std::uint64_t>();
        index = Copy(TakeBack(rest, indexSize));
        chains = Copy(rest);
    }

    static SFstSpan TakeBack(SFstSpan &rest, std::uint64_t count)
    {
        if (count > rest.size())
            throw XFstDamage();
        const SFstSpan taken = rest.last(static_cast<std::size_t>(count));
        rest = rest.first(rest.size() - taken.size());
        return taken;
    }

    CBytes Bytes() const
    {
        CBytes bytes = head;
        const CBytes packedFrame = FstDeflateIfShorter(frame);
        PutVarint(bytes, frame.size());
        PutVarint(bytes, packedFrame.size());
        PutVarint(bytes, frameStores);
        PutBytes(bytes, packedFrame);
        PutBytes(bytes, chains);
        PutBytes(bytes, index);
        PutNumber(bytes, index.size());
        const CBytes packedTimes = FstDeflateIfShorter(times);
        PutBytes(bytes, packedTimes);
        PutNumber(bytes, times.size());
        PutNumber(bytes, packedTimes.size());
        PutNumber(bytes, timeCount);
        return bytes;
    }
};

void MutateChanges(CBytes &contents, std::mt19937 &random)
{
    SChanges changes(contents);
    CBytes *const parts[] = {&changes.chains, &changes.index, &changes.times, &changes.frame, &changes.head};
    CBytes &part = *parts[random() % std::size(parts)];
    const std::size_t size = part.size();
    MutateBytes(part, Most);
    if (&part == &changes.head)
        part.resize(size);
    // Each time ends with a byte below 128.
    if (&part == &changes.times && !IsOneOf(8, random))
        changes.timeCount =
            static_cast<std::uint64_t>(std::ranges::count_if(part, [](int byte) { return byte < 128; }));
    if (IsOneOf(16, random))
        changes.frameStores = random() % 16;
    contents = changes.Bytes();
}

void MutateBlock(SBlock &block, std::mt19937 &random)
{
    switch (static_cast<EFstBlock>(block.kind)) {
    case EFstBlock::Geometry: return MutateGeometry(block.contents, random);
    case EFstBlock::Hierarchy:
    case EFstBlock::HierarchyLz4:
    case EFstBlock::HierarchyLz4Twice: return MutateHierarchy(block);
    case EFstBlock::Changes:
    case EFstBlock::ChangesAlias:
    case EFstBlock::ChangesAlias2: return MutateChanges(block.contents, random);
    default: return MutateBytes(block.contents, Most);
    }
}

}  // namespace

bool MutateFst(CBytes &file, std::mt19937 &random)
try {
    CBlocks blocks = TakeBlocks(file);
    if (blocks.size() < 2)
        return false;
    if (IsOneOf(8, random))
        MutateOrder(blocks, random);
    else
        MutateBlock(blocks[random() % blocks.size()], random);
    file = Joined(blocks);
    return true;
} catch (const XFstDamage &) {
    return false;
}

}  // namespace fuzz
