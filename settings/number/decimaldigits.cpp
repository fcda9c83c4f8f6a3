// Decimal digits to words. Short texts are read a limb at a time, which takes quadratic time; longer ones are cut into
// blocks that are joined in pairs, by products that take less.
#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "settings/number/bitwords.h"

namespace tesk {

namespace {

// The limbs that are computed with: as wide as the machine multiplies fast.
#if defined(__SIZEOF_INT128__)
using TLimb = std::uint64_t;
__extension__ using TDoubleLimb = unsigned __int128;
constexpr std::size_t StepDigits = 19;  // as many as always fit into a limb
#else
using TLimb = std::uint32_t;
using TDoubleLimb = std::uint64_t;
constexpr std::size_t StepDigits = 9;
#endif
constexpr std::size_t LimbBits = 8 * sizeof(TLimb);

using CLimbs = std::vector<TLimb>;
using CLimbSpan = std::span<const TLimb>;

constexpr std::size_t BlockDigits = 32 * StepDigits;
constexpr std::size_t ShortFactor = 24;  // limbs; below, splitting costs more than it saves

TLimb PowerOfTen(std::size_t exponent)
{
    TLimb power = 1;
    while (exponent-- > 0)
        power *= 10;
    return power;
}

TLimb ReadStep(std::string_view digits)
{
    TLimb value = 0;
    for (const char c : digits)
        value = value * 10 + static_cast<TLimb>(c - '0');
    return value;
}

void MultiplyAdd(CLimbs &limbs, TLimb factor, TLimb summand)
{
    TDoubleLimb carry = summand;
    for (TLimb &limb : limbs) {
        carry += static_cast<TDoubleLimb>(limb) * factor;
        limb = static_cast<TLimb>(carry);
        carry >>= LimbBits;
    }
    if (carry != 0)
        limbs.push_back(static_cast<TLimb>(carry));
}

CLimbs ReadBlock(std::string_view digits)
{
    CLimbs limbs(1);
    while (!digits.empty()) {
        const std::string_view step = digits.substr(0, StepDigits);
        MultiplyAdd(limbs, PowerOfTen(step.size()), ReadStep(step));
        digits.remove_prefix(step.size());
    }
    return limbs;
}

// Adds `summand`, moved up by `shift` limbs. The sum must fit.
void AddAt(CLimbs &limbs, CLimbSpan summand, std::size_t shift)
{
    TDoubleLimb carry = 0;
    for (std::size_t i = 0; i < summand.size() || carry != 0; ++i) {
        if (shift + i >= limbs.size())
            break;  // only zero limbs of the summand stand here
        carry += limbs[shift + i];
        carry += i < summand.size() ? summand[i] : 0;
        limbs[shift + i] = static_cast<TLimb>(carry);
        carry >>= LimbBits;
    }
}

// Subtracts a number that is not greater.
void SubtractFrom(CLimbs &limbs, CLimbSpan subtrahend)
{
    TDoubleLimb borrow = 0;
    for (std::size_t i = 0; i < limbs.size() && (i < subtrahend.size() || borrow != 0); ++i) {
        const TDoubleLimb difference = limbs[i] - borrow - (i < subtrahend.size() ? subtrahend[i] : 0);
        limbs[i] = static_cast<TLimb>(difference);
        borrow = difference >> LimbBits & 1;
    }
}

CLimbs Sum(CLimbSpan left, CLimbSpan right)
{
    CLimbs sum(std::max(left.size(), right.size()) + 1);
    std::ranges::copy(left, sum.begin());
    AddAt(sum, right, 0);
    return sum;
}

CLimbs SimpleProduct(CLimbSpan left, CLimbSpan right)
{
    CLimbs product(left.size() + right.size());
    for (std::size_t i = 0; i < left.size(); ++i) {
        TDoubleLimb carry = 0;
        for (std::size_t j = 0; j < right.size(); ++j) {
            carry += static_cast<TDoubleLimb>(left[i]) * right[j] + product[i + j];
            product[i + j] = static_cast<TLimb>(carry);
            carry >>= LimbBits;
        }
        product[i + right.size()] = static_cast<TLimb>(carry);
    }
    return product;
}

// Three products of half the length do the work of four (A. Karatsuba, 1962).
CLimbs Product(CLimbSpan left, CLimbSpan right)
{
    if (left.size() < right.size())
        std::swap(left, right);
    if (right.size() < ShortFactor)
        return SimpleProduct(left, right);
    const std::size_t half = (left.size() + 1) / 2;
    CLimbs product(left.size() + right.size());
    const CLimbSpan leftLow = left.first(half);
    const CLimbSpan leftHigh = left.subspan(half);
    if (right.size() <= half) {
        AddAt(product, Product(leftLow, right), 0);
        AddAt(product, Product(leftHigh, right), half);
        return product;
    }
    const CLimbSpan rightLow = right.first(half);
    const CLimbSpan rightHigh = right.subspan(half);
    const CLimbs low = Product(leftLow, rightLow);
    const CLimbs high = Product(leftHigh, rightHigh);
    CLimbs middle = Product(Sum(leftLow, leftHigh), Sum(rightLow, rightHigh));
    SubtractFrom(middle, low);
    SubtractFrom(middle, high);
    AddAt(product, low, 0);
    AddAt(product, middle, half);
    AddAt(product, high, 2 * half);
    return product;
}

void DropLeadingZeros(CLimbs &limbs)
{
    while (limbs.size() > 1 && limbs.back() == 0)
        limbs.pop_back();
}

// From the last digits to the first.
std::vector<CLimbs> ReadBlocks(std::string_view digits)
{
    std::vector<CLimbs> blocks;
    while (digits.size() > BlockDigits) {
        blocks.push_back(ReadBlock(digits.substr(digits.size() - BlockDigits)));
        digits.remove_suffix(BlockDigits);
    }
    blocks.push_back(ReadBlock(digits));
    return blocks;
}

// Joins neighbours; `power` is the weight of a block against the one below it.
void JoinPairs(std::vector<CLimbs> &blocks, const CLimbs &power)
{
    const std::size_t pairs = blocks.size() / 2;
    for (std::size_t i = 0; i < pairs; ++i) {
        blocks[i] = Sum(Product(blocks[2 * i + 1], power), blocks[2 * i]);
        DropLeadingZeros(blocks[i]);
    }
    if (blocks.size() % 2 != 0)
        blocks[pairs] = std::move(blocks.back());
    blocks.resize(pairs + blocks.size() % 2);
}

CLimbs JoinBlocks(std::vector<CLimbs> blocks)
{
    CLimbs power = ReadBlock('1' + std::string(BlockDigits, '0'));
    while (blocks.size() > 1) {
        JoinPairs(blocks, power);
        if (blocks.size() > 1) {
            power = Product(power, power);
            DropLeadingZeros(power);
        }
    }
    return std::move(blocks.front());
}

}  // namespace

CWords ReadDecimalDigits(std::string_view digits)
{
    const CLimbs limbs = JoinBlocks(ReadBlocks(digits));
    CWords words;
    for (const TLimb limb : limbs) {
        for (std::size_t shift = 0; shift < LimbBits; shift += WordBits)
            words.push_back(static_cast<std::uint32_t>(limb >> shift));
    }
    while (words.size() > 1 && words.back() == 0)
        words.pop_back();
    return words;
}

}  // namespace tesk
