#include "platform/fstwriter/fstwriterblock.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <unordered_map>

#include "platform/fst/fstlayout.h"
#include "platform/fstwriter/fstpack.h"

namespace NTARN {
namespace {

constexpr char PackerLetter = '4';           // LZ4
constexpr std::size_t ShortestToPack = 32;   // less is not worth the time
constexpr std::size_t RoomToKeep = 1 << 12;  // of a chain, from block to block

// The letters of a single bit that is neither 0 nor 1, by their number in the format.
constexpr std::string_view ExtraLetters = "xzhuwl-?";

std::string_view Text(const CFstBuffer &bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

void Send(std::ostream &out, SFstSpan bytes)
{
    out.write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

std::string RealLetters(double real)
{
    std::string letters(sizeof real, '\0');
    std::memcpy(letters.data(), &real, sizeof real);
    return letters;
}

// Which stores have changes, and where: a count of those that have none, a distance, or the number of another store with
// the same changes.
class CIndex {
public:
    explicit CIndex(CFstBuffer &bytes) : m_bytes(bytes) {}

    void AddNone() { ++m_none; }
    void AddChain(std::uint64_t position)
    {
        EndNone();
        PutSignedVarint(m_bytes, static_cast<std::int64_t>(position - m_position) * 2 + 1);
        m_position = position;
    }
    void AddAlias(std::uint64_t store)
    {
        EndNone();
        PutSignedVarint(m_bytes, store == m_alias ? 1 : -static_cast<std::int64_t>(store + 1) * 2 + 1);
        m_alias = store;
    }
    void EndNone()
    {
        if (m_none > 0)
            PutVarint(m_bytes, m_none << 1);
        m_none = 0;
    }

private:
    CFstBuffer &m_bytes;
    std::uint64_t m_none = 0;
    std::uint64_t m_position = 0;
    std::uint64_t m_alias = std::numeric_limits<std::uint64_t>::max();
};

}  // namespace

void CFstWriterBlock::AddStore(EFstValues values, std::uint32_t width)
{
    m_stores.push_back({values, width, m_values.size(), 0, {}});
    if (values == EFstValues::Bits)
        m_values.append(width, 'x');
    else if (values == EFstValues::Real)
        m_values += RealLetters(std::numeric_limits<double>::quiet_NaN());
}

// The frame of a block holds the values in front of its first time.
void CFstWriterBlock::AddTime(std::uint64_t time)
{
    if (m_timeCount == 0)
        m_frame = m_values;
    if (m_timeCount == 0)
        m_firstTime = time;
    PutVarint(m_times, m_timeCount == 0 ? time : time - m_lastTime);
    m_lastTime = time;
    ++m_timeCount;
}

void CFstWriterBlock::AddBits(std::size_t store, std::string_view letters)
{
    SStore &changed = m_stores[store];
    Keep(changed, letters);
    if (m_timeCount == 0)
        return;
    const std::size_t before = changed.chain.size();
    if (letters.size() == 1)
        AppendBit(changed, letters[0]);
    else
        AppendVector(changed, letters);
    m_size += changed.chain.size() - before;
}

void CFstWriterBlock::AddReal(std::size_t store, double real)
{
    SStore &changed = m_stores[store];
    const std::string letters = RealLetters(real);
    Keep(changed, letters);
    if (m_timeCount == 0)
        return;
    const std::size_t before = changed.chain.size();
    PutVarint(changed.chain, Step(changed) << 1 | 1);
    changed.chain.insert(changed.chain.end(), letters.begin(), letters.end());
    m_size += changed.chain.size() - before;
}

// Text is in no frame.
void CFstWriterBlock::AddText(std::size_t store, std::string_view text)
{
    if (m_timeCount == 0)
        return;
    SStore &changed = m_stores[store];
    const std::size_t before = changed.chain.size();
    PutVarint(changed.chain, Step(changed) << 1);
    PutVarint(changed.chain, text.size());
    changed.chain.insert(changed.chain.end(), text.begin(), text.end());
    m_size += changed.chain.size() - before;
}

void CFstWriterBlock::Keep(const SStore &store, std::string_view letters)
{
    std::ranges::copy(letters, m_values.begin() + static_cast<std::ptrdiff_t>(store.position));
}

// How many times lie between the last change of the store and this one.
std::uint64_t CFstWriterBlock::Step(SStore &store)
{
    const std::uint64_t step = m_timeCount - 1 - store.lastChange;
    store.lastChange = m_timeCount - 1;
    return step;
}

void CFstWriterBlock::AppendBit(SStore &store, char letter)
{
    const std::uint64_t step = Step(store);
    if (letter == '0' || letter == '1') {
        PutVarint(store.chain, step << 2 | (letter == '1' ? 2U : 0U));
        return;
    }
    const std::size_t extra = ExtraLetters.find(letter);
    PutVarint(store.chain, step << 4 | (extra != ExtraLetters.npos ? extra : 0) << 1 | 1);
}

// Letters that are all 0 and 1 are packed into bits, the left one highest.
void CFstWriterBlock::AppendVector(SStore &store, std::string_view letters)
{
    const bool isPacked = std::ranges::all_of(letters, [](char letter) { return letter == '0' || letter == '1'; });
    PutVarint(store.chain, Step(store) << 1 | (isPacked ? 0U : 1U));
    if (!isPacked) {
        store.chain.insert(store.chain.end(), letters.begin(), letters.end());
        return;
    }
    for (std::size_t i = 0; i < letters.size(); i += 8) {
        unsigned byte = 0;
        for (std::size_t bit = i; bit < i + 8; ++bit)
            byte = byte << 1 | (bit < letters.size() && letters[bit] == '1' ? 1U : 0U);
        store.chain.push_back(static_cast<std::uint8_t>(byte));
    }
}

// A reader that takes all stores at once asks for as much memory.
std::uint64_t CFstWriterBlock::ChainBytes() const
{
    std::uint64_t bytes = 0;
    for (const SStore &store : m_stores)
        bytes += store.chain.size();
    return bytes;
}

// A chain is packed where that makes it shorter: its length in front is then that of the unpacked one, else 0.
void CFstWriterBlock::WriteChains(std::ostream &out, CFstBuffer &index)
{
    CIndex entries(index);
    std::unordered_map<std::string_view, std::size_t> known;
    std::uint64_t position = 1;  // counted from the packer's letter
    for (std::size_t i = 0; i < m_stores.size(); ++i) {
        const CFstBuffer &chain = m_stores[i].chain;
        if (chain.empty()) {
            entries.AddNone();
            continue;
        }
        const auto [same, isNew] = known.try_emplace(Text(chain), i);
        if (!isNew) {
            entries.AddAlias(same->second);
            continue;
        }
        entries.AddChain(position);
        const bool isPacked = chain.size() > ShortestToPack && FstPackLz4(chain, m_packed);
        CFstBuffer head;
        PutVarint(head, isPacked ? chain.size() : 0);
        const CFstBuffer &body = isPacked ? m_packed : chain;
        Send(out, head);
        Send(out, body);
        position += head.size() + body.size();
    }
    entries.EndNone();
}

void CFstWriterBlock::Write(std::ostream &out, std::uint64_t begin, std::uint64_t end)
{
    const auto frameBytes = SFstSpan(reinterpret_cast<const std::uint8_t *>(m_frame.data()), m_frame.size());
    const CFstBuffer frame = FstDeflateIfShorter(frameBytes);
    const CFstBuffer times = FstDeflateIfShorter(m_times);
    const std::ostream::pos_type start = out.tellp();
    CFstBuffer head = {static_cast<std::uint8_t>(EFstBlock::ChangesAlias2)};
    PutNumber(head, 0);  // the length, not known yet
    PutNumber(head, begin);
    PutNumber(head, end);
    PutNumber(head, ChainBytes());
    PutVarint(head, m_frame.size());
    PutVarint(head, frame.size());
    PutVarint(head, m_stores.size());
    PutBytes(head, frame);
    PutVarint(head, m_stores.size());
    head.push_back(PackerLetter);
    Send(out, head);
    CFstBuffer tail;
    WriteChains(out, tail);
    PutNumber(tail, tail.size());
    PutBytes(tail, times);
    PutNumber(tail, m_times.size());
    PutNumber(tail, times.size());
    PutNumber(tail, m_timeCount);
    Send(out, tail);
    const std::ostream::pos_type stop = out.tellp();
    CFstBuffer length;
    PutNumber(length, static_cast<std::uint64_t>(stop - start) - 1);
    out.seekp(start + std::streamoff{1});
    Send(out, length);
    out.seekp(stop);
    BeginAnew();
}

void CFstWriterBlock::BeginAnew()
{
    for (SStore &store : m_stores) {
        store.lastChange = 0;
        store.chain.clear();
        if (store.chain.capacity() > RoomToKeep)
            store.chain = {};
    }
    m_times.clear();
    m_timeCount = 0;
    m_size = 0;
}

}  // namespace NTARN
