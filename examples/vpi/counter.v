`timescale 1ns/1ps
module counter(input clk, input rst_n, input enable, output reg [3:0] count);
  always @(posedge clk or negedge rst_n)
    if (!rst_n) count <= 0;
    else if (enable) count <= count + 1;
`ifdef DUMP
  initial begin $dumpfile(`DUMP); $dumpvars; end
`endif
endmodule
