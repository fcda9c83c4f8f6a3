#include "fuzz/support/waveforms.h"

#include <cstdint>
#include <fstream>
#include <string>

#include "fuzz/support/inputfile.h"
#include "platform/fstwriter/fstwriter.h"
#include "tests/platform/ghw/ghwmaker.h"
#include "tests/platform/stream/stretchfile.h"

namespace fuzz {

namespace {

constexpr std::string_view Vcd =
    "$timescale 1 ns $end $scope module tb $end $var wire 1 ! a $end $var reg 4 \" v [3:0] $end\n"
    "$scope module dut $end $var real 64 # r $end $var integer 32 $ i $end $upscope $end $upscope $end\n"
    "$enddefinitions $end\n#0\n$dumpvars\nx!\nbx \"\nr0 #\nb0 $\n$end\n#10\n1!\nb101 \"\n#20\n0!\nr1.5e3 #\nbz \"\nb11 "
    "$\n#40\n";

constexpr std::string_view Table = "t a v r\n0 0 0101 1.5\n10 1 1111 -2\n20 x 0000 3e5\n35 0 zzzz 4\n";

void PutFst()
{
    using namespace NTARN;
    std::ofstream out("dump.fst", std::ios::binary);
    CFstWriter writer(out, -9);
    writer.OpenScope(EFstScope::Module, "tb");
    const std::uint32_t bit = writer.AddVariable(EFstVariable::Wire, EFstDirection::In, "a", 1);
    const std::uint32_t bus = writer.AddVariable(EFstVariable::Reg, EFstDirection::Out, "v [3:0]", 4);
    const std::uint32_t real = writer.AddVariable(EFstVariable::Real, EFstDirection::None, "r", 64);
    writer.CloseScope();
    constexpr const char *letters[] = {"0", "1", "x"};
    constexpr const char *words[] = {"0101", "zzzz", "11xx"};
    for (std::uint64_t i = 0; i < 3; ++i) {
        writer.SetTime(i * 10);
        writer.Change(bit, letters[i]);
        writer.Change(bus, words[i]);
        writer.Change(real, static_cast<double>(i) / 2);
    }
    Require(writer.Finish(40));
}

// Version 4: type, rows, columns, whether imaginary, length of the name; the values column by column.
std::string MatMatrix(const std::string &name, std::uint32_t rows, const std::vector<double> &values)
{
    const std::uint32_t header[] = {0, rows, static_cast<std::uint32_t>(values.size()) / rows, 0,
                                    static_cast<std::uint32_t>(name.size() + 1)};
    std::string bytes(reinterpret_cast<const char *>(header), sizeof header);
    bytes.append(name.c_str(), name.size() + 1);
    return bytes.append(reinterpret_cast<const char *>(values.data()), values.size() * sizeof(double));
}

}  // namespace

void PutWaveforms()
{
    static bool s_areThere = false;
    if (s_areThere)
        return;
    s_areThere = true;
    WriteInput("dump.vcd", Vcd);
    WriteInput("table.txt", Table);
    PutFst();
    const ghwtest::CBytes ghw = ghwtest::Sample().Bytes();
    WriteInput("dump.ghw", {reinterpret_cast<const char *>(ghw.data()), ghw.size()});
    const std::string steps{'\2', '\1', '\5'};
    WriteInput("dump.zyn", StretchFile({}, std::string(6, '\1'), steps));
    WriteInput("table.mat", MatMatrix("m", 3, {0, 10, 20, 1, 0, 1, 1.5, -2, 300}) + MatMatrix("t", 3, {0, 5, 9}));
}

}  // namespace fuzz
