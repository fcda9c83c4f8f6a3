-- Signals of every kind of type, for the reader of GHDL's own dumps.
package kinds is
  type state is (idle, run, 'x', \odd name\);
  subtype active is state range run to 'x';
  type weight is range -100000 to 100000 units gram; kg = 1000 gram; end units;
  type small is range -8 to 7;
  type far is range -2**40 to 2**40;
  type level is range 0.0 to 10.0;
  type pair is record valid : bit; place : integer; end record;
  type pairs is array (natural range <>) of pair;
  type nibbles is array (natural range <>) of bit_vector(3 downto 0);
  type rows is array (natural range <>) of bit_vector;
  type grid is array (0 to 1, character range 'a' to 'b') of state;
  type flags is array (state) of boolean;
  type packet is record data : bit_vector; count : natural; end record;
  type packets is array (natural range <>) of packet;
  type tree is record leaf : rows; \a (0)\ : pair; end record;
  signal common : integer := -1;
end package;

library ieee;
use ieee.std_logic_1164.all;
use work.kinds.all;

entity part is
  port (i : in bit; o : out std_logic; s : inout state; v : in pairs(0 to 1));
end;

architecture rtl of part is
  signal inner : bit;
begin
  inner <= i;
  o <= '1' after 2 ns when i = '1' else '0';
end;

library ieee;
use ieee.std_logic_1164.all;
use work.kinds.all;

entity ghw_types is end;

architecture test of ghw_types is
  type letters is ('a', '(', ' ', ',');
  type word is array (0 to 1) of letters;
  type bits is array (integer range <>) of bit;
  signal b : bit;
  signal bo : boolean;
  signal c : character := 'q';
  signal le : letters := ',';
  signal st : state;
  signal ac : active := 'x';
  signal i : integer := -5;
  signal sm : small := 3;
  signal nat : natural;
  signal fa : far := 2**33;
  signal neg : integer range -3 to -1 := -2;
  signal down : integer range 9 downto 0 := 4;
  signal r : real := 1.5;
  signal lv : level := 2.5;
  signal t : time := 3 ns;
  signal w : weight := 2 kg;
  signal u : std_ulogic;
  signal l : std_logic := 'H';
  signal slv : std_logic_vector(7 downto 2) := "01XZHL";
  signal suv : std_ulogic_vector(0 to 2);
  signal na : bits(-1 downto -3);
  signal nul : bit_vector(0 to -1);
  signal nulls : pairs(1 to 0);
  signal str : string(1 to 3) := "abc";
  signal wo : word := ('(', ',');
  signal rv : real_vector(0 to 1) := (0.5, 2.0);
  signal iv : integer_vector(0 to 1) := (1, -1);
  signal tv : time_vector(0 to 0) := (0 => 1 ps);
  signal p : pair;
  signal ps : pairs(0 to 1);
  signal ni : nibbles(3 downto 2);
  signal ro : rows(0 to 1)(3 downto 2);
  signal gr : grid;
  signal fl : flags;
  signal pa : packet(data(1 downto 0));
  signal pas : packets(0 to 1)(data(2 to 4));
  signal tr : tree(leaf(0 to 1)(4 downto 3));
  signal \a.b(1)\ : bit;
  signal o : std_logic;
begin
  process begin
    wait for 10 ns;
    b <= '1'; st <= run; i <= 7; r <= -2.25; w <= 3 gram; t <= 1 us; slv(3) <= '1'; p.place <= 9; p.valid <= '1'; fa <= -4;
    wait for 0 ns;
    b <= '0';
    wait for 0 ns;
    b <= '1';
    wait for 5 ns;
    ps(1).place <= 77; ni(2) <= "1010"; gr(1, 'b') <= run; fl(run) <= true; na(-2) <= '1'; pa.data(0) <= '1';
    pa.count <= 3; \a.b(1)\ <= '1'; common <= 5; c <= ' '; str(2) <= ','; lv <= 0.5; le <= '(';
    wait for 20 ns;
    bo <= true; sm <= -1; ro(1)(2) <= '1'; pas(1).data(3) <= '1'; pas(1).count <= 8; tr.leaf(1)(4) <= '1';
    tr.\a (0)\.place <= 6; b <= '0'; l <= '-'; rv(1) <= -0.0; tv(0) <= 2 hr; iv(1) <= integer'low; down <= 9;
    st <= \odd name\;
    wait;
  end process;
  dut : entity work.part port map (i => b, o => o, s => open, v => ps);
  each : for k in 1 downto 0 generate
    signal s : std_logic;
  begin
    s <= '1' after 3 ns;
  end generate;
  some : for k in state range run to 'x' generate
    signal s : bit;
  begin
    s <= '1' after 3 ns;
  end generate;
  if_so : if true generate
    signal s : bit;
  begin
    s <= '1' after 3 ns;
  end generate;
  blk : block
    signal s : bit;
  begin
  end block;
end;
