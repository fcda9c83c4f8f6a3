// Signals of the kinds that Verilator dumps, for 200 ns in steps of 1 ns.
`timescale 1ns / 1ns

module counter #(parameter WIDTH = 8) (input logic clk, input logic reset, output logic [WIDTH-1:0] count);
    always_ff @(posedge clk)
        if (reset)
            count <= 0;
        else
            count <= count + 1'b1;

    for (genvar i = 0; i < 2; ++i) begin : stage
        logic held;
        assign held = count[i];
    end
endmodule

module tb;
    parameter DEPTH = 4;
    typedef enum logic [1:0] {IDLE, RUNNING, DONE} state_t;
    typedef struct packed {
        logic valid;
        logic [3:0] data;
    } pair_t;

    logic clk = 0;
    logic reset = 1;
    logic [7:0] data = 8'h10;
    logic [7:0] count;
    logic [0:3] ascending = 4'b0001;
    logic [11:4] shifted = 8'hA5;
    logic [2:9] middle = 8'h3C;
    logic [0:0] narrow = 1'b0;
    logic signed [15:0] level = -16'sd100;
    logic [79:0] wide = 80'h0;
    real voltage = 0.5;
    integer number = -1;
    logic [7:0] memory [0:DEPTH-1];
    state_t state = IDLE;
    pair_t pair = 5'b00001;
    logic Sig = 0;
    logic sig = 1;
    logic \odd+name.of[3] = 0;

    counter #(.WIDTH(8)) dut (.clk, .reset, .count);

    always #2 clk = ~clk;

    // A change at 0, 10, 20 ... 190 ns.
    always #10 begin
        data = data + 8'h11;
        number = number * 3;
        voltage = voltage * -1.5;
    end

    always #13 begin
        ascending = {ascending[3], ascending[0:2]};
        shifted = shifted + 1'b1;
        middle = ~middle;
        level = level + 16'sd37;
        wide = {wide[78:0], ~wide[79]};
        pair = {~pair.valid, pair.data[2:0], pair.data[3]};
        state = state == DONE ? IDLE : state_t'(state + 1);
        Sig = ~Sig;
    end

    always #29 begin
        narrow = ~narrow;
        sig = ~sig;
        \odd+name.of[3] = ~\odd+name.of[3] ;
        memory[1] = memory[1] + 1;
    end

    initial begin
        $dumpfile("tb.dump");
        $dumpvars(0);
        #12 reset = 0;
        #188 $finish;
    end
endmodule
