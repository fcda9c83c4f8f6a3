#include "platform/fst/fstunpack.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/fst/fstmaker.h"

namespace {

using namespace fsttest;
using NTARN::EFstPacker;
using NTARN::FstUnpack;
using NTARN::XFstDamage;

std::string FastLz(const CBytes &packed, std::size_t size)
{
    std::string text(size, '.');
    const bool isWhole = NTARN::UnpackFastLz(packed, {reinterpret_cast<std::uint8_t *>(text.data()), size});
    return isWhole ? text : "damaged";
}

CBytes Join(std::initializer_list<CBytes> parts)
{
    CBytes joined;
    for (const CBytes &part : parts)
        joined.insert(joined.end(), part.begin(), part.end());
    return joined;
}

CBytes Literals(const std::string &text)
{
    CBytes run = {static_cast<std::uint8_t>(text.size() - 1)};
    run.insert(run.end(), text.begin(), text.end());
    return run;
}

TEST(FastLz, CopiesWhatWasUnpackedBefore)
{
    EXPECT_EQ(FastLz(Literals("abc"), 3), "abc");
    EXPECT_EQ(FastLz(Join({Literals("abcd"), {1 << 5, 3}}), 7), "abcdabc");
    EXPECT_EQ(FastLz(Join({Literals("abcd"), {1 << 5, 0}, Literals("e")}), 8), "abcdddde");
    EXPECT_EQ(FastLz(Join({Literals("ab"), {7 << 5, 1, 1}}), 12), "abababababab");
}

TEST(FastLz, OfLevel2HasLongerLengthsAndDistances)
{
    CBytes run = Literals("ab");
    run[0] |= 1 << 5;
    EXPECT_EQ(FastLz(Join({run, {7 << 5, 255, 1, 1}}), 2 + 9 + 256), FastLz(Join({run, {7 << 5, 255, 1, 1}}), 267));
    EXPECT_EQ(FastLz(Join({run, {7 << 5, 255, 1, 1}}), 267).substr(260), "ababab"
                                                                         "a");
    // 8191 + 256 * 0 + 2 + 1 bytes back
    const CBytes zeros = {7 << 5, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,
                          255,    255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 25,  0};
    const std::size_t size = 2 + 9 + 32 * 255 + 25;
    ASSERT_EQ(size, 8196U);
    EXPECT_EQ(FastLz(Join({run, zeros, {(1 << 5) + 31, 255, 0, 2}}), size + 3).substr(size), "bbb");
    EXPECT_EQ(FastLz(Join({run, zeros, {(1 << 5) + 31, 255, 0, 3}}), size + 3).substr(size), "bbb");
    EXPECT_EQ(FastLz(Join({run, zeros, {(1 << 5) + 31, 255, 0, 4}}), size + 3).substr(size), "abb");
    EXPECT_EQ(FastLz(Join({run, zeros, {(1 << 5) + 31, 255, 0, 5}}), size + 3), "damaged");
}

TEST(FastLz, RefusesWhatDoesNotFit)
{
    EXPECT_EQ(FastLz({}, 0), "damaged");
    EXPECT_EQ(FastLz({3 << 5, 'a'}, 1), "damaged");                          // no such level
    EXPECT_EQ(FastLz({5, 'a'}, 6), "damaged");                               // literals missing
    EXPECT_EQ(FastLz(Literals("abc"), 2), "damaged");                        // too long
    EXPECT_EQ(FastLz(Literals("abc"), 4), "damaged");                        // too short
    EXPECT_EQ(FastLz(Join({Literals("abcd"), {1 << 5, 4}}), 7), "damaged");  // in front of the beginning
    EXPECT_EQ(FastLz(Join({Literals("abcd"), {1 << 5, 3}}), 6), "damaged");  // copy too long
    EXPECT_EQ(FastLz(Join({Literals("abcd"), {1 << 5}}), 7), "damaged");     // distance missing
    EXPECT_EQ(FastLz(Join({Literals("abcd"), {7 << 5}}), 7), "damaged");     // length missing
}

TEST(FastLz, ReadsAnyBytesWithoutHarm)
{
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        CBytes packed(random() % 40);
        std::ranges::generate(packed, [&] { return static_cast<std::uint8_t>(random()); });
        FastLz(packed, random() % 400);
    }
}

TEST(Unpacking, GivesBackWhatWasPacked)
{
    std::mt19937 random(2);
    for (const std::size_t size : {1U, 2U, 33U, 1000U, 70000U}) {
        CBytes bytes(size);
        std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random() % 3); });
        EXPECT_EQ(FstUnpack(EFstPacker::Zlib, PackZlib(bytes), size), bytes);
        EXPECT_EQ(FstUnpack(EFstPacker::Gzip, PackGzip(bytes), size), bytes);
        EXPECT_EQ(FstUnpack(EFstPacker::Lz4, PackLz4(bytes), size), bytes);
        EXPECT_EQ(FstUnpack(EFstPacker::FastLz, PackFastLz(bytes), size), bytes);
        EXPECT_EQ(NTARN::FstInflateIfPacked(bytes, size), bytes);
    }
}

TEST(Unpacking, GivesBackWhatCouldNotBePackedTighter)
{
    std::vector<std::size_t> sizes = {1'000'000};
    for (std::size_t size = 0; size < 1200; ++size)
        sizes.push_back(size);
    for (const std::size_t size : sizes) {
        const CBytes zeros(size);
        EXPECT_EQ(FstUnpack(EFstPacker::Zlib, PackZlib(zeros), size), zeros);
        EXPECT_EQ(FstUnpack(EFstPacker::Gzip, PackGzip(zeros), size), zeros);
        EXPECT_EQ(FstUnpack(EFstPacker::Lz4, PackLz4(zeros), size), zeros);
    }
    // One letter, and a copy of it that is as long as its bytes can tell.
    CBytes longest = {0x20, 'a', 7 << 5};
    longest.insert(longest.end(), 1000, 0xFF);
    longest.insert(longest.end(), {0, 0});
    const std::size_t size = 1 + 9 + 1000 * 255;
    EXPECT_EQ(FstUnpack(EFstPacker::FastLz, longest, size), CBytes(size, 'a'));
}

TEST(Unpacking, RefusesASizeThatIsNotTheTrueOne)
{
    const CBytes bytes(1000, 7);
    const std::pair<EFstPacker, CBytes> packs[] = {{EFstPacker::Zlib, PackZlib(bytes)},
                                                   {EFstPacker::Gzip, PackGzip(bytes)},
                                                   {EFstPacker::Lz4, PackLz4(bytes)},
                                                   {EFstPacker::FastLz, PackFastLz(bytes)}};
    for (const auto &[packer, packed] : packs) {
        for (const std::uint64_t size : {0ULL, 999ULL, 1001ULL, 1ULL << 33, ~0ULL})
            EXPECT_THROW(FstUnpack(packer, packed, size), XFstDamage) << static_cast<int>(packer) << " " << size;
        EXPECT_THROW(FstUnpack(packer, {}, 5), XFstDamage);
    }
}

TEST(Bytes, AreReadInTheFormatsForms)
{
    const CBytes bytes = CByteWriter()
                             .Number(5)
                             .Varint(300)
                             .SignedVarint(-1)
                             .SignedVarint(-300)
                             .SignedVarint(64)
                             .Text("ab")
                             .SignedVarint(INT64_MIN)
                             .Varint(UINT64_MAX)
                             .bytes;
    NTARN::CFstBytes read(bytes);
    EXPECT_EQ(read.Big<std::uint64_t>(), 5U);
    EXPECT_EQ(read.Varint(), 300U);
    EXPECT_EQ(read.SignedVarint(), -1);
    EXPECT_EQ(read.SignedVarint(), -300);
    EXPECT_EQ(read.SignedVarint(), 64);
    EXPECT_EQ(read.Text(), "ab");
    EXPECT_EQ(read.SignedVarint(), INT64_MIN);
    EXPECT_EQ(read.Varint(), UINT64_MAX);
    EXPECT_TRUE(read.AtEnd());
    EXPECT_THROW(read.Byte(), XFstDamage);
}

TEST(Bytes, RefuseWhatDoesNotEnd)
{
    const CBytes varint(11, 0x80), text = {'a', 'b'}, number(7);
    EXPECT_THROW(NTARN::CFstBytes(varint).Varint(), XFstDamage);
    EXPECT_THROW(NTARN::CFstBytes(NTARN::SFstSpan(varint).first(3)).Varint(), XFstDamage);
    EXPECT_THROW(NTARN::CFstBytes(text).Text(), XFstDamage);
    EXPECT_THROW(NTARN::CFstBytes(number).Big<std::uint64_t>(), XFstDamage);
}

}  // namespace
