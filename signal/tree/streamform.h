// The byte form of signals: 16-bit words, little-endian, and texts with their length in front.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>

#include "base/bytes.h"
#include "signal/signal.h"

namespace tesk {

/// The largest number that a word holds; longer texts are cut there.
inline constexpr std::size_t LargestWord = 0xFFFF;

/// @return the stream's answer
inline long ReadWord(ISignalStream &stream, unsigned &word)
{
    unsigned char bytes[2] = {0, 0};
    const long result = stream.Read(bytes, sizeof bytes);
    word = static_cast<unsigned>(LoadLittleEndian(bytes, sizeof bytes));
    return result;
}

/// @return the stream's answer
inline long WriteWord(ISignalStream &stream, std::size_t word)
{
    unsigned char bytes[2];
    StoreLittleEndian(word, bytes, sizeof bytes);
    return stream.Write(bytes, sizeof bytes);
}

/// @return whether the whole text was there
inline bool ReadText(ISignalStream &stream, std::string &text)
{
    unsigned length = 0;
    if (ReadWord(stream, length) < 0)
        return false;
    text.resize(length);
    return stream.Read(text.data(), length) >= 0;
}

/// @return whether both writes, of the length and of the text, succeeded; both are made in any case
inline bool WriteText(ISignalStream &stream, const char *text)
{
    const std::size_t length = std::min(std::strlen(text), LargestWord);
    const bool lengthWritten = WriteWord(stream, length) >= 0;
    const bool textWritten = stream.Write(text, static_cast<unsigned>(length)) >= 0;
    return lengthWritten && textWritten;
}

}  // namespace tesk
