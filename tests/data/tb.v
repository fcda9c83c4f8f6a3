// Signals of every kind that Icarus Verilog dumps, for 200 ns in steps of 1 ps.
`timescale 1ns / 1ps

module counter #(parameter WIDTH = 8) (input wire clk, input wire reset, output reg [WIDTH-1:0] count);
    always @(posedge clk)
        if (reset)
            count <= 0;
        else
            count <= count + 1'b1;

    generate
        genvar i;
        for (i = 0; i < 2; i = i + 1) begin : stage
            reg held;
            always @(count[i]) held = count[i];
        end
    endgenerate
endmodule

module tb;
    parameter DEPTH = 4;
    localparam real HALF = 2.5;

    reg clk = 0;
    reg reset = 1;
    reg [7:0] data = 8'h10;
    wire [7:0] count;
    reg [0:3] ascending = 4'b0001;
    reg [11:4] shifted = 8'hA5;
    reg [2:9] middle = 8'h3C;
    reg [0:0] narrow = 1'b0;
    reg signed [15:0] level = -16'sd100;
    reg [79:0] wide = 80'h0;
    reg [3:0] states = 4'b01xz;
    tri bus_line;
    real voltage = 0.5;
    integer number = -1;
    time stamp = 0;
    event ready;
    reg [7:0] memory [0:DEPTH-1];
    reg Sig = 0;
    reg sig = 1;
    reg \odd+name.of[3] = 0;

    assign bus_line = data[0] ? 1'bz : data[1];

    counter #(.WIDTH(8)) dut (.clk(clk), .reset(reset), .count(count));

    always #(HALF) clk = ~clk;

    // A change at 0, 10, 20 ... 190 ns.
    always #10 begin
        data = data + 8'h11;
        number = number * 3;
        stamp = $time;
        voltage = voltage * -1.5;
        -> ready;
    end

    always #13 begin
        ascending = {ascending[3], ascending[0:2]};
        shifted = shifted + 1'b1;
        middle = ~middle;
        level = level + 16'sd37;
        wide = {wide[78:0], ~wide[79]};
        Sig = ~Sig;
    end

    always #29.125 begin : rotate
        integer turns;
        states = {states[0], states[3:1]};
        narrow = ~narrow;
        sig = ~sig;
        \odd+name.of[3] = ~\odd+name.of[3] ;
        turns = (turns === 'bx) ? 1 : turns + 1;
        memory[1] = turns;
    end

    initial begin
        $dumpfile("tb.dump");
        $dumpvars(0, tb);
        $dumpvars(0, tb.memory[1]);
        #12 reset = 0;
        #188.5 $finish;
    end
endmodule
