#pragma once

/// \file
/// Product of three by three arrays of `float`.

#include "math/detail/row4.h"

#include <cstring>

namespace math::detail
{

/// The product a b of nine elements each, row by row; `out` may be either. A fourth lane goes along with each row, and
/// what it stores is overwritten by the row that follows. A compiler left to itself packs the nine sums from scattered
/// elements.
inline void MultiplyByRows(float const * a, float const * b, float * out)
{
    using Row = Row4<float>::Lanes;
    Row b0;
    Row b1;
    std::memcpy(&b0, b, sizeof b0);
    std::memcpy(&b1, b + 3, sizeof b1);
    Row const b2 = {b[6], b[7], b[8], 0};
    Row const row0 = a[0] * b0 + a[1] * b1 + a[2] * b2;
    Row const row1 = a[3] * b0 + a[4] * b1 + a[5] * b2;
    Row const row2 = a[6] * b0 + a[7] * b1 + a[8] * b2;
    StoreRow(row0, out);
    StoreRow(row1, out + 3);
    out[6] = row2[0];
    out[7] = row2[1];
    out[8] = row2[2];
}

} // namespace math::detail
