-- The inputs of same.toml as signals of a design that does nothing by itself, for GHDL.
library ieee;
use ieee.std_logic_1164.all;
entity tb is
end;
architecture a of tb is
  signal clk, rst_n, recorded : std_logic;
  signal data, noise : std_logic_vector(7 downto 0);
  signal upward : std_logic_vector(0 to 3);
  signal wide : std_logic_vector(99 downto 0);
  signal gray, table_value : std_logic_vector(3 downto 0);
begin
  part: for i in 0 to 1 generate
    signal k : std_logic;
  begin
  end generate;
end;
