#include "platform/fst/fsttracks.h"

#include <cstring>

#include "platform/changes/bitgroups.h"

namespace NTARN {
namespace {

using tesk::BitGroup;
using tesk::BitGroupPositions;

}  // namespace

CFstTracks::CFstTracks(CFstBlocks &blocks, const std::vector<SFstStore> &stores)
    : m_blocks(blocks), m_stores(stores), m_isBigEndian(blocks.Layout().header.isBigEndian),
      m_bytesLeft(blocks.Limits().ChangeBytes()), m_trackOf(stores.size(), None)
{}

std::uint32_t CFstTracks::Add(std::uint32_t store)
{
    if (m_trackOf[store] != None)
        return m_trackOf[store];
    m_tracks.push_back({store, 0, m_blocks.Limits().StoreBytes()});
    if (m_stores[store].kind == SFstStore::EKind::Real)
        m_values.AddReal();
    else
        m_values.AddBits(m_stores[store].Width());
    return m_trackOf[store] = static_cast<std::uint32_t>(m_tracks.size() - 1);
}

// To look few stores up is quicker than to go through all that change.
std::vector<SFstTrackStretch> CFstTracks::StretchesIn(std::size_t block)
{
    constexpr std::size_t CostOfLookUp = 16;
    std::vector<SFstTrackStretch> stretches;
    const CFstBlocks::BlockPtr read = m_blocks.Pass(block);
    if (!read)
        return stretches;
    const CFstPositions &positions = read->Positions();
    const auto add = [&stretches](std::uint32_t track, const SFstStretch &stretch) {
        if (stretch.size > 0)
            stretches.push_back({track, stretch});
    };
    if (m_tracks.size() < positions.EntryCount() / CostOfLookUp) {
        for (std::uint32_t track = 0; track < m_tracks.size(); ++track)
            add(track, positions.Find(m_tracks[track].store));
        return stretches;
    }
    for (std::size_t i = 0; i < positions.EntryCount(); ++i) {
        const std::uint32_t store = positions.StoreOf(i);
        if (store < m_trackOf.size() && m_trackOf[store] != None)
            add(m_trackOf[store], positions.StretchOf(i));
    }
    return stretches;
}

void CFstTracks::Unpack(std::size_t block, const SFstTrackStretch &stretch, CFstBuffer &chain)
{
    chain.clear();
    SFstTrack &track = m_tracks[stretch.track];
    if (track.bytesLeft > 0 && !m_blocks.Unpack(block, stretch.stretch, track.bytesLeft, m_bytesLeft, chain))
        track.bytesLeft = 0;  // nor is what follows
}

SFstValue CFstTracks::Next(std::size_t track, CFstChain &chain, const CFstTimes &times, std::uint64_t &timeIndex)
{
    const SFstValue value = chain.Next(timeIndex);
    if (timeIndex >= times.Count() || times.At(timeIndex) < m_tracks[track].lastTime)
        throw XFstDamage();
    m_tracks[track].lastTime = times.At(timeIndex);
    return value;
}

std::vector<std::pair<std::uint32_t, SFstInitial>> CFstTracks::Initial(const std::vector<SFstSpan> &chains)
{
    std::vector<std::pair<std::uint32_t, SFstInitial>> values;
    for (std::uint32_t track = 0; track < m_tracks.size(); ++track) {
        const SFstInitial initial = m_blocks.Initial(Store(track), chains[track]);
        m_tracks[track].lastTime = initial.time;
        if (!initial.letters.empty())
            values.emplace_back(track, initial);
    }
    return values;
}

bool CFstTracks::Take(std::size_t track, const SFstValue &value)
{
    const SFstStore &store = Store(track);
    const bool isPort = store.kind == SFstStore::EKind::Port;
    if (store.kind == SFstStore::EKind::Real) {
        m_values.SetReal(track, FstReal(value.bytes, m_isBigEndian));
        return true;
    }
    const std::span<std::uint8_t> positions = m_values.Positions(track);
    const bool isNew =
        value.isPacked ? TakePacked(positions, value.bytes) : TakeLetters(positions, value.bytes, isPort);
    return isNew || positions.size() == 1;
}

bool CFstTracks::TakePacked(std::span<std::uint8_t> positions, SFstSpan bits)
{
    bool isNew = false;
    std::size_t i = 0;
    for (; positions.size() - i >= BitGroup; i += BitGroup) {
        const auto &group = BitGroupPositions[bits[i / BitGroup]];
        isNew |= std::memcmp(&positions[i], group.data(), BitGroup) != 0;
        std::memcpy(&positions[i], group.data(), BitGroup);
    }
    for (; i < positions.size(); ++i) {
        const std::uint8_t position = BitGroupPositions[bits[i / BitGroup]][i % BitGroup];
        isNew |= positions[i] != position;
        positions[i] = position;
    }
    return isNew;
}

bool CFstTracks::TakeLetters(std::span<std::uint8_t> positions, SFstSpan letters, bool isPort)
{
    bool isNew = false;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const std::uint8_t position = isPort ? FstPortValue(letters[i]) : FstValue(letters[i]);
        isNew |= positions[i] != position;
        positions[i] = position;
    }
    return isNew;
}

}  // namespace NTARN
