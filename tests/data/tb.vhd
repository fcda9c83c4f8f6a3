-- Signals of the kinds that GHDL dumps, for 200 ns in steps of 1 fs.
library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity counter is
    port (clk, reset : in std_logic; count : out std_logic_vector(7 downto 0));
end entity;

architecture rtl of counter is
    signal value : unsigned(7 downto 0) := (others => '0');
begin
    process (clk)
    begin
        if rising_edge(clk) then
            if reset = '1' then
                value <= (others => '0');
            else
                value <= value + 1;
            end if;
        end if;
    end process;
    count <= std_logic_vector(value);

    stage : for i in 0 to 1 generate
        signal held : std_logic := '0';
    begin
        held <= value(i);
    end generate;
end architecture;

library ieee;
use ieee.std_logic_1164.all;
use ieee.numeric_std.all;

entity tb is
end entity;

architecture sim of tb is
    type state_t is (idle, running, done);
    type word_t is array (0 to 3) of std_logic_vector(7 downto 0);
    type pair_t is record
        valid : std_logic;
        data : std_logic_vector(3 downto 0);
    end record;

    signal clk : std_logic := '0';
    signal reset : std_logic := '1';
    signal data : std_logic_vector(7 downto 0) := x"10";
    signal count : std_logic_vector(7 downto 0);
    signal ascending : std_logic_vector(0 to 3) := "0001";
    signal shifted : std_logic_vector(11 downto 4) := x"A5";
    signal middle : std_logic_vector(2 to 9) := x"3C";
    signal narrow : std_logic_vector(0 to 0) := "0";
    signal level : signed(15 downto 0) := to_signed(-100, 16);
    signal states : std_logic_vector(8 downto 0) := "UX01ZWLH-";
    signal letter : std_logic := 'U';
    signal line : std_logic := 'Z';
    signal flag : bit := '0';
    signal truth : boolean := false;
    signal voltage : real := 0.5;
    signal number : integer := -1;
    signal state : state_t := idle;
    signal pair : pair_t := ('0', "0001");
    signal memory : word_t := (others => x"00");
    signal \odd name.of(3)\ : std_logic := '0';
    signal Mixed : std_logic := '0';
begin
    dut : entity work.counter port map (clk => clk, reset => reset, count => count);

    clk <= not clk after 2500 ps;
    reset <= '0' after 12 ns;
    line <= 'Z' when data(0) = '1' else data(1);

    -- A change at 0, 10, 20 ... 200 ns.
    process
    begin
        wait for 10 ns;
        data <= std_logic_vector(unsigned(data) + 16#11#);
        voltage <= voltage * (-1.5);
        flag <= not flag;
        if number > -100000000 then
            number <= number * 3;
        end if;
    end process;

    process
    begin
        wait for 13 ns;
        ascending <= ascending(3) & ascending(0 to 2);
        shifted <= std_logic_vector(unsigned(shifted) + 1);
        middle <= not middle;
        level <= level + 37;
        pair <= (not pair.valid, pair.data(2 downto 0) & pair.data(3));
        truth <= not truth;
        if state = state_t'right then
            state <= state_t'left;
        else
            state <= state_t'rightof(state);
        end if;
    end process;

    process
    begin
        wait for 29125 ps;
        states <= states(0) & states(8 downto 1);
        letter <= states(4);
        narrow <= not narrow;
        \odd name.of(3)\ <= not \odd name.of(3)\;
        Mixed <= not Mixed;
        memory(1) <= std_logic_vector(unsigned(memory(1)) + 1);
    end process;
end architecture;
