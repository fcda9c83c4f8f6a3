// With +record the inputs are made here, and all signals are dumped; without it they come from the record.
`timescale 1ns / 1ps
module tb;
  parameter LENGTH = 500;
  reg clk, rst_n, valid;
  reg [7:0] din;
  wire [9:0] sum;
  wire odd;
  integer seed = 1;
  accumulator dut(clk, rst_n, valid, din, sum, odd);

  initial if ($test$plusargs("record")) begin
    $dumpfile("run.fst");
    $dumpvars(0, tb);
    clk = 0;
    rst_n = 0;
    valid = 0;
    din = 0;
    #12 rst_n = 1;
  end
  always #5 if ($test$plusargs("record")) clk = !clk;
  always @(negedge clk) if ($test$plusargs("record")) begin
    valid <= $random(seed);
    din <= $random(seed);
  end
  initial #LENGTH $finish;
endmodule
