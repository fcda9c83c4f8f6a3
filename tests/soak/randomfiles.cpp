#include "tests/soak/randomfiles.h"

#include <zlib.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "platform/fstwriter/fstwriter.h"
#include "platform/morvel.h"
#include "tests/platform/ghw/ghwmaker.h"

namespace soak {

namespace {

constexpr std::string_view Letters = "01xz";
constexpr const char *StdLogic = "e#9#std_logicc9 UX01ZWLH-";

std::string RandomReal(CDice &dice)
{
    return dice.Number(2000) + "." + dice.Number(100);
}

std::string VcdText(CDice &dice)
{
    std::string text = "$timescale " + std::string(dice.Pick({"1ps", "10ps", "1ns", "100fs"})) + " $end\n";
    text += "$scope module tb $end\n$var wire 1 ! clk $end\n$var real 64 # r $end\n";
    text +=
        "$scope module dut $end\n$var wire 8 \" bus [7:0] $end\n$upscope $end\n$upscope $end\n$enddefinitions $end\n";
    std::size_t time = 0;
    for (std::size_t changes = dice.Below(400); changes > 0; --changes, time += dice.Below(20)) {
        text += "#" + std::to_string(time) + "\n";
        if (dice.Chance(60))
            text += dice.Letters(1, std::string(Letters)) + "!\n";
        if (dice.Chance(60))
            text += "b" + dice.Letters(8, std::string(Letters)) + " \"\n";
        if (dice.Chance(30))
            text += "r" + RandomReal(dice) + " #\n";
    }
    return text;
}

void WriteText(const std::filesystem::path &path, const std::string &text)
{
    std::ofstream(path, std::ios::binary) << text;
}

void WritePacked(const std::filesystem::path &path, const std::string &text)
{
    const gzFile file = gzopen(path.c_str(), "wb1");
    if (file == nullptr)
        throw std::runtime_error("cannot write " + path.string());
    gzwrite(file, text.data(), static_cast<unsigned>(text.size()));
    gzclose(file);
}

void WriteFst(CDice &dice, const std::filesystem::path &path)
{
    std::ofstream out(path, std::ios::binary);
    NTARN::CFstWriter writer(out, -12, "", dice.Chance(50) ? 100 : NTARN::CFstWriter::UsualBlockSize);
    writer.OpenScope(NTARN::EFstScope::Module, "tb");
    const std::uint32_t letter = writer.AddVariable(NTARN::EFstVariable::Wire, NTARN::EFstDirection::In, "clk", 1);
    const std::uint32_t real = writer.AddVariable(NTARN::EFstVariable::Real, NTARN::EFstDirection::None, "r", 64);
    writer.OpenScope(NTARN::EFstScope::Module, "dut");
    const std::uint32_t bus = writer.AddVariable(NTARN::EFstVariable::Wire, NTARN::EFstDirection::None, "bus [7:0]", 8);
    writer.CloseScope();
    writer.CloseScope();
    std::uint64_t time = 0;
    for (std::size_t changes = dice.Below(400); changes > 0; --changes, time += dice.Below(20)) {
        writer.SetTime(time);
        writer.Change(letter, dice.Letters(1, std::string(Letters)));
        writer.Change(bus, dice.Letters(8, std::string(Letters)));
        writer.Change(real, static_cast<double>(dice.Below(1000)) / 8);
    }
    writer.Finish(time);
}

void WriteGhw(CDice &dice, const std::filesystem::path &path)
{
    ghwtest::CGhwMaker maker;
    maker.isBigEndian = dice.Chance(50);
    const std::uint32_t letter =
        maker.Enumeration("std_logic", {"'U'", "'X'", "'0'", "'1'", "'Z'", "'W'", "'L'", "'H'", "'-'"});
    const std::uint32_t real = maker.Type(ghwtest::Real, "real");
    maker.Scope(ghwtest::Instance, "tb").AddSignal("clk", letter, {1}).AddSignal("r", real, {2}).EndScope();
    maker.Snapshot(0, ghwtest::Joined({{0}, ghwtest::RealBytes(maker, 1.5)}));
    const auto change = [&dice] { return ghwtest::CBytes{1, static_cast<std::uint8_t>(dice.Below(9))}; };
    const std::uint64_t cycles = dice.Below(20);
    for (std::uint64_t cycle = 0; cycle < cycles; ++cycle)  // a tick is a femtosecond
        maker.Cycles(cycle * 100000, {{0, change()}, {static_cast<std::int64_t>(dice.Below(90000)), change()}});
    const ghwtest::CBytes bytes = maker.Bytes();
    WriteText(path, std::string(bytes.begin(), bytes.end()));
}

void WriteStream(CDice &dice, const std::filesystem::path &path)
{
    const Morvel::StreamWritePtr writer(Morvel::CreateStreamWrite(path.c_str(), 1000));
    if (!writer)
        throw std::runtime_error("cannot write " + path.string());
    std::array<int, 9> scalars{writer->AddSignal(-1, LetterName, StdLogic)};
    const int bus =
        writer->AddSignal(-1, BusName, "a#28#std_logic_vector(7 downto 0)1 ricd7 0 e#9#std_logicc9 UX01ZWLH-");
    for (int i = 1; i <= 8; ++i)
        scalars[static_cast<std::size_t>(i)] =
            writer->AddSignal(bus, ("(" + std::to_string(8 - i) + ")").c_str(), StdLogic);
    long long time = 0;
    for (std::size_t changes = dice.Below(400); changes > 0;
         --changes, time += static_cast<long long>(dice.Below(20))) {
        const auto value = static_cast<unsigned char>(dice.Below(9));
        writer->AddEvent(scalars[dice.Below(scalars.size())], time, &value);
    }
    if (!dice.Chance(10))  // what was not finished leaves no file
        writer->Finish();
}

void WriteTable(CDice &dice, const std::filesystem::path &path)
{
    std::string text = "time\tdata\treal\n";
    std::size_t time = 0;
    for (std::size_t rows = dice.Below(200); rows > 0; --rows, time += 1 + dice.Below(5))
        text += std::to_string(time) + "\t" + dice.Number(300) + "\t" + RandomReal(dice) + "\n";
    WriteText(path, text);
}

// A file of version 4 with the two columns of `times` and `data`.
void WriteMatlab(CDice &dice, const std::filesystem::path &path)
{
    const auto rows = static_cast<std::uint32_t>(1 + dice.Below(50));
    std::string bytes;
    for (const std::string name : {"times", "data"}) {
        const std::uint32_t header[] = {0, rows, 1, 0, static_cast<std::uint32_t>(name.size() + 1)};
        bytes.append(reinterpret_cast<const char *>(header), sizeof header);
        bytes.append(name.c_str(), name.size() + 1);
        for (std::uint32_t row = 0; row < rows; ++row) {
            const double value = name == "times" ? row : static_cast<double>(dice.Below(256));
            bytes.append(reinterpret_cast<const char *>(&value), sizeof value);
        }
    }
    WriteText(path, bytes);
}

void Damage(CDice &dice, const std::filesystem::path &path)
{
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size == 0)
        return;
    if (dice.Chance(50)) {
        std::filesystem::resize_file(path, dice.Below(size), error);
        return;
    }
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    for (std::size_t bytes = 1 + dice.Below(4); bytes > 0; --bytes) {
        file.seekp(static_cast<std::streamoff>(dice.Below(size)));
        file.put(static_cast<char>(dice.Below(256)));
    }
}

void Write(CDice &dice, const SFile &file)
{
    switch (file.kind) {
    case SFile::Vcd: WriteText(file.path, VcdText(dice)); break;
    case SFile::PackedVcd: WritePacked(file.path, VcdText(dice)); break;
    case SFile::Fst: WriteFst(dice, file.path); break;
    case SFile::Ghw: WriteGhw(dice, file.path); break;
    case SFile::Stream: WriteStream(dice, file.path); break;
    case SFile::Table: WriteTable(dice, file.path); break;
    case SFile::Matlab: WriteMatlab(dice, file.path); break;
    case SFile::KindCount: break;
    }
}

}  // namespace

SFile MakeFile(CDice &dice, const std::filesystem::path &folder)
{
    constexpr const char *Endings[] = {".vcd", ".vcd.gz", ".fst", ".ghw", ".zyn", ".txt", ".mat"};
    static_assert(std::size(Endings) == SFile::KindCount);
    // A MAT-file is read by a process of its own, which takes as long as a hundred others.
    const std::size_t kind = dice.Chance(1) ? std::size_t{SFile::Matlab} : dice.Below(SFile::Matlab);
    const SFile file{static_cast<SFile::EKind>(kind), folder / ("file" + dice.Number(1000000) + Endings[kind])};
    Write(dice, file);
    if (dice.Chance(12))
        Damage(dice, file.path);
    return file;
}

}  // namespace soak
