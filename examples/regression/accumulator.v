// Adds what is valid, and tells the parity of the sum.
`timescale 1ns / 1ps
module accumulator(input clk, input rst_n, input valid, input [7:0] din, output reg [9:0] sum, output odd);
  parity parity(.bits(sum), .odd(odd));
  always @(posedge clk or negedge rst_n)
    if (!rst_n) sum <= 0;
    else if (valid) sum <= sum + din;
endmodule
