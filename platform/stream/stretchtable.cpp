#include "platform/stream/stretchtable.h"

#include "platform/stream/filebytes.h"
#include "platform/stream/groupevents.h"
#include "platform/stream/varint.h"

namespace Morvel {

namespace {

[[noreturn]] void FailTable()
{
    throw XFault("is damaged: a block is not what the index says");
}

class CTableReader {
public:
    CTableReader(std::string_view bytes, const SStretchEntry &entry)
        : m_next(bytes.data()), m_end(bytes.data() + bytes.size()), m_entry(entry)
    {}

    void TakeTimes(std::vector<long long> &times)
    {
        const std::uint64_t count = TakeCount(MaxStretchTimes);
        times.reserve(static_cast<std::size_t>(count));
        long long time = m_entry.first;
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint64_t step = i > 0 ? Take() : 0;
            if ((i > 0 && step == 0) || step > static_cast<std::uint64_t>(m_entry.last - time))
                FailTable();
            time += static_cast<long long>(step);
            times.push_back(time);
        }
        if (count == 0 || time != m_entry.last)
            FailTable();
    }

    void TakeChunks(std::uint32_t block, std::size_t rawSize, std::vector<SChunk> &chunks)
    {
        const std::uint64_t count = TakeCount(MaxStretchChunks - chunks.size());
        std::size_t offset = 0;
        for (std::uint64_t i = 0; i < count; ++i) {
            const std::uint32_t before = chunks.empty() ? 0 : chunks.back().firstTrack;
            const std::uint64_t step = Take();
            const std::uint64_t others = Take();
            const std::uint64_t size = Take();
            if (step > m_entry.highTrack - before || others >= MaxGroup || others > m_entry.highTrack - before - step ||
                size > rawSize - offset)
                FailTable();
            const auto first = static_cast<std::uint32_t>(before + step);
            if (first < m_entry.lowTrack)
                FailTable();
            chunks.push_back({first, static_cast<std::uint32_t>(others + 1), block, static_cast<std::uint32_t>(offset),
                              static_cast<std::uint32_t>(size)});
            offset += static_cast<std::size_t>(size);
        }
        if (offset != rawSize)
            FailTable();
    }

    bool IsAtEnd() const { return m_next == m_end; }

private:
    std::uint64_t Take()
    {
        std::uint64_t number = 0;
        if (!TakeVarint(m_next, m_end, number))
            FailTable();
        return number;
    }

    // Each of what is counted takes a byte at least, but for the first time.
    std::uint64_t TakeCount(std::size_t most)
    {
        const std::uint64_t count = Take();
        if (count > most || count > static_cast<std::uint64_t>(m_end - m_next) + 1)
            FailTable();
        return count;
    }

    const char *m_next;
    const char *m_end;
    const SStretchEntry &m_entry;
};

}  // namespace

std::string MakeStretchTable(std::span<const long long> times, std::span<const SChunk> chunks, std::size_t blocks)
{
    std::string bytes;
    AppendVarint(bytes, times.size());
    for (std::size_t i = 1; i < times.size(); ++i)
        AppendVarint(bytes, static_cast<std::uint64_t>(times[i] - times[i - 1]));
    std::uint32_t before = 0;
    for (std::size_t block = 0, next = 0; block < blocks; ++block) {
        std::size_t end = next;
        while (end < chunks.size() && chunks[end].block == block)
            ++end;
        AppendVarint(bytes, end - next);
        for (; next < end; ++next) {
            AppendVarint(bytes, chunks[next].firstTrack - before);
            AppendVarint(bytes, chunks[next].count - 1);
            AppendVarint(bytes, chunks[next].size);
            before = chunks[next].firstTrack;
        }
    }
    return bytes;
}

SStretchTable ReadStretchTable(std::string_view bytes, const SStretchEntry &entry, std::span<const SPackEntry> blocks)
{
    SStretchTable table;
    CTableReader reader(bytes, entry);
    reader.TakeTimes(table.times);
    for (std::uint32_t i = 0; i < blocks.size(); ++i)
        reader.TakeChunks(i, blocks[i].rawSize, table.chunks);
    if (!reader.IsAtEnd())
        FailTable();
    return table;
}

}  // namespace Morvel
