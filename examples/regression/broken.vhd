-- Lacks the gate of one bit.
library ieee;
use ieee.std_logic_1164.all;

entity parity is
  port (bits : in std_logic_vector(9 downto 0); odd : out std_logic);
end entity;

architecture rtl of parity is
begin
  odd <= xor bits(8 downto 0);
end architecture;
