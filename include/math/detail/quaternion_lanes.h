#pragma once

/// \file
/// A quaternion in vector registers.

#include "math/quaternion.h"

#include <cstring>

namespace math::detail
{

/// The four components side by side, each rounded as it would be alone, in the 16-byte registers that every target of
/// the library has. For locals of inline functions; the operations are those of C3DQuatTpl.
template <typename T>
class QuaternionLanes
{
    typedef T Part __attribute__((vector_size(16))); // NOLINT(modernize-use-using): takes the attribute
    static constexpr int k_PartCount = 4 * sizeof(T) / 16;

public:
    /// All components 0.
    QuaternionLanes() : m_Parts{} {}
    explicit QuaternionLanes(C3DQuatTpl<T> const & q) { std::memcpy(m_Parts, &q, sizeof m_Parts); }

    void Store(C3DQuatTpl<T> & q) const { std::memcpy(static_cast<void *>(&q), m_Parts, sizeof m_Parts); }

    QuaternionLanes & Add(QuaternionLanes const & b)
    {
        for (int i = 0; i < k_PartCount; ++i)
        {
            m_Parts[i] += b.m_Parts[i];
        }
        return *this;
    }
    QuaternionLanes & Sub(QuaternionLanes const & b)
    {
        for (int i = 0; i < k_PartCount; ++i)
        {
            m_Parts[i] -= b.m_Parts[i];
        }
        return *this;
    }
    QuaternionLanes & Mul(T factor) { return Mul(*this, factor); }
    QuaternionLanes & Mul(QuaternionLanes const & a, T factor)
    {
        for (int i = 0; i < k_PartCount; ++i)
        {
            m_Parts[i] = a.m_Parts[i] * factor;
        }
        return *this;
    }

    T DotByPairs(QuaternionLanes const & b) const
    {
        Part sum = m_Parts[0] * b.m_Parts[0];
        if constexpr (k_PartCount == 2)
        {
            sum += m_Parts[1] * b.m_Parts[1];
        }
        else
        {
            sum += __builtin_shufflevector(sum, sum, 2, 3, 0, 1);
        }
        return sum[0] + sum[1];
    }

private:
    Part m_Parts[k_PartCount];
};

/// The product over four components. The order of the additions is the one that suits the lanes, so that both give the
/// same bits.
template <typename T>
inline T DotByPairs(QuaternionLanes<T> const & a, QuaternionLanes<T> const & b)
{
    return a.DotByPairs(b);
}
template <typename T>
inline T DotByPairs(C3DQuatTpl<T> const & a, C3DQuatTpl<T> const & b)
{
    return (a.W * b.W + a.Y * b.Y) + (a.X * b.X + a.Z * b.Z);
}

} // namespace math::detail
