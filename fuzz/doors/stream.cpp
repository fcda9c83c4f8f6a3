// Any bytes as an event-stream file: as they are, with right checksums in both versions of the format, as the contents of
// one block, and as what the blocks of a stretch of time unpack to.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "platform/morvel.h"
#include "platform/stream/morvelevents.h"
#include "platform/stream/morvelformat.h"
#include "platform/stream/streampack.h"
#include "tests/platform/stream/stretchfile.h"

namespace fuzz {

namespace {

void Put(std::string &bytes, std::size_t offset, const std::string &text)
{
    bytes.replace(offset, text.size(), text);
}

// Puts the index behind the header where the bytes tell no sensible place, and makes version and checksums right.
void Repair(std::string &bytes, std::uint32_t version)
{
    using namespace Morvel;
    if (bytes.size() < HeaderSize)
        return;
    CByteReader header(std::string_view(bytes).substr(32));
    const auto offset = std::clamp<std::uint64_t>(header.Little<std::uint64_t>(), HeaderSize, bytes.size());
    const std::string_view index = std::string_view(bytes).substr(static_cast<std::size_t>(offset));
    std::string rest;
    Append(rest, offset);
    Append(rest, std::uint64_t{index.size()});
    Append(rest, Crc(index));
    std::string start(Magic);
    Append(start, version);
    Put(bytes, 0, start);
    Put(bytes, 32, rest);
    rest.clear();
    Append(rest, Crc(std::string_view(bytes).substr(0, HeaderSize - 4)));
    Put(bytes, HeaderSize - 4, rest);
}

void WalkStore(const Morvel::KEventsStore &store)
{
    Morvel::KEventData event;
    unsigned char value[64];
    long long last = -1;
    for (bool placed = store.GetFirstEvent(1000000, &event, nullptr); placed; placed = store.GetNextEvent(&event)) {
        if (event.GetTime() < last)
            std::abort();
        last = event.GetTime();
        event.GetValue(value, sizeof value);
    }
}

void WalkSignal(Morvel::IMorvelRead &stream, Morvel::IRawMorvelRead &raw, int handle, int depth)
{
    const char *name = nullptr;
    int children = 0;
    stream.GetInfo(handle, nullptr, &children, &name, nullptr, nullptr);
    if (depth > Morvel::MaxDepth || name == nullptr || stream.GetTypeText(handle) == nullptr)
        std::abort();
    if (const Morvel::KEventsStore *store = raw.GetEventsStore(handle))
        WalkStore(*store);
    for (int i = 0; i < children; ++i)
        WalkSignal(stream, raw, stream.GetChild(handle, i), depth + 1);
}

void ReadFile(const std::string &bytes)
{
    WriteInput("input.zyn", bytes);
    const Morvel::StreamReadPtr stream(Morvel::CreateStreamRead("input.zyn"));
    const Morvel::RawStreamReadPtr raw(Morvel::CreateRawMorvelRead("input.zyn"));
    if ((stream == nullptr) != (raw == nullptr))
        std::abort();
    for (int i = 0; stream != nullptr && i < stream->GetSignalCount(); ++i)
        WalkSignal(*stream, *raw, stream->GetSignal(i), 1);
}

// The first byte tells how many of the others are the table, and the second how many events each scalar is said to have.
void ReadStretch(std::string_view bytes)
{
    if (bytes.size() < 2)
        return;
    const auto number = [&bytes](std::size_t place) { return static_cast<unsigned char>(bytes[place]); };
    const SStretchClaim claim{0, 1000, 0, 6, number(1)};
    const std::size_t tableSize = std::min<std::size_t>(number(0), bytes.size() - 2);
    const std::string table(bytes.substr(2, tableSize));
    ReadFile(StretchFile(claim, table, std::string(bytes.substr(2 + tableSize))));
}

}  // namespace

void Stream(std::string_view input)
{
    std::string bytes(input);
    Morvel::SBlock block;
    Morvel::UnpackBlock(Morvel::EBlockForm::Old, bytes, 5, 3, 1, block);
    ReadFile(bytes);
    for (const std::uint32_t version : {Morvel::OldVersion, Morvel::Version}) {
        Repair(bytes, version);
        ReadFile(bytes);
    }
    ReadStretch(input);
}

}  // namespace fuzz
