#pragma once

/// \file
/// The rows of a real transform in two or three dimensions. The first two values of a row are shared by columns 0 and
/// n/2, which mirror themselves: X[-k1][0] = conj X[k1][0]. So rows come in pairs of mirror images, of which the first
/// has the lesser index; a row that is its own image is single.

namespace math::detail
{

/// Calls `pair(row, image)` and `single(row)` for the rows of a plane.
template <typename Pair, typename Single>
void VisitMirroredRows(double ** rows, int n1, Pair pair, Single single)
{
    for (int i = 1; i < n1 / 2; ++i)
    {
        pair(rows[i], rows[n1 - i]);
    }
    single(rows[0]);
    single(rows[n1 / 2]);
}

/// The same for the rows of n1 planes of n2 rows.
template <typename Pair, typename Single>
void VisitMirroredRows(double *** planes, int n1, int n2, Pair pair, Single single)
{
    for (int i = 1; i < n1 / 2; ++i)
    {
        for (int j = 0; j < n2; ++j)
        {
            pair(planes[i][j], planes[n1 - i][(n2 - j) % n2]);
        }
    }
    VisitMirroredRows(planes[0], n2, pair, single);
    VisitMirroredRows(planes[n1 / 2], n2, pair, single);
}

/// Separates the transforms of the two real columns that went through the column pass as one complex column.
inline void SeparateFirstColumns(double * row, double * image)
{
    image[0] = 0.5 * (row[0] - image[0]);
    row[0] -= image[0];
    image[1] = 0.5 * (row[1] + image[1]);
    row[1] -= image[1];
}

/// The way back.
inline void JoinFirstColumns(double * row, double * image)
{
    double const difference = row[0] - image[0];
    row[0] += image[0];
    image[0] = difference;
    double const rest = image[1] - row[1];
    row[1] += image[1];
    image[1] = rest;
}

/// From packed rows of n values to expanded ones of n + 2; the rows are given as for VisitMirroredRows. Packed, the
/// image has the imaginary and real part of its own column n/2.
template <typename Rows, typename... Sizes>
void ExpandRows(unsigned int n, Rows rows, Sizes... sizes)
{
    auto const expandPair = [n](double * row, double * image)
    {
        double const real = image[1];
        double const imaginary = image[0];
        image[n] = real;
        image[n + 1] = imaginary;
        row[n] = real;
        row[n + 1] = -imaginary;
        image[0] = row[0];
        image[1] = -row[1];
    };
    auto const expandSingle = [n](double * row)
    {
        row[n] = row[1];
        row[n + 1] = 0;
        row[1] = 0;
    };
    VisitMirroredRows(rows, sizes..., expandPair, expandSingle);
}

/// The way back.
template <typename Rows, typename... Sizes>
void PackRows(unsigned int n, Rows rows, Sizes... sizes)
{
    auto const packPair = [n](double * /*row*/, double * image)
    {
        image[0] = image[n + 1];
        image[1] = image[n];
    };
    auto const packSingle = [n](double * row) { row[1] = row[n]; };
    VisitMirroredRows(rows, sizes..., packPair, packSingle);
}

} // namespace math::detail
