// What the tests of bit vectors share.
#pragma once

#include <string>

#include "settings/bitvector.h"

/// A vector as wide as the text.
inline CBitVector Bits(const std::string &bits)
{
    return CBitVector(static_cast<unsigned>(bits.size()), bits.c_str(), 2);
}

/// The bits below the width, the highest first.
inline std::string Show(const CBitVector &vector)
{
    std::string bits;
    for (unsigned i = vector.GetWidth(); i-- > 0;)
        bits += vector.TestBit(i) ? '1' : '0';
    return bits;
}
