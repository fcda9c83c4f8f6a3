// Takes a text table apart into values and line ends, in one pass. Internal.
#pragma once

#include <cstdio>
#include <string_view>
#include <vector>

/// Reads the pieces of a file. Values are separated by blanks, tabs, commas and semicolons, runs of them counting as
/// one. Each CR and each LF is a line end of its own.
class CTableReader {
public:
    enum class EPiece { Token, LineEnd, FileEnd };

    /// @param file  stays the caller's
    explicit CTableReader(std::FILE *file);
    CTableReader(const CTableReader &) = delete;
    CTableReader &operator=(const CTableReader &) = delete;

    /// Goes on to the next piece. A file that cannot be read on is at its end.
    EPiece Next();

    /// The token that `Next` found, until the next call of it.
    std::string_view Token() const { return {m_token, static_cast<std::size_t>(m_position - m_token)}; }

    /// How many of something the whole file has if what has been read so far has `count`; 0 if its size is not known.
    std::size_t EstimateTotal(std::size_t count) const;

private:
    bool Refill(char *keep);
    void SetContent(std::size_t length);

    std::FILE *m_file;
    double m_fileSize;  // bytes; 0 if not known
    double m_bytesRead = 0;
    std::vector<char> m_buffer;
    char *m_token;     // of the last token
    char *m_position;  // where reading goes on
    char *m_end;       // of what has been read; a line end stands there
};
