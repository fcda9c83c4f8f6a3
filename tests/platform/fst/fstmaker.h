// Makes small FST files to the letter: each part in each of the forms that the format knows.
#pragma once

#include <lz4.h>
#include <zlib.h>

#include <algorithm>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/platform/fst/fsttools.h"

namespace fsttest {

/// Bytes that are written at their end.
class CByteWriter {
public:
    CBytes bytes;

    CByteWriter &Byte(std::uint64_t value)
    {
        bytes.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    CByteWriter &Number(std::uint64_t value)
    {
        for (int shift = 56; shift >= 0; shift -= 8)
            Byte(value >> shift);
        return *this;
    }
    CByteWriter &Varint(std::uint64_t value)
    {
        for (; value > 127; value >>= 7)
            Byte(value | 0x80);
        return Byte(value);
    }
    CByteWriter &SignedVarint(std::int64_t value)
    {
        for (; value < -64 || value > 63; value >>= 7)
            Byte(static_cast<std::uint64_t>(value & 0x7F) | 0x80);
        return Byte(static_cast<std::uint64_t>(value & 0x7F));
    }
    CByteWriter &Text(const std::string &text)
    {
        bytes.insert(bytes.end(), text.begin(), text.end());
        return Byte(0);
    }
    CByteWriter &Append(const CBytes &more)
    {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return *this;
    }
    CByteWriter &Letters(const std::string &letters) { return Append({letters.begin(), letters.end()}); }
    /// A block: kind, length, contents.
    CByteWriter &Block(std::uint64_t kind, const CBytes &contents)
    {
        return Byte(kind).Number(contents.size() + 8).Append(contents);
    }
};

inline CBytes PackZlib(const CBytes &bytes)
{
    uLongf size = compressBound(bytes.size());
    CBytes packed(size);
    compress2(packed.data(), &size, bytes.data(), bytes.size(), 9);
    packed.resize(size);
    return packed;
}

inline CBytes PackGzip(const CBytes &bytes)
{
    CBytes packed(bytes.size() + 100);
    z_stream stream = {};
    deflateInit2(&stream, 4, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY);
    stream.next_in = const_cast<Bytef *>(bytes.data());
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = packed.data();
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(packed.size() - stream.avail_out);
    deflateEnd(&stream);
    return packed;
}

inline CBytes PackLz4(const CBytes &bytes)
{
    CBytes packed(static_cast<std::size_t>(LZ4_compressBound(static_cast<int>(bytes.size()))));
    const int size =
        LZ4_compress_default(reinterpret_cast<const char *>(bytes.data()), reinterpret_cast<char *>(packed.data()),
                             static_cast<int>(bytes.size()), static_cast<int>(packed.size()));
    packed.resize(static_cast<std::size_t>(size));
    return packed;
}

/// Level 1, literals only.
inline CBytes PackFastLz(const CBytes &bytes)
{
    CByteWriter packed;
    for (std::size_t at = 0; at < bytes.size(); at += 32) {
        const std::size_t count = std::min<std::size_t>(32, bytes.size() - at);
        packed.Byte(count - 1);
        packed.bytes.insert(packed.bytes.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at),
                            bytes.begin() + static_cast<std::ptrdiff_t>(at + count));
    }
    return packed.bytes;
}

inline std::string RealLetters(double real)
{
    std::string bytes(sizeof real, 0);
    std::memcpy(bytes.data(), &real, sizeof real);
    return bytes;
}

/// The changes of one store in one block: the index of the time, and the letters.
using CFstChanges = std::vector<std::pair<std::uint64_t, std::string>>;

class CFstMaker {
public:
    // Forms, set before blocks are added.
    int kind = 8;           // of value change blocks: 1, 5 or 8
    char packer = 'Z';      // of chains: 'Z', 'F' or '4'
    bool isPacked = true;   // chains at all
    int hierarchyKind = 4;  // 4, 6 or 7; -1 for none
    bool hasGeometry = true;
    std::size_t geometryExcess = 0;  // bytes behind the geometry that no one asked for
    bool isBigEndian = false;
    int scale = -9;
    std::int64_t timeZero = 0;
    std::uint64_t begin = 0, end = 0;  // in the header

    enum { Real = 3, Reg = 5, Wire = 16, Port = 18, Text = 21 };

    CFstMaker &Scope(const std::string &name)
    {
        m_hierarchy.Byte(254).Byte(0).Text(name).Text("");
        return *this;
    }
    CFstMaker &EndScope()
    {
        m_hierarchy.Byte(255);
        return *this;
    }
    CFstMaker &Attribute(const std::string &text)
    {
        m_hierarchy.Byte(252).Byte(0).Byte(0).Text(text).Varint(300).Byte(253);
        return *this;
    }
    /// @param alias  the store of another variable, from 1; 0 for one of its own
    CFstMaker &Variable(std::uint64_t type, const std::string &name, std::uint64_t length, std::uint64_t alias = 0)
    {
        m_hierarchy.Byte(type).Byte(0).Text(name).Varint(length).Varint(alias);
        if (alias == 0) {
            m_stores.push_back({type, length});
            m_geometry.Varint(type == Real ? 0 : type == Text || length == 0 ? 0xFFFFFFFF : length);
        }
        return *this;
    }
    CFstMaker &Block(std::uint64_t first, const std::vector<std::uint64_t> &times, const std::string &frame,
                     const std::vector<CFstChanges> &changes)
    {
        m_blocks.Block(static_cast<std::uint64_t>(kind), BlockContents(first, times, frame, changes));
        ++m_count;
        return *this;
    }
    CFstMaker &Raw(std::uint64_t blockKind, const CBytes &contents)
    {
        m_blocks.Block(blockKind, contents);
        return *this;
    }

    const CBytes &Hierarchy() const { return m_hierarchy.bytes; }
    /// Any bytes of a hierarchy.
    CFstMaker &RawHierarchy(const CBytes &bytes)
    {
        m_hierarchy.Append(bytes);
        return *this;
    }

    CBytes Bytes() const
    {
        CByteWriter file;
        file.Block(0, Header()).Append(m_blocks.bytes);
        if (hasGeometry) {
            const CBytes geometry = CByteWriter(m_geometry).Append(CBytes(geometryExcess)).bytes;
            file.Block(3,
                       CByteWriter().Number(geometry.size()).Number(m_stores.size()).Append(Shorter(geometry)).bytes);
        }
        if (hierarchyKind >= 0)
            file.Block(static_cast<std::uint64_t>(hierarchyKind), HierarchyContents());
        return file.bytes;
    }

    /// The contents of a block, to be damaged.
    CBytes BlockContents(std::uint64_t first, const std::vector<std::uint64_t> &times, const std::string &frame,
                         const std::vector<CFstChanges> &changes) const
    {
        const auto [chains, index] = Chains(changes);
        return RawBlockContents(first, times.empty() ? first : times.back(), Distances(times), times.size(), frame,
                                chains, index);
    }

    /// The same of parts that are made already.
    CBytes RawBlockContents(std::uint64_t first, std::uint64_t last, const CBytes &distances, std::uint64_t timeCount,
                            const std::string &frame, const CBytes &chains, const CBytes &index) const
    {
        const CBytes frameBytes(frame.begin(), frame.end());
        const CBytes framePacked = Shorter(frameBytes);
        CByteWriter block;
        block.Number(first).Number(last).Number(1000);
        block.Varint(frameBytes.size()).Varint(framePacked.size()).Varint(m_stores.size()).Append(framePacked);
        block.Varint(m_stores.size()).Byte(static_cast<std::uint8_t>(packer));
        block.Append(chains).Append(index).Number(index.size());
        const CBytes packed = Shorter(distances);
        block.Append(packed).Number(distances.size()).Number(packed.size()).Number(timeCount);
        return block.bytes;
    }

private:
    struct SStore {
        std::uint64_t type, length;
    };

    static CBytes Shorter(const CBytes &bytes)
    {
        const CBytes packed = PackZlib(bytes);
        return packed.size() < bytes.size() ? packed : bytes;
    }

    CBytes Header() const
    {
        CByteWriter header;
        header.Number(begin).Number(end);
        std::string e = RealLetters(2.7182818284590452354);
        if (isBigEndian)
            std::ranges::reverse(e);
        header.Letters(e).Number(1).Number(1).Number(1).Number(m_stores.size()).Number(m_count);
        header.Byte(static_cast<std::uint64_t>(scale)).Append(CBytes(128 + 119)).Byte(0);
        return header.Number(static_cast<std::uint64_t>(timeZero)).bytes;
    }

    CBytes HierarchyContents() const
    {
        CByteWriter contents;
        contents.Number(m_hierarchy.bytes.size());
        if (hierarchyKind == 4)
            return contents.Append(PackGzip(m_hierarchy.bytes)).bytes;
        const CBytes once = PackLz4(m_hierarchy.bytes);
        if (hierarchyKind == 6)
            return contents.Append(once).bytes;
        return contents.Varint(once.size()).Append(PackLz4(once)).bytes;
    }

    static CBytes Distances(const std::vector<std::uint64_t> &times)
    {
        CByteWriter distances;
        std::uint64_t last = 0;
        for (const std::uint64_t time : times) {
            distances.Varint(time - last);
            last = time;
        }
        return distances.bytes;
    }

    CBytes Pack(const CBytes &bytes) const
    {
        switch (packer) {
        case '4': return PackLz4(bytes);
        case 'F': return PackFastLz(bytes);
        default: return PackZlib(bytes);
        }
    }

    std::pair<CBytes, CBytes> Chains(const std::vector<CFstChanges> &changes) const
    {
        CByteWriter chains, index;
        std::map<CBytes, std::size_t> known;  // the store that has a chain
        std::uint64_t last = 0;
        std::size_t previousAlias = 0;
        std::uint64_t silent = 0;
        const auto flush = [&] {
            if (silent > 0)
                index.Varint(silent << 1);
            silent = 0;
        };
        for (std::size_t store = 0; store < changes.size(); ++store) {
            const CBytes chain = Chain(m_stores[store], changes[store]);
            if (chain.empty()) {
                ++silent;
                continue;
            }
            flush();
            if (kind != 1 && known.contains(chain)) {
                AddAlias(index, known[chain] + 1, previousAlias);
                continue;
            }
            known[chain] = store;
            const std::uint64_t position = chains.bytes.size() + 1;
            if (kind == 8)
                index.SignedVarint(static_cast<std::int64_t>(position - last) * 2 + 1);
            else
                index.Varint((position - last) << 1 | 1);
            last = position;
            if (isPacked)
                chains.Varint(chain.size()).Append(Pack(chain));
            else
                chains.Varint(0).Append(chain);
        }
        flush();
        return {chains.bytes, index.bytes};
    }

    void AddAlias(CByteWriter &index, std::size_t store, std::size_t &previous) const
    {
        if (kind == 5)
            index.Varint(0).Varint(store);
        else
            index.SignedVarint(store == previous ? 1 : -static_cast<std::int64_t>(store) * 2 + 1);
        previous = store;
    }

    static CBytes Chain(const SStore &store, const CFstChanges &changes)
    {
        CByteWriter chain;
        std::uint64_t last = 0;
        for (const auto &[time, letters] : changes) {
            const std::uint64_t step = time - last;
            last = time;
            const bool isBinary = letters.find_first_not_of("01") == std::string::npos;
            if (store.type == Text)
                chain.Varint(step << 1).Varint(letters.size()).Letters(letters);
            else if (store.type != Real && store.length == 1)
                chain.Varint(Bit(letters[0], step));
            else if (isBinary)
                chain.Varint(step << 1).Append(Bits(letters));
            else
                chain.Varint(step << 1 | 1).Letters(letters);
        }
        return chain.bytes;
    }

    static std::uint64_t Bit(char letter, std::uint64_t step)
    {
        if (letter == '0' || letter == '1')
            return step << 2 | (letter == '1' ? 2U : 0U);
        return step << 4 | std::string("xzhuwl-?").find(letter) << 1 | 1;
    }

    static CBytes Bits(const std::string &letters)
    {
        CBytes bits((letters.size() + 7) / 8);
        for (std::size_t i = 0; i < letters.size(); ++i)
            bits[i / 8] = static_cast<std::uint8_t>(bits[i / 8] | (letters[i] == '1' ? 0x80 >> i % 8 : 0));
        return bits;
    }

    CByteWriter m_hierarchy, m_geometry, m_blocks;
    std::vector<SStore> m_stores;
    std::uint64_t m_count = 0;
};

}  // namespace fsttest
