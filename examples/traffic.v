// Two lights and a counter: what traffic.vcd and traffic.fst were recorded from.
//     iverilog -o traffic traffic.v && vvp traffic && vcd2fst traffic.vcd traffic.fst
`timescale 1ns / 1ns
module tb;
    reg clk = 0;
    reg [3:0] count = 0;
    reg request = 0;
    wire walk = count >= 4'd5 && count < 4'd8;
    real level = 0.5;

    always #5 clk = !clk;
    always @(posedge clk) begin
        count <= count == 4'd9 ? 4'd0 : count + 4'd1;
        level = level * 1.25;
    end

    initial begin
        $dumpfile("traffic.vcd");
        $dumpvars(0, tb);
        #12 request = 1;
        #30 request = 1'bz;
        #18 request = 1'bx;
        #20 request = 0;
        #40 $finish;
    end
endmodule
