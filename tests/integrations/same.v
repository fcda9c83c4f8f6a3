// The inputs of same.toml as those of a design that does nothing by itself, for Icarus Verilog and Verilator.
`timescale 1ns/1ps
module tb(input clk, input rst_n, input [7:0] data, input [0:3] upward, input [99:0] wide, input [3:0] gray, input [7:0] noise,
          input [3:0] table_value, input recorded, output reg [7:0] sum, output odd);
  wire [3:0] count;
  reg broken = 0;  // with +broken a gate is missing
  initial broken = $test$plusargs("broken") != 0;
  assign odd = ^{count[3] & !broken, count[2:0]};
  counter counter(clk, rst_n, count);
  genvar g;
  generate for (g = 0; g < 2; g = g + 1) begin: part
    reg k;
    wire inverted = ~k;
  end endgenerate
  always @(posedge clk) sum <= data + {4'b0, upward} + wide[7:0] + {4'b0, gray} + noise + {4'b0, table_value} + {7'b0, recorded};
`ifdef DUMP
  initial begin $dumpfile(`DUMP); $dumpvars(0, tb); end
`endif
endmodule
module counter(input clk, input rst_n, output reg [3:0] count);
  always @(posedge clk or negedge rst_n)
    if (!rst_n) count <= 0;
    else count <= count + 1;
endmodule
