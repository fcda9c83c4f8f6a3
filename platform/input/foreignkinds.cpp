#include "platform/input/foreignkinds.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace tesk {

namespace {

constexpr SForeignKind Kinds[] = {
    {"a GHW file", "GHDLwave", "", "let the simulator write a VCD or FST file (--vcd=FILE, --fst=FILE)"},
    {"a SAIF file", "(SAIFILE", "", "it counts changes and holds no waveform; give the VCD that it was made from"},
    {"an LXT file", std::string_view("\x01\x38", 2), "", "let the simulator write a VCD or FST file"},
    {"an LXT2 file", std::string_view("\x13\x80", 2), "", "make a VCD of it with lxt2vcd"},
    {"a VZT file", std::string_view("VZ\0", 3), "", "make a VCD of it with vzt2vcd"},
    {"an FSDB file", "", ".fsdb", "make a VCD of it with fsdb2vcd"},
};

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool BeginsWith(std::string_view bytes, std::string_view beginning)
{
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    return bytes.size() >= beginning.size() &&
           std::ranges::equal(bytes.substr(0, beginning.size()), beginning, {}, lower, lower);
}

bool Is(const SForeignKind &kind, std::string_view bytes, std::string_view fileName)
{
    return kind.extension.empty() ? BeginsWith(bytes, kind.beginning) : fileName.ends_with(kind.extension);
}

}  // namespace

const SForeignKind *FindForeignKind(std::string_view bytes, std::string_view fileName)
{
    const std::string_view text(std::ranges::find_if_not(bytes, IsBlank), bytes.end());
    const auto found = std::ranges::find_if(Kinds, [&](const SForeignKind &kind) { return Is(kind, text, fileName); });
    return found != std::end(Kinds) ? found : nullptr;
}

std::string ForeignKindText(const SForeignKind &kind)
{
    return "it is " + std::string(kind.name) + ", which is not read; " + std::string(kind.advice);
}

}  // namespace tesk
