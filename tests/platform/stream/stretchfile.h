// Event streams of one stretch of time whose blocks are made by hand.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/stream/morvelformat.h"
#include "platform/stream/streampack.h"

/// What the index says of the stretch.
struct SStretchClaim {
    std::int64_t first = 0;
    std::int64_t last = 0;
    std::uint32_t lowTrack = 0;
    std::uint32_t highTrack = 6;
    std::uint64_t events = 1;  ///< of each scalar
};

inline Morvel::SPackEntry AppendPack(const std::string &raw, std::string &file)
{
    const std::string packed = Morvel::PackFast(raw);
    const Morvel::SPackEntry entry{file.size(), static_cast<std::uint32_t>(packed.size()),
                                   static_cast<std::uint32_t>(raw.size()), Morvel::Crc(packed)};
    file += packed;
    return entry;
}

/// A stream of the scalars "a" (track 0), of std_logic, "r" (1), a real, "v(3)" to "v(0)" (2 to 5), of std_logic, and "b",
/// which shares the events of track `shared`. All checksums are right.
inline std::string StretchFile(const SStretchClaim &claim, const std::string &table, const std::string &block,
                               std::uint32_t shared = 6)
{
    using Morvel::Append;
    std::string file(Morvel::HeaderSize, '\0');
    const Morvel::SPackEntry tableEntry = AppendPack(table, file);
    const Morvel::SPackEntry blockEntry = AppendPack(block, file);
    const std::string logic = "e#9#std_logicc9 UX01ZWLH-";
    std::string index;
    Append(index, std::uint32_t{3});
    index += logic + '\0' + "f#4#realrrct-1.79769e+308 1.79769e+308" + '\0' +
             "a#28#std_logic_vector(3 downto 0)1 ricd3 0 " + logic + '\0';
    Append(index, std::uint32_t{8});
    Append(index, std::uint32_t{4});
    const auto addScalar = [&](const char *name, std::uint32_t type, std::uint32_t track) {
        index += std::string(name) + '\0';
        Append(index, type);
        Append(index, std::uint32_t{0});
        Append(index, claim.events);
        Append(index, track);
    };
    addScalar("a", 0, 0);
    addScalar("r", 1, 1);
    index += std::string("v") + '\0';
    Append(index, std::uint32_t{2});
    Append(index, std::uint32_t{4});
    addScalar("b", 0, shared);
    addScalar("(3)", 0, 2);
    addScalar("(2)", 0, 3);
    addScalar("(1)", 0, 4);
    addScalar("(0)", 0, 5);
    Append(index, std::uint32_t{1});
    Append(index, claim.first);
    Append(index, claim.last);
    Append(index, claim.lowTrack);
    Append(index, claim.highTrack);
    Append(index, std::uint32_t{1});
    Morvel::AppendPackEntry(index, tableEntry);
    Morvel::AppendPackEntry(index, blockEntry);
    std::string header(Morvel::Magic);
    Append(header, Morvel::Version);
    Append(header, std::uint32_t{0});
    Append(header, std::int64_t{1000});
    Append(header, std::int64_t{100});
    Append(header, std::uint64_t{file.size()});
    Append(header, std::uint64_t{index.size()});
    Append(header, Morvel::Crc(index));
    Append(header, Morvel::Crc(header));
    file.replace(0, header.size(), header);
    return file + index;
}
