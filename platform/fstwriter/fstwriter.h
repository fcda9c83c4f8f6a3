// Writes FST files, the waveform database of the field.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fstwriter/fstpack.h"
#include "platform/fstwriter/fstwriterblock.h"

namespace NTARN {

// The numbers that the format has for them. There are more of each.
enum class EFstScope : std::uint8_t {
    Module = 0,
    Task = 1,
    Function = 2,
    Begin = 3,
    Fork = 4,
    Generate = 5,
    Struct = 6,
    Package = 10,
    Architecture = 13,
};
enum class EFstVariable : std::uint8_t {
    Event = 0,
    Integer = 1,
    Parameter = 2,
    Real = 3,
    RealParameter = 4,
    Reg = 5,
    Time = 8,
    Wire = 16,
    Realtime = 20,
    Text = 21,
    Bit = 22,
    Logic = 23,
};
enum class EFstDirection : std::uint8_t { None = 0, In = 1, Out = 2, InOut = 3, Buffer = 4, Linkage = 5 };

/// Writes one file: first the scopes and variables, then times and changes, then `Finish`. Memory is bounded: changes are
/// written in blocks, and of the rest only what a variable is and its value are kept.
///
/// A call that makes no sense, and a stream that fails, make the file a failure; the calls that follow do nothing.
class CFstWriter {
public:
    /// What stands for no variable.
    static constexpr std::uint32_t None = 0;
    /// Of the changes of a block.
    static constexpr std::size_t UsualBlockSize = std::size_t{32} << 20;

    /// @param out        at the begin of a file, able to seek; outlives this object
    /// @param exponent   a tick is 10^exponent seconds, -21 to 2
    /// @param date       shown by viewers; may be empty
    /// @param blockSize  bytes of changes after which a block is written
    CFstWriter(std::ostream &out, int exponent, std::string_view date = {}, std::size_t blockSize = UsualBlockSize);
    CFstWriter(const CFstWriter &) = delete;
    CFstWriter &operator=(const CFstWriter &) = delete;

    void OpenScope(EFstScope kind, std::string_view name);
    /// The one opened last.
    void CloseScope();
    /// @param name   with its range, such as "data [7:0]"; up to a NUL
    /// @param width  bits, 1 or more; of reals and texts it does not count
    /// @return its handle; `None` on failure
    std::uint32_t AddVariable(EFstVariable kind, EFstDirection direction, std::string_view name, std::uint32_t width);
    /// Another name for a variable, which has the same changes. @param handle  of that
    void AddAlias(EFstVariable kind, EFstDirection direction, std::string_view name, std::uint32_t handle);

    /// Goes to a time, not earlier than the last one. Changes before the first call are values in front of that time.
    void SetTime(std::uint64_t time);
    /// A variable of bits. @param letters  as many as it is wide, left bound first, of "01xzuwlh-?"; others count as x
    void Change(std::uint32_t handle, std::string_view letters);
    /// A variable that is real.
    void Change(std::uint32_t handle, double real);
    /// A variable of text.
    void ChangeText(std::uint32_t handle, std::string_view text);

    /// Writes what is left. Once. @param end  the last time, if that is later than the last that was set
    /// @return whether the file is whole; else `Error` tells why
    bool Finish(std::uint64_t end = 0);
    /// Empty if nothing failed.
    const std::string &Error() const { return m_error; }

private:
    bool MayDeclare();
    bool MayChange(std::uint32_t handle, EFstValues values);
    void Fail(const char *error);
    void PutVariable(EFstVariable kind, EFstDirection direction, std::string_view name, std::uint32_t store,
                     std::uint32_t alias);
    void BeginChange();
    void WriteBlock(std::uint64_t end);
    void WriteHeader(std::uint64_t end);
    void WriteGeometry();
    void WriteHierarchy();
    void WriteWhole(std::uint8_t kind, SFstSpan contents);

    std::ostream &m_out;
    int m_exponent;
    std::string m_date;
    std::size_t m_blockSize;
    CFstGzip m_hierarchy;
    CFstBuffer m_geometry;
    CFstBuffer m_entry;  // of the hierarchy
    CFstWriterBlock m_block;
    std::string m_letters;  // of a change, as the format has them
    std::uint64_t m_scopes = 0;
    std::uint64_t m_depth = 0;  // scopes that are open
    std::uint64_t m_variables = 0;
    std::uint64_t m_blocks = 0;
    bool m_hasTime = false;
    std::uint64_t m_begin = 0;
    std::uint64_t m_time = 0;
    std::uint64_t m_written = 0;  // the end of the last block
    std::string m_error;
};

}  // namespace NTARN
