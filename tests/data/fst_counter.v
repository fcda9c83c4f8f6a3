// A small design with every kind of variable that a dump has. Its dump: iverilog -g2012, then vvp.
`timescale 1ns / 10ps
module fst_counter;
    reg clk = 0;
    reg reset = 1;
    reg [3:0] count = 4'bzx10;
    reg [0:6] upward = 7'h2A;
    reg [-1:-4] below = 0;
    reg [99:0] wide = 0;
    reg [7:0] quiet = 8'hA5;
    reg never;
    reg signed [31:0] number = -1;
    real voltage = 0.25;
    integer i = 0;
    event tick;
    wire [3:0] same = count;
    reg [7:0] memory [0:1];
    reg \odd.name[2] = 0;

    child instance_ (clk, count);

    always #2.5 clk = ~clk;
    always @(posedge clk) begin
        count <= reset ? 4'b0 : count + 1;
        upward <= {upward[1:6], upward[0]};
        below <= below + 3;
        wide <= {wide[98:0], ~wide[99] ^ clk};
        voltage = voltage * -1.5;
        i = i + 1;
        -> tick;
        if (i == 5) \odd.name[2] = 1'bz;
        if (i == 6) number = 32'bx;
        if (i % 8 == 7) $dumpoff;
        if (i % 8 == 1) $dumpon;
    end
    initial begin
        $dumpfile("fst_counter.dump");
        $dumpvars(0, fst_counter);
        $dumpvars(0, memory[1]);
        memory[1] = 8'hFF;
        #11 reset = 0;
        #5 memory[1] = 8'h0x;
        #200 $finish;
    end
endmodule

module child (input clk, input [3:0] value);
    reg [1:0] state = 0;
    always @(negedge clk) state <= value[1:0];
endmodule
