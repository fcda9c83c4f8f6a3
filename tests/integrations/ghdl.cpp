// The module in GHDL.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integrations/simulation.h"
#include "testpaths.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char *Head = "library ieee; use ieee.std_logic_1164.all; use ieee.numeric_std.all;\n";

constexpr const char *VhdlSignals = R"(
  signal clk, rep, absolute, low_z : std_logic; signal vector : std_logic_vector(7 downto 0); signal nine : std_logic_vector(0 to 8);
  signal part : unsigned(6 downto 3); signal wide : std_logic_vector(99 downto 0);
  signal flag : boolean; signal one : bit; signal bits : bit_vector(3 downto 0); signal count : integer; signal level : natural range 0 to 15;
  signal binary, gray : std_logic_vector(3 downto 0); signal \a+b\ : std_logic;
begin
)";

// The signals of `formulas` are stimulated, those of `plain` are the same in VHDL.
std::string TwiceInVhdl()
{
    std::string design = Head;
    design += std::string("entity formulas is end;\narchitecture a of formulas is") + VhdlSignals + "end;\n" + Head;
    design += std::string("entity plain is end;\narchitecture a of plain is") + VhdlSignals + R"(
  process begin clk <= '1'; wait for 5 ns; clk <= '0'; wait for 5 ns; end process;
  process begin
    wait for 10 ns; rep <= '1'; wait for 10 ns; rep <= '0'; wait for 20 ns; rep <= '1'; wait for 10 ns; rep <= '0'; wait;
  end process;
  process begin wait for 10 ns; absolute <= '1'; wait for 15 ns; absolute <= '0'; wait; end process;
  low_z <= 'L', 'Z' after 3 ns, 'H' after 3.001 ns;
  vector <= x"00", x"aa" after 7 ns, "1111XXZZ" after 12 ns;
  nine <= "UX01ZWLH-", "-HLWZ10XU" after 5 ns;
  part <= "1100", "0101" after 5 ns;
  wide <= (0 => '1', others => '0'), x"123456789ABCDEF0123456789" after 5 ns;
  flag <= true, false after 5 ns;
  one <= '1', '0' after 5 ns;
  bits <= "1100", "0011" after 5 ns;
  count <= 5, -7 after 10 ns;
  level <= 3, 12 after 5 ns;
  process variable n : unsigned(3 downto 0) := "0000"; begin
    binary <= std_logic_vector(n); gray <= std_logic_vector(n xor shift_right(n, 1)); wait for 10 ns; n := n + 1;
  end process;
  \a+b\ <= '1', '0' after 3 ns;
end;
)";
    return design + "entity tb is end;\narchitecture a of tb is begin plain: entity work.plain; formulas: entity "
                    "work.formulas; end;\n";
}

constexpr const char *TwiceBenchInVhdl = R"(scope = "tb.formulas"
until = "100ns"
[signals]
clk = "1 0ns, 0 5ns -r 10ns"
rep = "1 10ns, 0 20ns -r 30ns"
absolute = "1 @10ns, 0 @25ns"
low_z = "L 0ns, Z 3ns, H 3001ps"
vector = "00000000 0ns, 10101010 7ns, 1111XXZZ 12ns"
nine = "UX01ZWLH- 0ns, -HLWZ10XU 5ns"
part = { formula = "1100 0ns, 0101 5ns", strength = "deposit" }
wide = 'x"1" 0ns, x"123456789ABCDEF0123456789" 5ns'
flag = { formula = "true 0ns, false 5ns", type = "boolean" }
one = "1 0ns, 0 5ns"
bits = "1100 0ns, 0011 5ns"
count = "5 0ns, -7 10ns"
level = "3 0ns, 12 5ns"
binary = '\counter\TYPE\1\DIR\1\RADIX\10\START\0\INC\1\PERIOD\10ns\REV\0'
GRAY = '\counter\TYPE\2\DIR\1\RADIX\10\START\0\INC\1\PERIOD\10ns\REV\0'
'\a+b\' = { formula = "1 0ns, 0 3ns", strength = "drive" }
)";

}  // namespace

TEST(ModuleInGhdl, ChangesSignalsAsTheSameStimuliInVhdlDo)
{
    CSimulation simulation;
    simulation.Write("design.vhd", TwiceInVhdl());
    std::string bench = TwiceBenchInVhdl;
    simulation.Write("bench.toml", bench);
    ASSERT_EQ(simulation.RunGhdl("+tesk=bench.toml --vcd=dump.vcd"), 0) << simulation.Output();
    EXPECT_THAT(simulation.Lines("error"), IsEmpty()) << simulation.Output();
    auto dump = simulation.Dump("dump.vcd");
    for (auto &[name, changes] : dump) {  // the bench ends in the middle of the stimuli in VHDL
        while (!changes.empty() && changes.back().first > 100'000'000)
            changes.pop_back();
    }
    dump.erase("tb.plain.rep");
    EXPECT_EQ(Told(dump.at("tb.formulas.rep")), "0:U 10:1 20:0 40:1 50:0 70:1 80:0 100:1");
    dump.erase("tb.formulas.rep");
    ExpectSameChanges(dump, "tb.formulas", "tb.plain", 15);
}

TEST(ModuleInGhdl, PutsBackWhatWasThereBeforeItForced)
{
    CSimulation simulation;
    simulation.Write("design.vhd", std::string(Head) + R"(
entity tb is end;
architecture a of tb is
  signal driver : std_logic := '0'; signal forced, driven, deposited, idle : std_logic; signal bus4 : std_logic_vector(3 downto 0);
begin
  driver <= not driver after 10 ns;
  forced <= driver; driven <= driver; deposited <= driver; bus4 <= (others => driver);
  parts: for i in 0 to 1 generate signal k : std_logic; begin end generate;
end;
)");
    simulation.Write("bench.toml", R"(scope = "tb"
until = "25ns"
[signals]
forced = "1 2ns, 0 4ns -cancel 15ns"
driven = { formula = "1 2ns, Z 4ns, 0 14ns, Z 16ns", strength = "drive" }
deposited = { formula = "1 2ns, X 14ns", strength = "deposit" }
bus4 = "1Z1Z 2ns -cancel 5ns"
idle = "1 2ns -cancel 4ns"
"parts(1).k" = "1 2ns"
"parts[0].k" = "0 2ns"
)");
    ASSERT_EQ(simulation.RunGhdl("+tesk=bench.toml --vcd=dump.vcd"), 0) << simulation.Output();
    EXPECT_THAT(simulation.Lines("error"), IsEmpty());
    const auto dump = simulation.Dump("dump.vcd");
    const struct {
        const char *signal;
        const char *changes;
    } rows[] = {
        // Released to what they were before they were forced. The driver changes at 10 ns and 20 ns: GHDL does not listen to the
        // drivers of a signal any more once a value was put on it, be it deposited or released.
        {"tb.forced", "0:0 2:1 4:0"},        {"tb.driven", "0:0 2:1 4:0"}, {"tb.deposited", "0:0 2:1 14:X"},
        {"tb.bus4", "0:0000 2:1Z1Z 5:0000"}, {"tb.idle", "0:U 2:1 4:U"},   {"tb.parts[1].k", "0:U 2:1"},
        {"tb.parts[0].k", "0:U 2:0"},
    };
    for (const auto &row : rows) {
        ASSERT_NE(dump.find(row.signal), dump.end()) << row.signal;
        EXPECT_EQ(Told(dump.at(row.signal)), row.changes) << row.signal;
    }
}

TEST(ModuleInGhdl, ReplaysARecordedScopeWithWhatClocksLaunchedBehindThem)
{
    CSimulation simulation;
    simulation.Write("design.vhd", std::string(Head) + R"vhdl(
entity accumulator is
  port (clk, rst_n, valid : in std_logic; din : in unsigned(7 downto 0); sum : out unsigned(7 downto 0));
end;
architecture a of accumulator is signal s : unsigned(7 downto 0); begin
  process (clk, rst_n) begin
    if rst_n = '0' then s <= x"00"; elsif rising_edge(clk) and valid = '1' then s <= s + din; end if;
  end process;
  sum <= s;
end;
)vhdl" + Head + R"vhdl(
entity tb is generic (records : boolean := false); end;
architecture a of tb is
  signal clk, rst_n, valid : std_logic := '0'; signal din, sum : unsigned(7 downto 0) := x"00";
begin
  dut: entity work.accumulator port map (clk, rst_n, valid, din, sum);
  stimuli: if records generate
    clk <= not clk after 5 ns; rst_n <= '0', '1' after 22 ns;
    process (clk) begin if rising_edge(clk) then din <= din + 3; valid <= not valid; end if; end process;
  end generate;
end;
)vhdl");
    simulation.Write("bench.toml", "until = \"300ns\"\n[[replay]]\nfile = \"run.vcd\"\nscope = \"tb.dut\"\n");
    ASSERT_EQ(simulation.RunGhdl(
                  "-grecords=true --stop-time=300ns --vcd=run.vcd && ghdl -r --std=08 tb --vpi='" TESK_MODULE_FOLDER
                  "/tesk.vpi' +tesk=bench.toml --vcd=dump.vcd"),
              0)
        << simulation.Output();
    EXPECT_THAT(simulation.Lines(": error"), IsEmpty());
    EXPECT_EQ(Told(simulation.Dump("dump.vcd").at("tb.dut.sum")), Told(simulation.Dump("run.vcd").at("tb.dut.sum")));
    EXPECT_GE(simulation.Dump("dump.vcd").at("tb.dut.sum").size(), 10U);
}

TEST(ModuleInGhdl, TellsWhatItCannotDo)
{
    CSimulation simulation;
    simulation.Write("design.vhd", std::string(Head) + R"(
entity sub is port (i : in std_logic); end;
architecture a of sub is begin end;
)" + Head + R"(
entity tb is generic (g : integer := 3); end;
architecture a of tb is
  signal request : std_logic := '0'; signal analog : real; constant k : std_logic := '1'; type table is array (0 to 3) of integer;
  signal t : table; signal v : std_logic_vector(3 downto 0);
begin
  dut: entity work.sub port map (request);
  process begin wait for 5 ns; report "never"; wait; end process;
end;
)");
    simulation.Write("bench.toml", R"toml(scope = "tb"
[signals]
recuest = "1 0ns"
analog = "1.5 0ns"
k = "1 0ns"
g = "1 0ns"
t = "1 0ns"
dut = "1 0ns"
"dut.i" = { formula = "1 0ns", strength = "deposit" }
v = { formula = "1 0ns", type = "std_logic_vector(7 downto 0)" }
)toml");
    ;
    simulation.RunGhdl("+tesk=bench.toml");
    EXPECT_THAT(
        simulation.Lines(": error"),
        ElementsAre(
            HasSubstr("bench.toml:3:11: error: there is no \"tb.recuest\" in \"tb\" (did you mean \"tb.request\"?)"),
            HasSubstr("bench.toml:4:10: error: there is no \"tb.analog\" in \"tb\"; GHDL shows no reals"),
            HasSubstr("bench.toml:5:5: error: tb.k is a constant"),
            HasSubstr("bench.toml:6:5: error: tb.g is a constant"),
            HasSubstr("bench.toml:7:5: error: tb.t is an array"), HasSubstr("bench.toml:8:7: error: tb.dut is a scope"),
            HasSubstr("bench.toml:9:23: error: tb.dut.i is an input that its port drives"),
            HasSubstr("bench.toml:10:17: error: tb.v: values are of the type \"std_logic_vector(7 downto 0)\"")));
    EXPECT_THAT(simulation.Lines("never"), IsEmpty());
}
