// Lacks the gate of one bit.
`timescale 1ns / 1ps
module parity(input [9:0] bits, output odd);
  assign odd = ^bits[8:0];
endmodule
