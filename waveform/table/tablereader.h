// Takes a text table apart into values and line ends, in one pass.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "base/ascii.h"
#include "platform/crt.h"
#include "platform/files/file.h"
#include "waveform/table/eightdigits.h"

namespace tesk {

/// Reads the pieces of a file. Values are separated by blanks, tabs, commas and semicolons, runs of them counting as
/// one. Each CR and each LF is a line end of its own.
class CTableReader {
public:
    enum class EPiece { Token, LineEnd, FileEnd };

    /// @param file  outlives this object
    explicit CTableReader(const CFile &file);
    CTableReader(const CTableReader &) = delete;
    CTableReader &operator=(const CTableReader &) = delete;

    /// Goes on to the next piece. A line end is left behind; a token is to be taken or skipped before the next call.
    /// A file that cannot be read on is at its end; `Error` tells.
    EPiece Find();
    /// Why the file could not be read on, as an `errno`; 0 if it could.
    int Error() const { return m_error; }

    /// @return the token that was found, until the next call of anything
    std::string_view TakeToken();
    /// Takes the token that was found as a whole number, which it reads as `_atoi64`.
    long long TakeNumber();
    void SkipToken();
    /// Goes on to the end of the line, which is the next piece.
    void SkipLine();

    /// How many of something the whole file has if what has been read so far has `count`; 0 if its size is not known or
    /// too little of it has been read to tell.
    std::size_t EstimateTotal(std::size_t count) const;

private:
    enum EByte : unsigned char { Value, Separator, LineEnd };
    static constexpr std::array<EByte, 256> Bytes = [] {
        std::array<EByte, 256> bytes{};
        for (const char c : {' ', ',', '\t', ';'})
            bytes[static_cast<unsigned char>(c)] = Separator;
        for (const char c : {'\n', '\r'})
            bytes[static_cast<unsigned char>(c)] = LineEnd;
        return bytes;
    }();

    static EByte KindOf(char c) { return Bytes[static_cast<unsigned char>(c)]; }
    void SkipAll(EByte kind);
    char *ReadOn(char *token);
    bool Refill();
    bool RefillBehind(char *keep);
    void SetContent(std::size_t length);

    static constexpr std::size_t Slack = 8;  // a line end, and bytes that may be looked at together with it

    const CFile &m_file;
    int m_error = 0;
    double m_fileSize;  // bytes; 0 if not known
    double m_bytesRead = 0;
    std::vector<char> m_buffer;  // with Slack behind what has been read
    char *m_position;            // where reading goes on
    char *m_end;                 // of what has been read; a line end stands there, which ends every run of other bytes
};

inline CTableReader::EPiece CTableReader::Find()
{
    SkipAll(Separator);
    if (KindOf(*m_position) != LineEnd)
        return EPiece::Token;
    if (m_position == m_end)
        return EPiece::FileEnd;
    ++m_position;
    return EPiece::LineEnd;
}

inline std::string_view CTableReader::TakeToken()
{
    char *token = m_position, *end = token;
    while (KindOf(*end) == Value)
        ++end;
    m_position = end;
    if (end == m_end)
        token = ReadOn(token);
    return {token, static_cast<std::size_t>(m_position - token)};
}

inline long long CTableReader::TakeNumber()
{
    constexpr std::ptrdiff_t SafeDigits = 18;
    unsigned long long number = 0;
    char *end = m_position;
    if (ReadEightDigits(end, number))
        end += 8;
    for (; IsDigit(*end); ++end)
        number = number * 10 + static_cast<unsigned>(*end - '0');
    if (KindOf(*end) == Value || end == m_end || end - m_position > SafeDigits)
        return _atoi64(std::string(TakeToken()).c_str());
    m_position = end;
    return static_cast<long long>(number);
}

inline void CTableReader::SkipToken()
{
    SkipAll(Value);
}

inline void CTableReader::SkipAll(EByte kind)
{
    do {
        char *position = m_position;
        while (KindOf(*position) == kind)
            ++position;
        m_position = position;
    } while (m_position == m_end && Refill());
}

}  // namespace tesk
