// The words of a VCD file, cut by blanks and line ends, read through one buffer.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/input/packedinput.h"

namespace NTARN::NImport {

/// A fault in the file's text. Never leaves the importer.
struct SVcdFault {
    std::string text;
};

/// Whether a byte parts words.
inline constexpr std::array<bool, 256> VcdBlanks = [] {
    std::array<bool, 256> blanks{};
    for (const char blank : {' ', '\t', '\n', '\v', '\f', '\r'})
        blanks[static_cast<unsigned char>(blank)] = true;
    return blanks;
}();

class CVcdText {
public:
    /// Called after each read; what it throws goes through.
    using FOnRead = std::function<void(const tesk::CPackedInput &input)>;

    /// @throw std::runtime_error if the file cannot be opened or read; so do the reads below, and they throw SVcdFault
    ///        where what is packed cannot be unpacked any further, and for a value of more than `LongestWord` bytes
    CVcdText(const std::string &fileName, FOnRead onRead);

    /// Takes the next word.
    /// @param word  lives until the next call. Any length: the buffer grows with it
    /// @param kept  a word taken before, which shall live on; it is moved along. May be empty
    /// @return false at the end of the file
    bool NextWord(std::string_view &word, std::string_view &kept);
    bool NextWord(std::string_view &word)
    {
        std::string_view none;
        return NextWord(word, none);
    }

    /// The first byte of the next word, which is not taken; 0 at the end of the file.
    char NextByte();
    /// What is read and not taken yet.
    std::string_view Ahead() const { return {m_next, static_cast<std::size_t>(m_end - m_next)}; }
    /// Skips what is left of the line of the word taken last.
    void SkipLine();

    /// The line of the word taken last, from 1.
    long long Line() const { return m_line; }
    /// Whether the word taken last is the last of a file without a final line end. Then it may be a piece of a word.
    bool IsAtEnd() const { return m_atEnd && m_next == m_end; }
    /// Whether the file has been read to its end, and that is not the end of a line.
    bool EndsInsideLine() const { return m_atEnd && m_lastByte != '\n'; }

    /// Twice the bits that a signal may have.
    static constexpr std::size_t LongestWord = std::size_t{1} << 25;

private:
    bool SkipBlanks(std::string_view &kept);
    void CompleteWord(const char *&begin, std::string_view &kept);
    bool Refill(const char *&begin, std::string_view &kept);
    std::size_t Read(char *to, std::size_t room);

    std::string m_fileName;
    tesk::CPackedInput m_input;
    FOnRead m_onRead;
    long long m_line = 1;
    bool m_atEnd = false;    // nothing more to read
    char m_lastByte = '\n';  // that was read
    std::vector<char> m_buffer;
    // What is read and not taken yet. At m_end stand a blank and a 0, which stop a search for either, and bytes that a
    // look at eight may reach.
    const char *m_next;
    const char *m_end;
};

inline bool IsVcdBlank(char c)
{
    return VcdBlanks[static_cast<unsigned char>(c)];
}

inline constexpr std::size_t VcdGroup = sizeof(std::uint64_t);

// Whether a byte among the next eight is below '!', as all blanks are.
inline bool MayHaveVcdBlank(const char *bytes)
{
    constexpr std::uint64_t Ones = 0x0101010101010101;
    std::uint64_t group;
    std::memcpy(&group, bytes, VcdGroup);
    return ((group - Ones * '!') & ~group & Ones * 0x80) != 0;
}

inline bool CVcdText::NextWord(std::string_view &word, std::string_view &kept)
{
    if (!SkipBlanks(kept))
        return false;
    const char *begin = m_next;
    while (!MayHaveVcdBlank(m_next))
        m_next += VcdGroup;
    while (!IsVcdBlank(*m_next))
        ++m_next;
    if (m_next == m_end)
        CompleteWord(begin, kept);
    word = {begin, static_cast<std::size_t>(m_next - begin)};
    return true;
}

inline bool CVcdText::SkipBlanks(std::string_view &kept)
{
    for (;;) {
        for (; IsVcdBlank(*m_next); ++m_next)
            m_line += *m_next == '\n';
        if (m_next < m_end)
            return true;
        m_next = m_end;
        const char *begin = m_end;
        if (!Refill(begin, kept))
            return false;
    }
}

}  // namespace NTARN::NImport
