-- A sender of packets. The dump beside it:
--   ghdl -a --std=08 packets.vhd && ghdl -r --std=08 packets --wave=packets.ghw
package packet_types is
  type state_t is (idle, header, payload);
  type packet_t is record
    state : state_t;
    valid : bit;
    data  : bit_vector(3 downto 0);
    count : natural;
  end record;
end package;

use work.packet_types.all;

entity packets is end;

architecture test of packets is
  signal tx : packet_t;
  signal pause : time := 5 ns;
begin
  process begin
    wait for 10 ns;
    tx <= (header, '1', x"5", 0);
    wait for 10 ns;
    for i in 1 to 2 loop
      tx.state <= payload;
      tx.data <= x"A";
      tx.count <= i;
      wait for pause;
      pause <= 2 * pause;
      tx.data <= x"3";
      wait for 5 ns;
    end loop;
    tx <= (idle, '0', x"0", 2);
    wait;
  end process;
end;
