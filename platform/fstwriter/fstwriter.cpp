#include "platform/fstwriter/fstwriter.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "platform/fst/fsthierarchy.h"
#include "platform/fst/fstlayout.h"

namespace NTARN {
namespace {

constexpr std::uint64_t MostTime = std::numeric_limits<std::int64_t>::max();
constexpr std::uint32_t RealSize = 8;
constexpr std::uint64_t GeometryText = 0xFFFFFFFF;
constexpr std::uint64_t GeometryReal = 0;
constexpr std::uint8_t ScopeBegin = 254;
constexpr std::uint8_t ScopeEnd = 255;
constexpr std::size_t VersionSize = 128;
constexpr std::size_t DateSize = 119;
constexpr std::uint64_t WriterMemory = 1 << 24;  // a hint that no reader needs

EFstValues ValuesOf(EFstVariable kind)
{
    switch (kind) {
    case EFstVariable::Real:
    case EFstVariable::RealParameter:
    case EFstVariable::Realtime: return EFstValues::Real;
    case EFstVariable::Text: return EFstValues::Text;
    default: return EFstValues::Bits;
    }
}

// The letters as the format has them, by the letter that is given.
constexpr std::array<char, 256> LetterTable = [] {
    constexpr std::string_view Given = "01xzuwlh-?XZUWLH";
    constexpr std::string_view Written = "01xzuwlh-?xzuwlh";
    std::array<char, 256> table = {};
    table.fill('x');
    for (std::size_t i = 0; i < Given.size(); ++i)
        table[static_cast<unsigned char>(Given[i])] = Written[i];
    return table;
}();

void PutPadded(CFstBuffer &bytes, std::string_view text, std::size_t size)
{
    text = text.substr(0, size - 1);
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.resize(bytes.size() + size - text.size());
}

}  // namespace

CFstWriter::CFstWriter(std::ostream &out, int exponent, std::string_view date, std::size_t blockSize)
    : m_out(out), m_exponent(std::clamp(exponent, -21, 2)), m_date(date), m_blockSize(blockSize)
{
    if (exponent != m_exponent)
        Fail("no such time scale");
    WriteHeader(0);  // again at the end, with what is known then
}

void CFstWriter::Fail(const char *error)
{
    if (m_error.empty())
        m_error = error;
}

// -- Scopes and variables

bool CFstWriter::MayDeclare()
{
    if (m_hasTime)
        Fail("a scope or variable behind the first time");
    return m_error.empty();
}

void CFstWriter::OpenScope(EFstScope kind, std::string_view name)
{
    if (!MayDeclare())
        return;
    m_entry = {ScopeBegin, static_cast<std::uint8_t>(kind)};
    PutText(m_entry, name);
    PutText(m_entry, {});  // the component
    m_hierarchy.Add(m_entry);
    ++m_scopes;
    ++m_depth;
}

void CFstWriter::CloseScope()
{
    if (!MayDeclare())
        return;
    if (m_depth == 0)
        return Fail("a scope is closed that is not open");
    m_hierarchy.Add({&ScopeEnd, 1});
    --m_depth;
}

std::uint32_t CFstWriter::AddVariable(EFstVariable kind, EFstDirection direction, std::string_view name,
                                      std::uint32_t width)
{
    const EFstValues values = ValuesOf(kind);
    if (values == EFstValues::Bits && (width == 0 || width > CFstHierarchy::MostWidth))
        Fail("a variable of no width, or of more than 16777216 bits");
    if (m_block.StoreCount() >= std::numeric_limits<std::uint32_t>::max() - 1)
        Fail("too many variables");
    if (!MayDeclare())
        return None;
    m_block.AddStore(values, width);
    const auto store = static_cast<std::uint32_t>(m_block.StoreCount() - 1);
    PutVarint(m_geometry, values == EFstValues::Bits   ? width
                          : values == EFstValues::Real ? GeometryReal
                                                       : GeometryText);
    PutVariable(kind, direction, name, store, 0);
    return store + 1;
}

void CFstWriter::AddAlias(EFstVariable kind, EFstDirection direction, std::string_view name, std::uint32_t handle)
{
    if (handle == None || handle > m_block.StoreCount() || m_block.Values(handle - 1) != ValuesOf(kind))
        Fail("another name for no such variable");
    if (MayDeclare())
        PutVariable(kind, direction, name, handle - 1, handle);
}

void CFstWriter::PutVariable(EFstVariable kind, EFstDirection direction, std::string_view name, std::uint32_t store,
                             std::uint32_t alias)
{
    const EFstValues values = m_block.Values(store);
    m_entry = {static_cast<std::uint8_t>(kind), static_cast<std::uint8_t>(direction)};
    PutText(m_entry, name);
    PutVarint(m_entry, values == EFstValues::Bits ? m_block.Width(store) : values == EFstValues::Real ? RealSize : 0);
    PutVarint(m_entry, alias);
    m_hierarchy.Add(m_entry);
    ++m_variables;
}

// -- Times and changes

void CFstWriter::SetTime(std::uint64_t time)
{
    if (time > MostTime || (m_hasTime && time < m_time))
        Fail("a time that is too long, or earlier than the one before");
    if (!m_error.empty())
        return;
    m_time = time;
    if (m_hasTime)
        return;
    m_hasTime = true;
    m_begin = time;
    m_block.AddTime(time);  // even without a change: readers show what stands in front of the first time of a block
}

bool CFstWriter::MayChange(std::uint32_t handle, EFstValues values)
{
    if (handle == None || handle > m_block.StoreCount() || m_block.Values(handle - 1) != values)
        Fail("a change of no such variable");
    if (!m_error.empty())
        return false;
    if (m_hasTime)
        BeginChange();
    return true;
}

// A block ends between two times, unless all too much happens at one.
void CFstWriter::BeginChange()
{
    const bool isNewTime = !m_block.HasTimes() || m_time != m_block.LastTime();
    if (m_block.HasTimes() && m_block.Size() >= (isNewTime ? m_blockSize : 4 * m_blockSize))
        WriteBlock(m_block.LastTime());
    if (isNewTime || !m_block.HasTimes())
        m_block.AddTime(m_time);
}

void CFstWriter::Change(std::uint32_t handle, std::string_view letters)
{
    if (!MayChange(handle, EFstValues::Bits))
        return;
    if (letters.size() != m_block.Width(handle - 1))
        return Fail("a change of another width than its variable");
    m_letters.resize(letters.size());
    std::ranges::transform(letters, m_letters.begin(),
                           [](char letter) { return LetterTable[static_cast<unsigned char>(letter)]; });
    m_block.AddBits(handle - 1, m_letters);
}

void CFstWriter::Change(std::uint32_t handle, double real)
{
    if (MayChange(handle, EFstValues::Real))
        m_block.AddReal(handle - 1, real);
}

void CFstWriter::ChangeText(std::uint32_t handle, std::string_view text)
{
    if (MayChange(handle, EFstValues::Text))
        m_block.AddText(handle - 1, text);
}

// -- Blocks

// A block begins where the one before ends, so that none is missing between them.
void CFstWriter::WriteBlock(std::uint64_t end)
{
    m_block.Write(m_out, m_blocks == 0 ? m_begin : m_written, end);
    m_written = end;
    ++m_blocks;
}

void CFstWriter::WriteWhole(std::uint8_t kind, SFstSpan contents)
{
    CFstBuffer head = {kind};
    PutNumber(head, contents.size() + 8);
    m_out.write(reinterpret_cast<const char *>(head.data()), static_cast<std::streamsize>(head.size()));
    m_out.write(reinterpret_cast<const char *>(contents.data()), static_cast<std::streamsize>(contents.size()));
}

void CFstWriter::WriteHeader(std::uint64_t end)
{
    CFstBuffer header;
    PutNumber(header, m_begin);
    PutNumber(header, end);
    constexpr double E = 2.7182818284590452354;  // in the byte order of this machine, as all reals
    std::array<std::uint8_t, sizeof E> e;
    std::memcpy(e.data(), &E, sizeof E);
    PutBytes(header, e);
    PutNumber(header, WriterMemory);
    PutNumber(header, m_scopes);
    PutNumber(header, m_variables);
    PutNumber(header, m_block.StoreCount());
    PutNumber(header, m_blocks);
    header.push_back(static_cast<std::uint8_t>(m_exponent));
    PutPadded(header, "tesk", VersionSize);
    PutPadded(header, m_date, DateSize);
    header.push_back(0);   // the language: any
    PutNumber(header, 0);  // the time zero
    WriteWhole(static_cast<std::uint8_t>(EFstBlock::Header), header);
}

void CFstWriter::WriteGeometry()
{
    const CFstBuffer packed = FstDeflateIfShorter(m_geometry);
    CFstBuffer contents;
    PutNumber(contents, m_geometry.size());
    PutNumber(contents, m_block.StoreCount());
    PutBytes(contents, packed);
    WriteWhole(static_cast<std::uint8_t>(EFstBlock::Geometry), contents);
}

void CFstWriter::WriteHierarchy()
{
    for (; m_depth > 0; --m_depth)
        m_hierarchy.Add({&ScopeEnd, 1});
    CFstBuffer contents;
    PutNumber(contents, m_hierarchy.Size());
    PutBytes(contents, m_hierarchy.Finish());
    WriteWhole(static_cast<std::uint8_t>(EFstBlock::Hierarchy), contents);
}

bool CFstWriter::Finish(std::uint64_t end)
{
    if (end > MostTime)
        Fail("a time that is too long");
    if (!m_error.empty())
        return false;
    end = std::max(end, m_time);
    if (m_blocks == 0 && !m_block.HasTimes())
        m_block.AddTime(m_begin);  // readers expect a block
    if (m_block.HasTimes())
        WriteBlock(end);
    WriteGeometry();
    WriteHierarchy();
    m_out.seekp(0);
    WriteHeader(end);
    m_out.seekp(0, std::ios::end);
    m_out.flush();
    if (!m_out)
        Fail("the file cannot be written");
    return m_error.empty();
}

}  // namespace NTARN
