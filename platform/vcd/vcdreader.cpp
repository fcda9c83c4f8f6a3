#include "platform/vcd/vcdreader.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

#include "platform/input/foreignkinds.h"
#include "platform/log.h"
#include "platform/vcd/vcdwords.h"

namespace NTARN::NImport {

namespace {

// What a file may claim: a base, and so much for each of its bytes. Bytes are those of the file, packed as it is, since
// only they cost its maker something.
constexpr long long ElementBase = 1LL << 18;
constexpr long long ElementsPerByte = 8;
constexpr long long VariableBase = 1LL << 16;
constexpr long long BytesPerVariable = 2;
constexpr long long EventBase = 1LL << 25;  // a wide bus changes all its bits with one letter
constexpr long long EventsPerByte = 16;
constexpr long long EventsPerPackedByte = 256;
constexpr long long NameBase = 1LL << 22;
constexpr long long NameBytesPerByte = 64;

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

CVcdReader::CVcdReader(const std::string &fileName, IDatabaseStreamWriter &writer)
    : m_writer(writer), m_fileName(fileName), m_values(writer),
      m_text(fileName, [this](const tesk::CPackedInput &input) { OnRead(input); })
{}

void CVcdReader::ReadHead()
{
    m_writer.open();
    m_writer.beginHeader();
    m_writer.endHeader();
    m_writer.beginSignals();
    m_firstValue = ReadDeclarations();
    m_writer.endSignals();
    if (dynamic_cast<ISteppedEvents *>(&m_writer) != nullptr)
        m_writer.setResolution(&m_resolution);
    m_writer.beginEvents();
    if (!m_writer.acceptsData(0))
        Finish(true);
}

void CVcdReader::Finish(bool isWhole)
{
    m_isFinished = true;
    m_writer.endEvents();
    m_writer.setEndTime(&m_time);
    m_writer.setResolution(&m_resolution);
    m_writer.setFlag(isWhole);
}

void CVcdReader::OnRead(const tesk::CPackedInput &input)
{
    m_bytesRead = input.BytesRead();
    m_fileSize = input.FileSize();
    const long long size = std::max(m_bytesRead, m_fileSize);
    const long long eventsPerByte = input.IsPacked() ? EventsPerPackedByte : EventsPerByte;
    m_values.SetLimits(ElementBase + ElementsPerByte * size, EventBase + eventsPerByte * size);
    m_mostVariables = VariableBase + size / BytesPerVariable;
    m_mostNameBytes = NameBase + NameBytesPerByte * size;
    ReportProgress(input.BytesRead(), input.FileSize());
    if (m_writer.isCancelled())
        throw std::runtime_error(m_fileName + ": the import was cancelled");
}

std::string CVcdReader::AtLine(const std::string &text) const
{
    return m_fileName + ":" + std::to_string(m_text.Line()) + ": " + text;
}

void CVcdReader::Warn(const std::string &text) const
{
    Q71log_PrintFormattedString(2, "VCD", "", AtLine(text).c_str());
}

// Each oddity is told once.
bool CVcdReader::IsFirst(EOddity oddity)
{
    bool &isKnown = m_isKnown[static_cast<int>(oddity)];
    return !std::exchange(isKnown, true);
}

// -- Declarations

// @return the first word behind the declarations; empty if the file ends with them
std::string_view CVcdReader::ReadDeclarations()
try {
    CheckBegin();
    std::string_view word;
    while (m_text.NextWord(word)) {
        if (word.starts_with(ByteOrderMark))
            word.remove_prefix(ByteOrderMark.size());
        if (word.empty())
            continue;
        if (BeginsValues(word))
            return word;
        if (!word.starts_with('$'))
            throw SVcdFault{(m_hasCommands ? "" : "not a VCD file: ") + QuoteVcdWord(word) +
                            " stands where a declaration is expected"};
        ReadCommand(word);
        if (m_areValues)
            return m_text.NextWord(word) ? word : std::string_view();
    }
    throw SVcdFault{m_hasCommands ? "the file ends inside its declarations" : "not a VCD file: it has no declarations"};
} catch (const SVcdFault &fault) {
    throw std::runtime_error(AtLine(fault.text));
}

// What is no VCD at all is not read any further, however long it may be.
void CVcdReader::CheckBegin()
{
    const char first = m_text.NextByte();
    if (first == 0 && m_text.IsAtEnd())
        throw std::runtime_error(m_fileName + ": the file is empty");
    if (first == '$' || first == ByteOrderMark.front())
        return;
    if (const tesk::SForeignKind *const kind = tesk::FindForeignKind(m_text.Ahead(), m_fileName))
        throw SVcdFault{"not a VCD file: " + tesk::ForeignKindText(*kind)};
    throw SVcdFault{"not a VCD file: it does not begin with a declaration"};
}

// Whether a word is the first behind declarations that "$enddefinitions" does not end.
bool CVcdReader::BeginsValues(std::string_view word) const
{
    if (!m_hasCommands || word.size() < 2)
        return false;
    const std::string_view rest = word.substr(1);
    long long time = 0;
    bool isRounded = false;
    switch (word.front()) {
    case '#': return ReadVcdTime(rest, time, isRounded);
    case 'b':
    case 'B': return std::ranges::all_of(rest, [](char c) { return VcdPosition(c, VcdLetters) != NoVcdLetter; });
    case '$': {
        const SVcdCommand *const command = FindVcdCommand(word);
        return command != nullptr && command->command == EVcdCommand::Section;
    }
    default: return VcdPosition(word.front(), VcdLetters) != NoVcdLetter && m_values.IsDeclared(rest);
    }
}

// -- Values

bool CVcdReader::Step()
try {
    if (m_isFinished)
        return false;
    if (ReadValues())
        return true;
    Finish(true);
    return false;
} catch (const SVcdFault &fault) {
    Warn(fault.text + "; the file is read up to " + VcdTimeText(m_time, m_resolution));
    Finish(false);
    return false;
} catch (const std::bad_alloc &) {
    throw std::runtime_error(m_fileName + ": out of memory while the file is read");
}

// Reads values up to a later time. @return false if the file ends
bool CVcdReader::ReadValues()
{
    m_areValues = true;
    const long long time = m_time;
    std::string_view word = std::exchange(m_firstValue, {});
    if (!word.empty())
        ReadWord(word);
    while (m_time == time) {
        if (!m_text.NextWord(word)) {
            CheckEnd();
            return false;
        }
        ReadWord(word);
    }
    return true;
}

void CVcdReader::CheckEnd() const
{
    // Some writers leave "$dumpvars" open where no change follows.
    if (!m_openSection.empty() && (m_openSection != "$dumpvars" || m_text.EndsInsideLine()))
        throw SVcdFault{"the file ends inside " + QuoteVcdWord(m_openSection)};
}

void CVcdReader::ReadWord(std::string_view word)
{
    const std::uint8_t position = VcdPosition(word.front(), VcdLetters);
    if (position != NoVcdLetter)
        return ReadBit(word, position);
    switch (word.front()) {
    case '#': return ReadTime(word);
    case '$': return ReadCommand(word);
    case 'b':
    case 'B': return ReadBits(word);
    case 'r':
    case 'R': return ReadReal(word);
    case 's':
    case 'S': return SkipString();
    case 'p': return ReadPort(word);
    default: LeaveOut(word);
    }
}

// What cannot be read as a value costs nothing but itself, unless it is the end of a file that is cut off.
void CVcdReader::LeaveOut(std::string_view word)
{
    if (m_text.IsAtEnd())
        throw SVcdFault{QuoteVcdWord(word) + " is no value change"};
    if (IsFirst(EOddity::NoValue))
        Warn(QuoteVcdWord(word) + " is no value change; it is left out, as are others like it");
}

// #time. It ends a section that has no "$end".
void CVcdReader::ReadTime(std::string_view word)
{
    const std::string_view digits = TakeVcdWord(word);
    long long time = 0;
    bool isRounded = false;
    if (digits.size() < 2 || digits.front() != '#' || !ReadVcdTime(digits.substr(1), time, isRounded))
        throw SVcdFault{QuoteVcdWord(digits) + " is no time"};
    if (isRounded && IsFirst(EOddity::Fraction))
        Warn(QuoteVcdWord(digits) + " is a time with a fraction; such times are rounded");
    m_openSection = {};
    if (time < m_time && m_text.IsAtEnd())
        throw SVcdFault{"the file ends inside a time"};
    if (time < m_time && IsFirst(EOddity::Backward))
        Warn("the time goes back from " + std::to_string(m_time) + " to " + std::to_string(time) +
             "; it stays where it was until it is reached again");
    m_time = std::max(m_time, time);
    m_values.SetTime(m_time);
}

// A letter and a code, in one word.
void CVcdReader::ReadBit(std::string_view word, std::uint8_t position)
{
    if (word.size() < 2)
        return ReadParted(word, position);
    const std::string_view code = word.substr(1);
    Judge(m_values.SetBit(code, position), code);
}

// A letter alone. Some writers put a blank in front of the code; what is no code may be the next value.
void CVcdReader::ReadParted(std::string_view word, std::uint8_t position)
{
    const std::string_view code = NextOf(word);
    if (m_values.IsDeclared(code))
        return Judge(m_values.SetBit(code, position), code);
    LeaveOut(word);
    if (code.size() > 1)
        ReadWord(code);
}

// The word behind `value`, which stays readable. A value that the file cuts off has none.
std::string_view CVcdReader::NextOf(std::string_view &value)
{
    std::string_view word;
    if (!m_text.NextWord(word, value))
        throw SVcdFault{"the file ends inside a value"};
    return word;
}

void CVcdReader::ReadBits(std::string_view word)
{
    const std::string_view code = NextOf(word);
    SetBits(word, VcdLetters, code);
}

// The value is followed by a strength for 0 and one for 1 of each bit.
void CVcdReader::ReadPort(std::string_view word)
{
    NextOf(word);
    NextOf(word);
    const std::string_view code = NextOf(word);
    SetBits(word, VcdPortLetters, code);
}

// The value's letters stand behind the first of `word`, and in some files behind a "0b".
void CVcdReader::SetBits(std::string_view word, const CVcdLetters &positions, std::string_view code)
{
    std::string_view letters = word.substr(1);
    if (letters.starts_with("0b"))
        letters.remove_prefix(2);
    if (letters.empty() && m_values.IsEmpty(code))
        return;
    if (letters.empty() || !m_bits.Read(letters, positions))
        return LeaveOut(word);
    Judge(m_values.SetBits(code, m_bits), code);
}

void CVcdReader::ReadReal(std::string_view word)
{
    const std::string_view code = NextOf(word);
    double value = 0;
    if (!ReadVcdReal(word.substr(1), value))
        return LeaveOut(word);
    Judge(m_values.SetReal(code, value), code);
}

// A text may have blanks, and its code is the last word of the line.
void CVcdReader::SkipString()
{
    if (IsFirst(EOddity::Strings))
        Warn("values of kind string are left out");
    m_text.SkipLine();
}

void CVcdReader::Judge(EVcdOutcome outcome, std::string_view code)
{
    if (outcome == EVcdOutcome::Taken)
        return;
    if (outcome == EVcdOutcome::UnknownCode && m_text.IsAtEnd())
        throw SVcdFault{"the file ends inside a value"};
    if (outcome == EVcdOutcome::UnknownCode && IsFirst(EOddity::UnknownCode))
        Warn("no variable has the identifier code " + QuoteVcdWord(code) + "; values without one are left out");
    if (outcome == EVcdOutcome::WrongKind && IsFirst(EOddity::WrongKind))
        Warn("a value that does not fit the kind of the variable " + QuoteVcdWord(code) +
             " is left out, as are others like it");
}

}  // namespace NTARN::NImport
