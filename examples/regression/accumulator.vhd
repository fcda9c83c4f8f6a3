-- The same design in VHDL.
library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity accumulator is
  port (
    clk, rst_n, valid : in std_logic;
    din               : in std_logic_vector(7 downto 0);
    sum               : out std_logic_vector(9 downto 0);
    odd               : out std_logic);
end entity;

architecture rtl of accumulator is
  signal total : unsigned(9 downto 0);
begin
  sum <= std_logic_vector(total);
  parity : entity work.parity port map (bits => sum, odd => odd);

  process (clk, rst_n)
  begin
    if rst_n = '0' then
      total <= (others => '0');
    elsif rising_edge(clk) then
      if valid = '1' then
        total <= total + unsigned(din);
      end if;
    end if;
  end process;
end architecture;

library ieee;
use ieee.std_logic_1164.all;

entity tb is
end entity;

architecture test of tb is
  signal clk, rst_n, valid, odd : std_logic;
  signal din : std_logic_vector(7 downto 0);
  signal sum : std_logic_vector(9 downto 0);
begin
  dut : entity work.accumulator port map (clk, rst_n, valid, din, sum, odd);

  process
  begin
    wait for 500 ns;
    std.env.finish;
  end process;
end architecture;
