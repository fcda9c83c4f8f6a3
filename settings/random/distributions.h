// The pseudo-random number generators of Verilog.
//
// IEEE Std 1364-2005, 17.9 "Probabilistic distribution functions", by the algorithm in 17.9.3.
#pragma once

namespace tesk::distributions {

// Each draw advances `seed`, a running 32-bit number of which 0 stands for 259341593. The arithmetic is that of the
// standard's C code, in `double` throughout, so that the draws agree with those of a Verilog simulator.

/// The source of all others ($random): evenly from `start` to `end`, or from 0 to 2147483647 if `start` is not below.
double Uniform(int &seed, int start, int end);

/// $dist_normal, before rounding.
double Normal(int &seed, int mean, int deviation);

/// $dist_exponential, before rounding.
double Exponential(int &seed, int mean);

/// $dist_poisson. Some 750 numbers make the greatest draw there is: with a mean above 745 the limit exp(-mean) is 0,
/// and the product of that many numbers between 0 and 1 is 0, too.
int Poisson(int &seed, int mean);

/// $dist_chi_square, before rounding. It sums one term for each two degrees of freedom; above `MostDegrees`, where the
/// distribution has become a normal one with twice the mean as variance, it draws from that instead, so that no draw
/// takes longer than some 20 ms.
double ChiSquare(int &seed, int degrees);
constexpr int MostDegrees = 2'000'000;

/// $dist_t, before rounding.
double T(int &seed, int degrees);

/// $dist_erlang, before rounding. It multiplies `order` numbers between 0 and 1. The product is 0 after some 750 of
/// them, so those above `MostFactors` are left out: they cannot change this draw, nor, through the seed, a later one
/// that is not infinite.
double Erlang(int &seed, int order, int mean);
constexpr int MostFactors = 1'000'000;

/// $dist_uniform: a whole number from `low` to `high`, both included; `low` without a draw unless it is below `high`.
int UniformInteger(int &seed, int low, int high);

/// To the nearest whole number, halves away from 0. What a 32-bit integer cannot hold becomes the smallest one.
int Round(double value);

}  // namespace tesk::distributions
