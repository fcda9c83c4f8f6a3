#include "settings/random/distributions.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tesk::distributions {

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();

// Truncates toward 0. What does not fit becomes the smallest integer, as in the hardware's conversion.
int Truncate(double value)
{
    return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value) : Lowest;
}

// The next lower whole number; a negative whole number is lowered, too.
int TruncateDown(double value)
{
    return Truncate(value >= 0 ? value : value - 1.0);
}

double Square(double value)
{
    return value * value;
}

}  // namespace

double Uniform(int &seed, int start, int end)
{
    constexpr std::uint32_t SeedForZero = 259341593;
    constexpr std::uint32_t One = 0x3F800000;  // the bits of 1.0F
    const std::uint32_t state = (seed == 0 ? SeedForZero : static_cast<std::uint32_t>(seed)) * 69069U + 1U;
    seed = static_cast<int>(state);

    double c = std::bit_cast<float>((state >> 9) | One);
    c = c + c * 0x1p-23;
    const double low = start < end ? start : 0.0;
    const double high = start < end ? end : 2147483647.0;
    return (high - low) * (c - 1.0) + low;
}

// The polar method: a point in the unit circle, but not its centre.
double Normal(int &seed, int mean, int deviation)
{
    double a = 0.0;
    double s = 1.0;
    while (s >= 1.0 || s == 0.0) {
        a = Uniform(seed, -1, 1);
        const double b = Uniform(seed, -1, 1);
        s = a * a + b * b;
    }
    return deviation * std::sqrt(-2.0 * std::log(s) / s) * a + mean;
}

double Exponential(int &seed, int mean)
{
    const double n = Uniform(seed, 0, 1);
    return n != 0.0 ? -std::log(n) * mean : n;
}

int Poisson(int &seed, int mean)
{
    const double p = std::exp(-static_cast<double>(mean));
    int n = 0;
    for (double q = Uniform(seed, 0, 1); p < q; q = Uniform(seed, 0, 1) * q)
        ++n;
    return n;
}

double ChiSquare(int &seed, int degrees)
{
    if (degrees > MostDegrees)
        return degrees + std::sqrt(2.0 * degrees) * Normal(seed, 0, 1);
    double x = degrees % 2 != 0 ? Square(Normal(seed, 0, 1)) : 0.0;
    for (int pairs = degrees / 2; pairs > 0; --pairs)
        x += 2 * Exponential(seed, 1);
    return x;
}

double T(int &seed, int degrees)
{
    const double chi = ChiSquare(seed, degrees);  // drawn first
    return Normal(seed, 0, 1) / std::sqrt(chi / degrees);
}

double Erlang(int &seed, int order, int mean)
{
    double x = 1.0;
    for (int factors = std::min(order, MostFactors); factors > 0; --factors)
        x *= Uniform(seed, 0, 1);
    return mean * (-1.0 / order) * std::log(x);
}

int UniformInteger(int &seed, int low, int high)
{
    if (low >= high)
        return low;
    if (high < Highest)
        return std::clamp(TruncateDown(Uniform(seed, low, high + 1)), low, high);
    if (low > Lowest)
        return std::max(TruncateDown(Uniform(seed, low - 1, high) + 1.0), low);
    return TruncateDown((Uniform(seed, low, high) + 2147483648.0) * 2.3283064370807974e-10 * 4294967296.0 -
                        2147483648.0);
}

int Round(double value)
{
    if (value >= 0)
        return Truncate(value + 0.5);
    return static_cast<int>(0U - static_cast<unsigned>(Truncate(-value + 0.5)));
}

}  // namespace tesk::distributions
