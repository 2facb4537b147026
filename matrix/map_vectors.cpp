#include "matrix/map_vectors.h"

#include <cmath>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace math::detail
{

namespace
{

using Vector = C3DVector3Tpl<double>;

/// What is added for a product that is left out: it changes no sum, not even the sign of a zero.
constexpr double k_NoProduct = -0.0;

} // namespace

#if defined(__x86_64__)

// The three registers of eight vectors hold x0 y0 z0 x1 y1 z1 x2 y2 | z2 x3 ... x5 | y5 z5 ... z7. Two choices from two
// registers each make the eight x, the eight y and the eight z, and back. In a choice, 8 and above is the second
// register.
__attribute__((target("avx512f"))) long MapByEight(MapRows const & rows, bool arePoints, Vector const * in, long n,
                                                   Vector * out)
{
    __m512d factors[4][3];
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            factors[r][c] = _mm512_set1_pd(rows[r][c]);
        }
    }
    // Places whose content is replaced by the second choice are given as 0.
    __m512i const xFromAB = _mm512_setr_epi64(0, 3, 6, 9, 12, 15, 0, 0);
    __m512i const xFromC = _mm512_setr_epi64(0, 1, 2, 3, 4, 5, 10, 13);
    __m512i const yFromAB = _mm512_setr_epi64(1, 4, 7, 10, 13, 0, 0, 0);
    __m512i const yFromC = _mm512_setr_epi64(0, 1, 2, 3, 4, 8, 11, 14);
    __m512i const zFromAB = _mm512_setr_epi64(2, 5, 8, 11, 14, 0, 0, 0);
    __m512i const zFromC = _mm512_setr_epi64(0, 1, 2, 3, 4, 9, 12, 15);
    __m512i const aFromXY = _mm512_setr_epi64(0, 8, 0, 1, 9, 0, 2, 10);
    __m512i const aFromZ = _mm512_setr_epi64(0, 1, 8, 3, 4, 9, 6, 7);
    __m512i const bFromXY = _mm512_setr_epi64(0, 3, 11, 0, 4, 12, 0, 5);
    __m512i const bFromZ = _mm512_setr_epi64(10, 1, 2, 11, 4, 5, 12, 7);
    __m512i const cFromXY = _mm512_setr_epi64(13, 0, 6, 14, 0, 7, 15, 0);
    __m512i const cFromZ = _mm512_setr_epi64(0, 13, 2, 3, 14, 5, 6, 15);
    long i = 0;
    for (; i + 8 <= n; i += 8)
    {
        double const * const source = in[i].GetArray();
        __m512d const a = _mm512_loadu_pd(source);
        __m512d const b = _mm512_loadu_pd(source + 8);
        __m512d const c = _mm512_loadu_pd(source + 16);
        __m512d const x = _mm512_permutex2var_pd(_mm512_permutex2var_pd(a, xFromAB, b), xFromC, c);
        __m512d const y = _mm512_permutex2var_pd(_mm512_permutex2var_pd(a, yFromAB, b), yFromC, c);
        __m512d const z = _mm512_permutex2var_pd(_mm512_permutex2var_pd(a, zFromAB, b), zFromC, c);
        __m512d product[3];
        if (arePoints)
        {
            __m512d const none = _mm512_set1_pd(k_NoProduct);
            __m512d const zero = _mm512_setzero_pd();
            __mmask8 const useX = _mm512_cmp_pd_mask(x, zero, _CMP_NEQ_OQ);
            __mmask8 const useY = _mm512_cmp_pd_mask(y, zero, _CMP_NEQ_OQ);
            __mmask8 const useZ = _mm512_cmp_pd_mask(z, zero, _CMP_NEQ_OQ);
            for (int k = 0; k < 3; ++k)
            {
                __m512d const sum = _mm512_add_pd(factors[3][k], _mm512_mask_mul_pd(none, useX, x, factors[0][k]));
                product[k] = _mm512_add_pd(_mm512_add_pd(sum, _mm512_mask_mul_pd(none, useY, y, factors[1][k])),
                                           _mm512_mask_mul_pd(none, useZ, z, factors[2][k]));
            }
        }
        else
        {
            for (int k = 0; k < 3; ++k)
            {
                __m512d const sum = _mm512_add_pd(_mm512_mul_pd(x, factors[0][k]), _mm512_mul_pd(y, factors[1][k]));
                product[k] = _mm512_add_pd(sum, _mm512_mul_pd(z, factors[2][k]));
            }
        }
        double * const target = out[i].GetArray();
        _mm512_storeu_pd(target, _mm512_permutex2var_pd(_mm512_permutex2var_pd(product[0], aFromXY, product[1]), aFromZ,
                                                        product[2]));
        _mm512_storeu_pd(target + 8, _mm512_permutex2var_pd(_mm512_permutex2var_pd(product[0], bFromXY, product[1]),
                                                            bFromZ, product[2]));
        _mm512_storeu_pd(target + 16, _mm512_permutex2var_pd(_mm512_permutex2var_pd(product[0], cFromXY, product[1]),
                                                             cFromZ, product[2]));
    }
    return i;
}

namespace
{

/// A product; of points none where the component is 0 or a NaN.
__attribute__((target("avx"))) inline __m256d Product(__m256d component, __m256d factor, bool skipZeros)
{
    __m256d const product = _mm256_mul_pd(component, factor);
    if (!skipZeros)
    {
        return product;
    }
    __m256d const isUsed = _mm256_cmp_pd(component, _mm256_setzero_pd(), _CMP_NEQ_OQ);
    return _mm256_blendv_pd(_mm256_set1_pd(k_NoProduct), product, isUsed);
}

inline __m128d Product(__m128d component, __m128d factor, bool skipZeros)
{
    __m128d const product = _mm_mul_pd(component, factor);
    if (!skipZeros)
    {
        return product;
    }
    // The comparison alone takes a NaN for not equal.
    __m128d const isUsed = _mm_and_pd(_mm_cmpneq_pd(component, _mm_setzero_pd()), _mm_cmpord_pd(component, component));
    return _mm_or_pd(_mm_and_pd(isUsed, product), _mm_andnot_pd(isUsed, _mm_set1_pd(k_NoProduct)));
}

} // namespace

// The 128-bit halves of the twelve numbers are loaded so that the low lanes hold the first two vectors and the high
// lanes the other two,
//     x0 y0 | x2 y2     z0 x1 | z2 x3     y1 z1 | y3 z3
// from which one shuffle each makes the four x, the four y and the four z, and back.
__attribute__((target("avx"))) long MapByFour(MapRows const & rows, bool arePoints, Vector const * in, long n,
                                              Vector * out)
{
    __m256d factors[4][3];
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            factors[r][c] = _mm256_set1_pd(rows[r][c]);
        }
    }
    long i = 0;
    for (; i + 4 <= n; i += 4)
    {
        double const * const source = in[i].GetArray();
        __m256d const xy =
            _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(source)), _mm_loadu_pd(source + 6), 1);
        __m256d const zx =
            _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(source + 2)), _mm_loadu_pd(source + 8), 1);
        __m256d const yz =
            _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(source + 4)), _mm_loadu_pd(source + 10), 1);
        __m256d const x = _mm256_shuffle_pd(xy, zx, 0b1010);
        __m256d const y = _mm256_shuffle_pd(xy, yz, 0b0101);
        __m256d const z = _mm256_shuffle_pd(zx, yz, 0b1010);
        __m256d product[3];
        for (int c = 0; c < 3; ++c)
        {
            __m256d const fromX = Product(x, factors[0][c], arePoints);
            __m256d const fromY = Product(y, factors[1][c], arePoints);
            __m256d const fromZ = Product(z, factors[2][c], arePoints);
            __m256d const first = arePoints ? _mm256_add_pd(factors[3][c], fromX) : fromX;
            product[c] = _mm256_add_pd(_mm256_add_pd(first, fromY), fromZ);
        }
        __m256d const outXy = _mm256_shuffle_pd(product[0], product[1], 0b0000);
        __m256d const outZx = _mm256_shuffle_pd(product[2], product[0], 0b1010);
        __m256d const outYz = _mm256_shuffle_pd(product[1], product[2], 0b1111);
        double * const target = out[i].GetArray();
        _mm_storeu_pd(target, _mm256_castpd256_pd128(outXy));
        _mm_storeu_pd(target + 2, _mm256_castpd256_pd128(outZx));
        _mm_storeu_pd(target + 4, _mm256_castpd256_pd128(outYz));
        _mm_storeu_pd(target + 6, _mm256_extractf128_pd(outXy, 1));
        _mm_storeu_pd(target + 8, _mm256_extractf128_pd(outZx, 1));
        _mm_storeu_pd(target + 10, _mm256_extractf128_pd(outYz, 1));
    }
    return i;
}

// In the same manner.
long MapByTwo(MapRows const & rows, bool arePoints, Vector const * in, long n, Vector * out)
{
    __m128d factors[4][3];
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            factors[r][c] = _mm_set1_pd(rows[r][c]);
        }
    }
    long i = 0;
    for (; i + 2 <= n; i += 2)
    {
        double const * const source = in[i].GetArray();
        __m128d const xy = _mm_loadu_pd(source);
        __m128d const zx = _mm_loadu_pd(source + 2);
        __m128d const yz = _mm_loadu_pd(source + 4);
        __m128d const x = _mm_shuffle_pd(xy, zx, 0b10);
        __m128d const y = _mm_shuffle_pd(xy, yz, 0b01);
        __m128d const z = _mm_shuffle_pd(zx, yz, 0b10);
        __m128d product[3];
        for (int c = 0; c < 3; ++c)
        {
            __m128d const fromX = Product(x, factors[0][c], arePoints);
            __m128d const fromY = Product(y, factors[1][c], arePoints);
            __m128d const fromZ = Product(z, factors[2][c], arePoints);
            __m128d const first = arePoints ? _mm_add_pd(factors[3][c], fromX) : fromX;
            product[c] = _mm_add_pd(_mm_add_pd(first, fromY), fromZ);
        }
        double * const target = out[i].GetArray();
        _mm_storeu_pd(target, _mm_shuffle_pd(product[0], product[1], 0b00));
        _mm_storeu_pd(target + 2, _mm_shuffle_pd(product[2], product[0], 0b10));
        _mm_storeu_pd(target + 4, _mm_shuffle_pd(product[1], product[2], 0b11));
    }
    return i;
}

#endif

long MapByOne(MapRows const & rows, bool arePoints, Vector const * in, long n, Vector * out)
{
    for (long i = 0; i < n; ++i)
    {
        Vector const v = in[i];
        for (int c = 0; c < 3; ++c)
        {
            auto const product = [&rows, arePoints, c](double component, int r)
            { return !arePoints || std::abs(component) > 0 ? component * rows[r][c] : k_NoProduct; };
            double const first = arePoints ? rows[3][c] + product(v.X, 0) : product(v.X, 0);
            out[i].GetArray()[c] = first + product(v.Y, 1) + product(v.Z, 2);
        }
    }
    return n;
}

namespace
{

void MapAll(MapRows const & rows, bool arePoints, Vector const * in, long n, Vector * out)
{
    long done = 0;
#if defined(__x86_64__)
    if (n >= 8 && __builtin_cpu_supports("avx512f"))
    {
        done += MapByEight(rows, arePoints, in, n, out);
    }
    if (n - done >= 4 && __builtin_cpu_supports("avx"))
    {
        done += MapByFour(rows, arePoints, in + done, n - done, out + done);
    }
    if (n - done >= 2)
    {
        done += MapByTwo(rows, arePoints, in + done, n - done, out + done);
    }
#endif
    MapByOne(rows, arePoints, in + done, n - done, out + done);
}

template <typename Source>
void CopyRows(Source const & m, int count, MapRows & rows)
{
    for (int r = 0; r < count; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            rows[r][c] = m.Get(r, c);
        }
    }
}

} // namespace

void MapVectors(C3DMatrix33Tpl<double> const & m, Vector const * in, long n, Vector * out)
{
    MapRows rows = {};
    CopyRows(m, 3, rows);
    MapAll(rows, false, in, n, out);
}

void MapPoints(C3DMatrix44Tpl<double> const & m, Vector const * in, long n, Vector * out)
{
    MapRows rows;
    CopyRows(m, 4, rows);
    MapAll(rows, true, in, n, out);
}

} // namespace math::detail
