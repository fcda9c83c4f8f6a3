// The module in Icarus Verilog.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "integrations/simulation.h"
#include "testpaths.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// The signals of `formulas` are stimulated, those of `plain` are the same in Verilog.
constexpr const char *TwiceDesign = R"(`timescale 1ns/1ps
module signals;
  reg clk, cancelled, absolute, mixed;
  reg [7:0] vector; reg [0:3] upward; reg [-1:-4] negative; reg [99:0] wide; reg signed [7:0] level;
  real analog; integer count;
  reg [3:0] binary, down, gray, johnson, one, zero;
  integer uniform, normal, exponential, poisson, chi_square, t, erlang, full;
  reg [7:0] random_bits; integer table_value; reg \a+b.c ; reg never;
  // Icarus Verilog leaves out what nothing uses.
  always @(posedge never) $display(clk, cancelled, absolute, mixed, vector, upward, negative, wide, level, analog, count, binary, down,
    gray, johnson, one, zero, uniform, normal, exponential, poisson, chi_square, t, erlang, full, random_bits, table_value, \a+b.c );
endmodule
module plain;
  signals s();
  reg [3:0] n; integer s1, s2, s3, s4, s5, s6, s7, s8, s9, i;
  initial begin s.clk = 1; forever begin #5 s.clk = 0; #5 s.clk = 1; end end
  initial begin
    #10 s.cancelled = 1; #10 s.cancelled = 0; #20 s.cancelled = 1; #10 s.cancelled = 0; #20 s.cancelled = 1; #10 s.cancelled = 0;
  end
  initial begin #10 s.absolute = 1; #15 s.absolute = 0; #15 s.absolute = 1'bx; #5 s.absolute = 1'bz; end
  initial begin s.mixed = 0; #3.5 s.mixed = 1; #4 s.mixed = 0; #21.001 s.mixed = 1; end
  initial begin s.vector = 0; #7 s.vector = 8'haa; #5 s.vector = 8'b1111xxzz; end
  initial begin s.upward = 4'b1100; #5 s.upward = 4'b1010; end
  initial begin s.negative = 4'b1100; #5 s.negative = 4'b0001; end
  initial begin s.wide = 1; #5 s.wide = 100'h123456789ABCDEF0123456789; end
  initial begin s.level = 5; #5 s.level = -7; end
  initial begin s.analog = 1.5; #10 s.analog = -2.25e3; end
  initial begin s.count = 5; #10 s.count = -7; end
  initial begin
    n = 0; s.johnson = 0; s.one = 1; s.zero = 14;
    forever begin
      s.binary = n; s.down = 4'd9 - 3 * n; s.gray = n ^ (n >> 1);
      #10 n = n + 1; s.johnson = {s.johnson[2:0], ~s.johnson[3]}; s.one = {s.one[2:0], s.one[3]}; s.zero = {s.zero[2:0], s.zero[3]};
    end
  end
  initial begin
    s1 = 5; s2 = 5; s3 = 5; s4 = 5; s5 = 5; s6 = 5; s7 = 5; s8 = 5; s9 = 7;
    forever begin
      s.uniform = $dist_uniform(s1, 0, 1000); s.normal = $dist_normal(s2, 100, 15); s.exponential = $dist_exponential(s3, 100);
      s.poisson = $dist_poisson(s4, 10); s.chi_square = $dist_chi_square(s5, 10); s.t = $dist_t(s6, 3);
      s.erlang = $dist_erlang(s7, 10, 100); s.full = $random(s8); s.random_bits = $dist_uniform(s9, 0, 255);
      #10;
    end
  end
  initial for (i = 0; i < 9; i = i + 1) begin s.table_value = i * i; #5; end
  initial begin s.\a+b.c = 1; forever begin #3 s.\a+b.c = 0; #3 s.\a+b.c = 1; end end
endmodule
module tb;
  plain plain();
  signals formulas();
  initial begin $dumpfile("dump.vcd"); $dumpvars(0, tb); #199 $finish; end
endmodule
)";

std::string Random(const char *settings)
{
    return std::string("'\\RANDOM\\") + settings + "\\10ns'\n";
}

std::string Counter(const char *type, const char *direction, const char *start, const char *increment)
{
    return std::string("'\\counter\\TYPE\\") + type + "\\DIR\\" + direction + "\\RADIX\\10\\START\\" + start +
           "\\INC\\" + increment + "\\PERIOD\\10ns\\REV\\0'\n";
}

const std::string TwiceBench = std::string(R"(scope = "tb.formulas"
[signals]
clk = "1 0ns, 0 5ns -r 10ns"
cancelled = "1 10ns, 0 20ns -r 30ns -cancel 100ns"
absolute = "1 @10ns, 0 @25ns, x @40ns, z @45ns"
mixed = "0 0ns, 1 3.5ns, 0 7.5ns, 1 @28501ps"
vector = "00000000 0ns, 10101010 7ns, 1111xxzz 12ns"
upward = { formula = "1100 0ns, 1010 5ns", strength = "deposit" }
negative = { formula = "1100 0ns, 0001 5ns", strength = "drive" }
wide = 'x"1" 0ns, x"123456789ABCDEF0123456789" 5ns'
level = { formula = "5 0ns, -7 5ns", type = "integer" }
analog = "1.5 0ns, -2250 10ns"
count = "5 0ns, -7 10ns"
table_value = "/txt table.txt,square -time_points time -interval 1ns"
'\a+b.c ' = "1 0ns, 0 3ns -r 6ns"
)") + "binary = " + Counter("1", "1", "0", "1") +
                               "down = " + Counter("1", "2", "9", "3") + "gray = " + Counter("2", "1", "0", "1") +
                               "johnson = " + Counter("3", "1", "0", "1") + "one = " + Counter("4", "1", "1", "1") +
                               "zero = " + Counter("5", "1", "14", "1") + "uniform = " + Random("1\\5\\0\\1000") +
                               "normal = " + Random("2\\5\\100\\15") + "exponential = " + Random("3\\5\\100") +
                               "poisson = " + Random("4\\5\\10") + "chi_square = " + Random("5\\5\\10") +
                               "t = " + Random("6\\5\\3") + "erlang = " + Random("7\\5\\100\\10") +
                               "full = " + Random("8\\5") + "random_bits = " + Random("1\\7\\0\\255");

}  // namespace

TEST(ModuleInIcarus, ChangesSignalsAsTheSameStimuliInVerilogDo)
{
    CSimulation simulation;
    simulation.Write("design.v", TwiceDesign);
    simulation.Write("bench.toml", TwiceBench);
    simulation.Write("table.txt", "time square\n0 0\n5 1\n10 4\n15 9\n20 16\n25 25\n30 36\n35 49\n40 64\n");
    ASSERT_EQ(simulation.RunIcarus("+tesk=bench.toml"), 0) << simulation.Output();
    EXPECT_THAT(simulation.Lines("error"), IsEmpty());
    ExpectSameChanges(simulation.Dump("dump.vcd"), "tb.formulas", "tb.plain.s", 29);
}

TEST(ModuleInIcarus, ForcesDepositsAndReleasesAsVerilogDoes)
{
    CSimulation simulation;
    simulation.Write("design.v", R"(`timescale 1ns/1ps
module sub(input i, output o); assign o = ~i; endmodule
module tb;
  reg driver = 0; wire forced = driver, driven = driver, deposited = driver; wire [3:0] bus = {4{driver}};
  reg twice = 0, replaced = 0, variable = 0, port = 0; wire inverted; reg [1:0] word[0:1]; reg pair_x = 0; wire pair = pair_x;
  sub dut(port, inverted);
  always #10 driver = ~driver;
  always #10 variable = ~variable;
  genvar g;
  generate for (g = 0; g < 2; g = g + 1) begin: part reg k = 0; end endgenerate
  initial begin
    $dumpfile("dump.vcd"); $dumpvars(0, tb); word[0] = 0; $dumpvars(0, word[0]);
    $tesk_stimulate(forced, "1 2ns, 0 4ns -cancel 15ns");
    $tesk_stimulate(driven, "1 2ns, z 4ns, 0 14ns, z 16ns", "Drive");
    $tesk_stimulate(deposited, "1 2ns, x 14ns", "deposit");
    $tesk_stimulate(bus, "1z1z 2ns -cancel 5ns");
    $tesk_stimulate(variable, "x 12ns -cancel 15ns");
    $tesk_stimulate(twice, "1 1ns, 1 2ns, 0 3ns");
    $tesk_stimulate(twice, "1 1ns, 1 2ns, 0 4ns");
    $tesk_stimulate(replaced, "1 0ns, 0 1ns -r 2ns");
    $tesk_stimulate(dut.i, "1 2ns, 0 4ns -cancel 6ns");
    $tesk_stimulate("tb.part[1].k", "1 2ns");
    $tesk_stimulate(word[0], "10 2ns", "deposit");
    #6 $tesk_stimulate(replaced, "0 0ns, 1 4ns");
    #6 $tesk_release(replaced); replaced = 0;
    $tesk_stimulate(pair, "1 0ns"); $tesk_stimulate(pair, "x 0ns"); $tesk_stimulate(pair, "1 0ns");
    #3 $tesk_release(pair);
    #10 $finish;
  end
endmodule
)");
    ASSERT_EQ(simulation.RunIcarus(), 0) << simulation.Output();
    EXPECT_THAT(simulation.Lines("error"), IsEmpty());
    const auto dump = simulation.Dump("dump.vcd");
    const struct {
        const char *signal;
        const char *changes;
    } rows[] = {
        {"tb.forced", "0:0 2:1 4:0 15:1 20:0"},
        {"tb.driven", "0:0 2:1 4:0 10:1 14:0 16:1 20:0"},
        {"tb.deposited", "0:0 2:1 14:X 20:0"},  // at 10 ns the driver sets what is there
        {"tb.bus", "0:0000 2:1Z1Z 5:0000 10:1111 20:0000"},
        {"tb.variable", "0:0 10:1 12:X"},
        {"tb.twice", "0:0 1:1 4:0"},
        {"tb.replaced", "0:1 1:0 2:1 3:0 4:1 5:0 10:1 12:0"},
        {"tb.dut.i", "0:0 2:1 4:0"},
        {"tb.inverted", "0:1 2:0 4:1"},
        {"tb.part[1].k", "0:0 2:1"},
        {"tb.part[0].k", "0:0"},
        {"tb.pair", "0:0 12:1 15:0"},
    };
    for (const auto &row : rows) {
        ASSERT_NE(dump.find(row.signal), dump.end()) << row.signal;
        EXPECT_EQ(Told(dump.at(row.signal)), row.changes) << row.signal;
    }
}

TEST(ModuleInIcarus, EndsTheSimulationForCallsThatCannotBeRight)
{
    CSimulation simulation;
    simulation.Write("design.v", R"(module tb;
  parameter P = 1; reg [7:0] v = 0; reg w = 0; reg m[0:3]; real r; initial m[0] = 0;
  initial begin
    $tesk_stimulate(w);
    $tesk_stimulate(w, "1", "drive", "1");
    $tesk_stimulate(P, "1 0ns");
    $tesk_stimulate(v[3], "1 0ns");
    $tesk_stimulate(v[3:1], "1 0ns");
    $tesk_stimulate(w & w, "1 0ns");
    $tesk_stimulate(12, "1 0ns");
    $tesk_stimulate(m, "1 0ns");
    $tesk_stimulate(tb, "1 0ns");
    $tesk_stimulate(w, 12);
    $tesk_stimulate(w, r);
    $tesk_stimulate($time, "1 0ns");
    $tesk_release;
    $tesk_bench(w, w);
    $display("never");
  end
endmodule
)");
    EXPECT_EQ(simulation.RunIcarus(), 1);
    EXPECT_THAT(
        simulation.Lines("design.v:"),
        ElementsAre(
            AllOf(HasSubstr(
                "design.v:4: error: $tesk_stimulate: has 1 arguments; write $tesk_stimulate(signal, \"formula\"")),
            HasSubstr("design.v:5: error: $tesk_stimulate: has 4 arguments"),
            HasSubstr("design.v:6: error: $tesk_stimulate: argument 1: tb.P is a constant"),
            HasSubstr("design.v:7: error: $tesk_stimulate: argument 1: tb.v[3:3] is a part of a vector; stimulate the "
                      "vector"),
            HasSubstr("design.v:8: error: $tesk_stimulate: argument 1: tb.v[3:1] is a part of a vector"),
            HasSubstr("design.v:9: error: $tesk_stimulate: argument 1: that is "),
            HasSubstr("design.v:10: error: $tesk_stimulate: argument 1: that is a constant"),
            HasSubstr("design.v:11: error: $tesk_stimulate: argument 1: tb.m is an array; stimulate its words"),
            HasSubstr("design.v:12: error: $tesk_stimulate: argument 1: tb is a scope"),
            HasSubstr("design.v:13: error: $tesk_stimulate: argument 2 is no text"),
            HasSubstr("design.v:14: error: $tesk_stimulate: argument 2 is no text"),
            HasSubstr("design.v:15: error: $tesk_stimulate: argument 1: that is no signal"),
            HasSubstr("design.v:16: error: $tesk_release: has 0 arguments; write $tesk_release(signal)"),
            HasSubstr("design.v:17: error: $tesk_bench: has 2 arguments")));
    EXPECT_THAT(simulation.Lines("never"), IsEmpty());
}

TEST(ModuleInIcarus, TellsWhatItCannotDoAndGoesOn)
{
    CSimulation simulation;
    simulation.Write(
        "bad.toml",
        "[signals]\n\"tb.v\" = \"1 0nz\"\n\"tb.vv\" = \"1 0ns\"\nx = { formula = \"1\", colour = \"red\" }\n");
    simulation.Write("design.v", R"(`timescale 1ns/1ns
module sub(input i, output o); assign o = i; endmodule
module tb;
  reg [7:0] vector = 0; reg w = 0; wire o; reg [1:0] word[0:1]; real r = 0; initial word[0] = 0; sub dut(w, o);
  always @(vector or r) ;
  initial begin
    $tesk_stimulate("tb.vectro", "1 0ns");
    $tesk_stimulate("tb.dot.i", "1 0ns");
    $tesk_stimulate("tb..w", "1 0ns");
    $tesk_stimulate("", "1 0ns");
    $tesk_stimulate(w, "");
    $tesk_stimulate(w, "1 0nz");
    $tesk_stimulate(w, "1 10ps");
    $tesk_stimulate(w, "-r");
    $tesk_stimulate(w, "1 0ns", "strong");
    $tesk_stimulate(w, "/custom missing.vcd,tb.w");
    $tesk_stimulate(dut.i, "1 0ns", "deposit");
    $tesk_stimulate(word[0], "1 0ns");
    $tesk_stimulate(w, "hello 0ns");
    $tesk_stimulate(r, "hello 0ns");
    $tesk_stimulate(vector, "(1, 0) 0ns");
    $tesk_release(w); $tesk_release(w);
    $tesk_bench("missing.toml");
    $tesk_bench("bad.toml");
    $display("on and on");
    #1000 $stop;
  end
endmodule
)");
    simulation.RunIcarus();
    const struct {
        int line;
        const char *text;
    } rows[] = {
        {7, "error: $tesk_stimulate: there is no \"tb.vectro\" in \"tb\" (did you mean \"tb.vector\"?)"},
        {8, "error: $tesk_stimulate: there is no \"tb.dot\" in \"tb\" (did you mean \"tb.dut\"?)"},
        {9, "error: $tesk_stimulate: there is no \"tb.\""},
        {10, "error: $tesk_stimulate: there is no name"},
        {12, "error: tb.w: part 1, column 3: unknown time unit \"nz\""},
        {13, "warning: tb.w: part 1"},
        {14, "error: $tesk_stimulate: formula \"-r\""},
        {15, "error: $tesk_stimulate: no strength \"strong\"; write \"override\", \"deposit\" or \"drive\""},
        {16, "error: $tesk_stimulate: formula \"/custom missing.vcd,tb.w\": "},
        {17, "error: $tesk_stimulate: tb.dut.i is an input that its port drives"},
        {18, "error: $tesk_stimulate: tb.word[0] is a word of an array, which cannot be forced"},
        {19, "error: tb.w: part 1, column 1: "},
        {20, "error: tb.r: part 1, column 1: "},
        {22, "error: $tesk_release: tb.w has no stimulator"},
        {23, "error: missing.toml: No such file"},
    };
    for (const auto &row : rows)
        EXPECT_THAT(simulation.Output(), HasSubstr("design.v:" + std::to_string(row.line) + ": " + row.text));
    EXPECT_THAT(simulation.Output(), HasSubstr("bad.toml:4:"));
    EXPECT_THAT(simulation.Output(), HasSubstr("no key \"colour\""));
    EXPECT_THAT(simulation.Lines("on and on"), SizeIs(1));
}

TEST(ModuleInIcarus, ReleasesWhatTheStimulatorBeforeHasForced)
{
    CSimulation simulation;
    simulation.Write("design.v", R"(`timescale 1ns/1ns
module tb;
  reg w = 0, v = 0;
  initial begin
    $tesk_stimulate(w, "1 0ns"); $tesk_stimulate(v, "1 0ns");
    #5 $tesk_stimulate(w, "1 100ns", "deposit"); $tesk_stimulate(v, "Z 0ns", "drive");
    #1 w = 0; v = 0;
    #1 $display("%b%b at 7", w, v);
    $finish;
  end
endmodule
)");
    simulation.RunIcarus();
    EXPECT_THAT(simulation.Lines("at 7"), ElementsAre("00 at 7")) << simulation.Output();
}

TEST(ModuleInIcarus, RefusesValuesOfATypeThatTheSignalDoesNotHave)
{
    const struct {
        const char *signal, *type, *text;
    } rows[] = {
        {"tb.r", "integer", "tb.r: values are of the type \"integer\", which do not fit a signal of the type \"real\""},
        {"tb.v", "real", "tb.v: values are of the type \"real\", which do not fit a signal of the type "},
        {"tb.v", "bit", "tb.v: values are of the type \"bit\", which do not fit a signal of the type "},
    };
    for (const auto &row : rows) {
        CSimulation simulation;
        simulation.Write("types.toml", std::string("[signals]\n\"") + row.signal +
                                           "\" = { formula = \"1 0ns\", type = \"" + row.type + "\" }\n");
        simulation.Write("design.v", "module tb; real r = 0; reg [7:0] v = 0; always @(v or r) ;\n"
                                     "initial begin $tesk_bench(\"types.toml\"); #1 $display(r, v); end endmodule\n");
        simulation.RunIcarus();
        EXPECT_THAT(simulation.Output(), HasSubstr(row.text));
        EXPECT_THAT(simulation.Output(), testing::ContainsRegex("0 +0\n")) << "nothing is put";
    }
}

TEST(ModuleInIcarus, EndsForABenchFromTheCommandLineThatHasFaults)
{
    CSimulation simulation;
    simulation.Write("design.v",
                     "module tb; reg request = 0; always @(request) ; initial #5 $display(\"never\"); endmodule\n");
    simulation.Write("bench.toml", "[signals]\n\"tb.request\" = \"1 0ns\"\n\"tb.recuest\" = \"1 0ns\"\n");
    EXPECT_EQ(simulation.RunIcarus("+tesk=bench.toml"), 1);
    EXPECT_EQ(simulation.RunIcarus("+tesk=missing.toml"), 1);
    EXPECT_THAT(
        simulation.Lines("error"),
        ElementsAre(
            HasSubstr("bench.toml:3:16: error: there is no \"tb.recuest\" in \"tb\" (did you mean \"tb.request\"?)"),
            HasSubstr("tesk: error: missing.toml: No such file")));
    EXPECT_THAT(simulation.Lines("never"), IsEmpty());
}

TEST(ModuleInIcarus, TakesTheBenchOfTheEnvironmentAndEndsWithIt)
{
    CSimulation simulation;
    simulation.Write(
        "design.v",
        "`timescale 1ns/1ps\nmodule tb; reg clk = 0; always @(clk) $display(\"%0t %b\", $time, clk); endmodule\n");
    simulation.Write("bench.toml", "until = \"12ns\"\n[signals]\n\"tb.clk\" = \"1 0ns, 0 5ns -r 10ns\"\n");
    EXPECT_EQ(
        simulation.Run("export TESK_BENCH=bench.toml; iverilog -o design.vvp design.v && vvp -M '" TESK_MODULE_FOLDER
                       "' -m tesk design.vvp"),
        0);
    EXPECT_EQ(simulation.Output(), "0 1\n5000 0\n10000 1\n");
}

namespace {

// What is launched by an edge is seen at the next one.
constexpr const char *RecordedDesign = R"(`timescale 1ns/1ps
module dut(input clk, input rst_n, input [7:0] din, input valid, output reg [7:0] sum, output reg [3:0] count);
  always @(posedge clk or negedge rst_n)
    if (!rst_n) begin sum <= 0; count <= 0; end
    else if (valid) begin sum <= sum + din; count <= count + 1; end
endmodule
module tb;
  reg clk = 0, rst_n = 0, valid = 0; reg [7:0] din = 0; wire [7:0] sum; wire [3:0] count;
  dut dut(clk, rst_n, din, valid, sum, count);
`ifdef RECORD
  integer seed = 3;
  always #5 clk = ~clk;
  always @(posedge clk) begin din <= $random(seed); valid <= ~valid; if ($time > 20) rst_n <= 1; end
`endif
  initial begin $dumpfile(`DUMP); $dumpvars(0, tb); #400 $finish; end
endmodule
)";

}  // namespace

TEST(ModuleInIcarus, ReplaysARecordedScopeWithWhatClocksLaunchedBehindThem)
{
    CSimulation simulation;
    simulation.Write("design.v", RecordedDesign);
    simulation.Write("inputs.toml", "[[replay]]\nfile = \"run.fst\"\nscope = \"tb.dut\"\n");
    simulation.Write(
        "named.toml",
        "[[replay]]\nfile = \"run.fst\"\nscope = \"tb\"\ndrive = [\"clk\", \"rst*\", \"din\", \"valid\"]\n");
    const std::string vvp = "vvp -M '" TESK_MODULE_FOLDER "' -m tesk ";
    ASSERT_EQ(simulation.Run("iverilog -g2012 -DRECORD '-DDUMP=\"run.fst\"' -o run.vvp design.v && " + vvp +
                             "run.vvp -fst &&"
                             "iverilog -g2012 '-DDUMP=\"inputs.vcd\"' -o inputs.vvp design.v && " +
                             vvp +
                             "inputs.vvp +tesk=inputs.toml &&"
                             "iverilog -g2012 '-DDUMP=\"named.vcd\"' -o named.vvp design.v && " +
                             vvp + "named.vvp +tesk=named.toml"),
              0)
        << simulation.Output();
    EXPECT_THAT(simulation.Lines("error"), IsEmpty());
    const auto run = simulation.Dump("run.fst");
    for (const char *dump : {"inputs.vcd", "named.vcd"}) {
        const auto replayed = simulation.Dump(dump);
        for (const char *signal :
             {"tb.dut.clk", "tb.dut.rst_n", "tb.dut.din", "tb.dut.valid", "tb.dut.sum", "tb.dut.count"})
            EXPECT_EQ(Told(replayed.at(signal)), Told(run.at(signal))) << dump << ' ' << signal;
    }
}

TEST(ModuleInIcarus, EndsAReplayWhereItsFileCannotBeRead)
{
    CSimulation simulation;
    simulation.Write("design.v",
                     "`timescale 1ns/1ps\nmodule tb; reg [1:0] a; wire b = a[0]; initial #100 $finish; endmodule\n");
    simulation.Write("bench.toml", "[[replay]]\nfile = \"a.zyn\"\nscope = \"tb\"\ndrive = [\"a\"]\n");
    const std::string record = "$timescale 1ns $end\n$scope module tb $end\n$var wire 2 ! a $end\n$upscope $end\n"
                               "$enddefinitions $end\n#0\nb0 !\n#10\nb1 !\n#20\nb10 !\n";
    simulation.Write("a.vcd", record);
    ASSERT_EQ(simulation.Run("'" TESK_TOOL "' convert a.vcd a.zyn"), 0) << simulation.Output();
    std::fstream stream(simulation.Path("a.zyn"), std::ios::binary | std::ios::in | std::ios::out);
    constexpr std::streamoff FirstBlock = 56;
    stream.seekp(FirstBlock);
    stream << "damaged";
    stream.close();
    EXPECT_EQ(simulation.RunIcarus("+tesk=bench.toml"), 1);
    EXPECT_THAT(simulation.Lines("error"),
                ElementsAre(AllOf(HasSubstr("bench.toml:1:1: error: Event stream a.zyn is damaged: "),
                                  HasSubstr("; nothing of it is replayed any more"))));
}

TEST(ModuleInIcarus, TellsWhatOfAReplayIsNotThere)
{
    CSimulation simulation;
    simulation.Write("design.v", RecordedDesign);
    simulation.Write(
        "bench.toml",
        "[[replay]]\nfile = \"missing.fst\"\nscope = \"tb\"\n"
        "[[replay]]\nfile = \"run.vcd\"\nscope = \"tv\"\nto = \"tb\"\ndrive = \"*\"\n"
        "[[replay]]\nfile = \"run.vcd\"\nscope = \"tb\"\nto = \"tb.dut\"\ndrive = [\"clkk\", \"v\", \"clk\"]\n");
    simulation.Write(
        "run.vcd",
        "$timescale 1ns $end\n$scope module tb $end\n$var wire 1 ! clk $end\n$var wire 3 \" v $end\n$upscope $end\n"
        "$enddefinitions $end\n#0\n0!\nb0 \"\n#10\n1!\n");
    EXPECT_EQ(simulation.Run("iverilog -g2012 '-DDUMP=\"dump.vcd\"' -o run.vvp design.v && vvp -M '" TESK_MODULE_FOLDER
                             "' -m tesk run.vvp +tesk=bench.toml"),
              1);
    EXPECT_THAT(
        simulation.Lines("error"),
        ElementsAre(
            HasSubstr("bench.toml:1:1: error: missing.fst: "),
            HasSubstr("bench.toml:4:1: error: run.vcd: there is nothing below \"tv\" in the file"),
            HasSubstr("bench.toml:9:1: error: there is no \"tb.dut.v\" in \"tb.dut\""),
            HasSubstr("bench.toml:9:1: error: the file has no signal \"clkk\" to drive (did you mean \"clk\"?)")));
}
