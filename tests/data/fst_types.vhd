-- A small design with the types that VHDL dumps have. Its dump: ghdl -r --std=08 fst_types --fst=...
library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity fst_types is
end entity;

architecture test of fst_types is
    type colour is (red, green, blue);
    type pair is record
        valid : std_logic;
        data  : std_logic_vector(1 to 3);
    end record;

    signal clk     : std_logic := '0';
    signal unset   : std_ulogic;
    signal all9    : std_logic_vector(8 downto 0) := "UX01ZWLH-";
    signal word    : unsigned(0 to 7) := (others => '0');
    signal one     : bit_vector(4 downto 4) := "1";
    signal flag    : boolean := false;
    signal number  : integer := -5;
    signal level   : real := 1.5;
    signal shade   : colour := red;
    signal packet  : pair := ('0', "L-H");
    signal \ext.id[3]\ : std_logic_vector(1 downto 0) := "0Z";
begin
    clk <= not clk after 5 ns when now < 60 ns else '0';

    process (clk)
    begin
        if rising_edge(clk) then
            all9   <= all9(7 downto 0) & all9(8);
            word   <= word + 1;
            flag   <= not flag;
            number <= number * 2;
            level  <= level / 2.0;
            packet <= (all9(0), all9(3 downto 1));
            \ext.id[3]\ <= not \ext.id[3]\;
            if shade /= blue then
                shade <= colour'succ(shade);
            end if;
        end if;
    end process;
end architecture;
