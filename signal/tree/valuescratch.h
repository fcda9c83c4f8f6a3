// The two buffers of the process in which the texts of all signals' values are made.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace tesk {

/// The bytes of a value being put together, and the text being made. A text that was handed out lives until the next
/// text operation on any signal.
///
/// Texts of composite values are made in place: the cursor stands at the end of what there is, and a level is a
/// composite or element whose text is being made. Normally a new outermost text starts at the beginning of the buffer;
/// while the marker is set it goes behind the last one.
class CValueScratch {
public:
    CValueScratch();
    CValueScratch(const CValueScratch &) = delete;
    CValueScratch &operator=(const CValueScratch &) = delete;

    unsigned char *Value() { return m_value.get(); }
    std::size_t ValueSize() const { return m_valueSize; }

    /// Grows both buffers, if a value needs it, to `needed` bytes and four times as many. Between texts the cursor then
    /// goes to the beginning. @return false for a value larger than any signal has
    bool ReserveBoth(unsigned long long needed);
    /// As `ReserveBoth`, for the value alone.
    bool ReserveValue(unsigned long long needed);

    /// Copies a text to the cursor, which stays. @return the copy
    const char *Put(std::string_view text);
    /// Copies a text to the cursor, which goes to its end.
    void Append(std::string_view text);
    /// Takes the last character back.
    void DropLast();
    /// Distance of the cursor from the beginning of the outermost text.
    std::size_t Cursor() const { return m_length; }

private:
    friend class CTextLevel;

    void MakeRoom(std::size_t length);
    void Restart();

    std::unique_ptr<unsigned char[]> m_value;
    std::size_t m_valueSize;
    std::unique_ptr<char[]> m_text;
    std::size_t m_textSize;
    std::size_t m_start = 0;   // of the outermost text
    std::size_t m_length = 0;  // from there to the cursor
    bool m_nested = false;     // the marker
    int m_depth = 0;           // levels under way
};

/// The scratch of the process.
CValueScratch &ValueScratch();

/// One level of text making.
class CTextLevel {
public:
    CTextLevel();
    CTextLevel(const CTextLevel &) = delete;
    CTextLevel &operator=(const CTextLevel &) = delete;
    ~CTextLevel();

    /// The text made at this level.
    const char *Text() const;
    /// Takes back what was made at this level. @return null
    const char *NoText();
    /// Ends the level as it stands, with the marker left set: the next outermost text goes behind it. @return null
    const char *Abandon();

private:
    CValueScratch &m_scratch;
    bool m_nested;        // the marker to go back to
    std::size_t m_start;  // from the beginning of the outermost text
};

}  // namespace tesk
