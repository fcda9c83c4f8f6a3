// 128 lanes of counters and shift registers: what bench/compare_files and bench/compare_diff have simulated. OTHER makes each lane
// do something else, SILENT leaves out the dump.
`timescale 1ns / 1ps

module lane #(parameter STEP = 1) (input clk, input reset);
    reg [31:0] count = 0;
    reg [31:0] state = STEP;
    reg [15:0] sum = 0;
    reg [7:0] gray = 0;
    reg valid = 0;
    real level = 0.0;
    wire [63:0] both = {state, count};
    wire ready = state[3];
    wire full = &gray;
    wire empty = ~|gray;

    always @(posedge clk) begin
        if (reset)
            count <= 0;
        else begin
            count <= count + STEP;
            state <= {state[30:0], state[31] ^ state[21] ^ state[1] ^ state[0]};
            if (state[0]) sum <= sum + state[15:0];
`ifdef OTHER
            if (count[0]) gray <= count[7:0] ^ (count[7:0] >> 2);
`else
            if (count[0]) gray <= count[7:0] ^ (count[7:0] >> 1);
`endif
            valid <= state[1] & state[2];
        end
        if (count[5:0] == 0) level = count / 64.0;
    end
endmodule

module tb;
    reg clk = 0;
    reg reset = 1;
    integer cycle = 0;

    always #5 clk = ~clk;
    always @(posedge clk) cycle <= cycle + 1;

    genvar i;
    generate
        for (i = 0; i < 128; i = i + 1) begin : lanes
            lane #(.STEP(2 * i + 1)) unit (.clk(clk), .reset(reset));
        end
    endgenerate

    initial begin
`ifndef SILENT
        $dumpfile("lanes.vcd");
        $dumpvars(0, tb);
`endif
        #22 reset = 0;
        #`LENGTH $finish;
    end
endmodule
