// Event streams of version 1 of the format, in which every scalar has blocks of its own. Nothing but tests writes them.
#pragma once

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/stream/morvelformat.h"
#include "platform/stream/streampack.h"
#include "platform/stream/varint.h"
#include "tests/platform/stream/streamfiles.h"

inline std::string Deflated(const std::string &bytes)
{
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef *>(packed.data()), &size, reinterpret_cast<const Bytef *>(bytes.data()),
             static_cast<uLong>(bytes.size()));
    packed.resize(size);
    return packed;
}

inline std::string OldStreamHeader(std::uint64_t indexOffset, std::string_view index, long long resolution,
                                   long long endTime)
{
    std::string header(Morvel::Magic);
    Morvel::Append(header, Morvel::OldVersion);
    Morvel::Append(header, std::uint32_t{0});
    Morvel::Append(header, std::int64_t{resolution});
    Morvel::Append(header, std::int64_t{endTime});
    Morvel::Append(header, indexOffset);
    Morvel::Append(header, std::uint64_t{index.size()});
    Morvel::Append(header, Morvel::Crc(index));
    Morvel::Append(header, Morvel::Crc(header));
    return header;
}

/// Makes the blocks of a scalar. @param at  where they begin in the file
/// @return their entries
inline std::string AppendOldBlocks(const CEvents &events, std::size_t at, std::string &blocks)
{
    std::string entries;
    for (std::size_t begin = 0; begin < events.size(); begin += Morvel::EventsPerBlock) {
        const std::size_t end = std::min(begin + Morvel::EventsPerBlock, events.size());
        std::string bytes;
        for (std::size_t i = begin + 1; i < end; ++i)
            Morvel::AppendVarint(bytes, static_cast<std::uint64_t>(events[i].first - events[i - 1].first));
        for (std::size_t i = begin; i < end; ++i)
            bytes += events[i].second;
        const std::string packed = Deflated(bytes);
        Morvel::AppendBlockEntry(entries, {at + blocks.size(), static_cast<std::uint32_t>(packed.size()),
                                           Morvel::Crc(packed), events[begin].first});
        blocks += packed;
    }
    return entries;
}

inline void WriteOldStream(const std::string &file, const std::vector<STreeNode> &nodes, long long resolution = 1000,
                           long long endTime = 0)
{
    std::vector<const STreeNode *> level;  // and all below it, in its order
    for (const STreeNode &node : nodes)
        level.push_back(&node);
    std::vector<std::string> types;
    std::string signals;
    std::string blocks;
    for (std::size_t i = 0; i < level.size(); ++i) {
        const STreeNode &node = *level[i];
        const auto type = std::find(types.begin(), types.end(), node.type);
        signals += node.name + '\0';
        Morvel::Append(signals, static_cast<std::uint32_t>(type - types.begin()));
        if (type == types.end())
            types.push_back(node.type);
        Morvel::Append(signals, static_cast<std::uint32_t>(node.children.size()));
        Morvel::Append(signals, std::uint64_t{node.events.size()});
        signals += AppendOldBlocks(node.events, Morvel::HeaderSize, blocks);
        endTime = node.events.empty() ? endTime : std::max(endTime, node.events.back().first);
        for (const STreeNode &child : node.children)
            level.push_back(&child);
    }
    std::string index;
    Morvel::Append(index, static_cast<std::uint32_t>(types.size()));
    for (const std::string &type : types)
        index += type + '\0';
    Morvel::Append(index, static_cast<std::uint32_t>(level.size()));
    Morvel::Append(index, static_cast<std::uint32_t>(nodes.size()));
    index += signals;
    WriteBytesTo(file,
                 OldStreamHeader(Morvel::HeaderSize + blocks.size(), index, resolution, endTime) + blocks + index);
}
