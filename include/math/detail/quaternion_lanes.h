#pragma once

/// \file
/// A quaternion in vector registers.

#include "math/quaternion.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace math::detail
{

/// The four components side by side, each rounded as it would be alone, in the 16-byte registers that every target of
/// the library has. For locals of inline functions; the operations are those of C3DQuatTpl.
template <typename T>
class QuaternionLanes
{
    typedef T Part __attribute__((vector_size(16))); // NOLINT(modernize-use-using): takes the attribute
    using Bits = std::conditional_t<sizeof(T) == 8, std::int64_t, std::int32_t>;
    typedef Bits Mask __attribute__((vector_size(16))); // NOLINT(modernize-use-using): takes the attribute
    static constexpr int k_PartCount = 4 * sizeof(T) / 16;

public:
    /// All components 0.
    QuaternionLanes() : m_Parts{} {}
    // Part by part: what is copied as a whole, g++ takes over the stack.
    explicit QuaternionLanes(C3DQuatTpl<T> const & q)
    {
        for (std::ptrdiff_t i = 0; i < k_PartCount; ++i)
        {
            Part part;
            std::memcpy(&part, reinterpret_cast<char const *>(&q) + 16 * i, sizeof part);
            m_Parts[i] = part;
        }
    }

    void Store(C3DQuatTpl<T> & q) const
    {
        for (std::ptrdiff_t i = 0; i < k_PartCount; ++i)
        {
            Part const part = m_Parts[i];
            std::memcpy(reinterpret_cast<char *>(&q) + 16 * i, &part, sizeof part);
        }
    }

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

    /// The components of a, each times the factor. The factor changes its sign where b and c are in different
    /// hemispheres, that is, where their product over four components is not at or above 0. No branch hangs on that, as
    /// it is up to the data.
    QuaternionLanes & MulByHemisphere(QuaternionLanes const & a, T factor, QuaternionLanes const & b,
                                      QuaternionLanes const & c)
    {
        Part const product = b.DotInEachLane(c);
        Mask const sign = ~(product >= 0) & std::numeric_limits<Bits>::min();
        // 0 is taken off and not added, which would make a positive zero of a negative one.
        auto const signedFactor = reinterpret_cast<Part>(reinterpret_cast<Mask>(factor - Part{}) ^ sign);
        for (int i = 0; i < k_PartCount; ++i)
        {
            m_Parts[i] = a.m_Parts[i] * signedFactor;
        }
        return *this;
    }

    T DotByPairs(QuaternionLanes const & b) const { return DotInEachLane(b)[0]; }

private:
    /// The product over four components, in every lane.
    Part DotInEachLane(QuaternionLanes const & b) const
    {
        Part sum = m_Parts[0] * b.m_Parts[0];
        if constexpr (k_PartCount == 2)
        {
            sum += m_Parts[1] * b.m_Parts[1];
            return sum + __builtin_shufflevector(sum, sum, 1, 0);
        }
        else
        {
            sum += __builtin_shufflevector(sum, sum, 2, 3, 0, 1);
            return sum + __builtin_shufflevector(sum, sum, 1, 0, 3, 2);
        }
    }

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
