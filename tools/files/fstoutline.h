// What the writers of FST files share: the unit of time and the scopes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/fstwriter/fstwriter.h"
#include "tools/commandline.h"
#include "tools/files/vcdname.h"

namespace tesk {

/// A tick of the file is a power of ten; what the resolution has beyond that multiplies the times.
struct SFstTimeScale {
    int exponent = -15;
    long long factor;

    /// @param femtoseconds  per tick, at least 1
    explicit SFstTimeScale(long long femtoseconds) : factor(femtoseconds)
    {
        constexpr int Most = 2;
        for (; factor % 10 == 0 && exponent < Most; ++exponent)
            factor /= 10;
    }

    /// @throw CRefusal if the time is too long
    std::uint64_t Time(long long ticks) const
    {
        long long time = 0;
        if (__builtin_mul_overflow(ticks, factor, &time))
            throw CRefusal("a time is too long for an FST file; convert to .zyn or .vcd");
        return static_cast<std::uint64_t>(time);
    }
};

/// The scopes that are open while variables are declared.
class CFstScopes {
public:
    explicit CFstScopes(NTARN::CFstWriter &writer) : m_writer(writer) {}

    void GoTo(const std::vector<std::string> &scopes)
    {
        GoToScopes(
            m_open, scopes, [this] { m_writer.CloseScope(); },
            [this](const std::string &scope) { m_writer.OpenScope(NTARN::EFstScope::Module, scope); });
        m_open = scopes;
    }

private:
    NTARN::CFstWriter &m_writer;
    std::vector<std::string> m_open;
};

/// @throw CRefusal if the file is not whole
inline void FinishFst(NTARN::CFstWriter &writer, std::uint64_t end)
{
    if (!writer.Finish(end))
        throw CRefusal("the FST file cannot be written: " + writer.Error());
}

}  // namespace tesk
