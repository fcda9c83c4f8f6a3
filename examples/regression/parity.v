`timescale 1ns / 1ps
module parity(input [9:0] bits, output odd);
  assign odd = ^bits;
endmodule
