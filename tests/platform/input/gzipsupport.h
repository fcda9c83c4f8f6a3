// Packing as gzip does, for tests.
#pragma once

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>
#include <string_view>

inline std::string Gzip(std::string_view text)
{
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 16 + MAX_WBITS, 9, Z_DEFAULT_STRATEGY), Z_OK);
    std::string packed(deflateBound(&stream, text.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}
