library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity counter is
  port (clk, rst_n, enable : in std_logic; count : out unsigned(3 downto 0));
end;

architecture rtl of counter is
  signal value : unsigned(3 downto 0);
begin
  process (clk, rst_n)
  begin
    if rst_n = '0' then
      value <= (others => '0');
    elsif rising_edge(clk) and enable = '1' then
      value <= value + 1;
    end if;
  end process;
  count <= value;
end;
