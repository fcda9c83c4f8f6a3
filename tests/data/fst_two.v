// A small design for Verilator. Its dump: verilator --binary --trace-fst.
module fst_two;
    typedef enum logic [1:0] {Idle, Busy} state_t;
    bit clk = 0;
    logic [3:0][1:0] grid = 8'h1B;
    state_t state = Idle;
    int number = -3;
    real level = 0.5;
    shortint small_ = 7;
    bit [0:4] up = 5'h1;
    logic [70:0] wide = 71'h1;
    struct packed { logic valid; logic [2:0] data; } packet = 4'h9;

    always #5 clk = ~clk;
    always @(posedge clk) begin
        grid <= grid + 8'h11;
        state <= state == Idle ? Busy : Idle;
        number <= number * 3;
        level <= level * 2.0;
        small_ <= small_ - 1;
        up <= {up[1:4], up[0]};
        wide <= {wide[69:0], wide[70]};
        packet <= packet + 1;
    end
    initial begin
        $dumpfile("fst_two.fst");
        $dumpvars;
        #100 $finish;
    end
endmodule
