#pragma once

/// \file
/// What the tests of the vector classes share.

#include "math/vector2.h"
#include "math/vector3.h"
#include "math/vector4.h"
#include "math/vectorw.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <limits>

namespace test_support
{

/// The components that a class stores, and those that its arithmetic computes: the homogeneous point keeps its weight
/// out of it.
template <typename Vector>
struct VectorTraits;
template <typename T>
struct VectorTraits<C3DVector2Tpl<T>>
{
    using Scalar = T;
    static constexpr unsigned long stored = 2;
    static constexpr unsigned long computed = 2;
};
template <typename T>
struct VectorTraits<C3DVector3Tpl<T>>
{
    using Scalar = T;
    static constexpr unsigned long stored = 3;
    static constexpr unsigned long computed = 3;
};
template <typename T>
struct VectorTraits<C3DVector4Tpl<T>>
{
    using Scalar = T;
    static constexpr unsigned long stored = 4;
    static constexpr unsigned long computed = 4;
};
template <>
struct VectorTraits<C3DVectorw>
{
    using Scalar = double;
    static constexpr unsigned long stored = 4;
    static constexpr unsigned long computed = 3;
};

template <typename Vector>
using ScalarOf = typename VectorTraits<Vector>::Scalar;

template <typename Vector>
using ComponentsOf = std::array<ScalarOf<Vector>, VectorTraits<Vector>::stored>;

/// The fields, for comparison one by one: the vectors' own operator takes a NaN for equal to anything.
template <typename T>
std::array<T, 2> Components(C3DVector2Tpl<T> const & v)
{
    return {v.X, v.Y};
}
template <typename T>
std::array<T, 3> Components(C3DVector3Tpl<T> const & v)
{
    return {v.X, v.Y, v.Z};
}
template <typename T>
std::array<T, 4> Components(C3DVector4Tpl<T> const & v)
{
    return {v.X, v.Y, v.Z, v.W};
}
inline std::array<double, 4> Components(C3DVectorw const & v)
{
    return {v.X, v.Y, v.Z, v.W};
}

template <typename T>
void SetComponents(C3DVector2Tpl<T> & v, std::array<T, 2> const & values)
{
    v.X = values[0];
    v.Y = values[1];
}
template <typename T>
void SetComponents(C3DVector3Tpl<T> & v, std::array<T, 3> const & values)
{
    v.X = values[0];
    v.Y = values[1];
    v.Z = values[2];
}
template <typename Vector4>
void SetComponents(Vector4 & v, std::array<ScalarOf<Vector4>, 4> const & values)
{
    v.X = values[0];
    v.Y = values[1];
    v.Z = values[2];
    v.W = values[3];
}

/// The vector with as many of four values as it stores.
template <typename Vector>
Vector Make(double x, double y, double z, double w)
{
    std::array<double, 4> const values{x, y, z, w};
    ComponentsOf<Vector> components{};
    for (unsigned long i = 0; i < components.size(); ++i)
    {
        components[i] = static_cast<ScalarOf<Vector>>(values[i]);
    }
    Vector v;
    SetComponents(v, components);
    return v;
}

/// The vector with `value` in one component and 0 in the others.
template <typename Vector>
Vector MakeAlong(unsigned long component, ScalarOf<Vector> value)
{
    ComponentsOf<Vector> components{};
    components[component] = value;
    Vector v;
    SetComponents(v, components);
    return v;
}

/// Numbers as an array of one scalar type.
template <typename T, typename... Numbers>
std::array<T, sizeof...(Numbers)> Row(Numbers... numbers)
{
    return {static_cast<T>(numbers)...};
}

/// Equality of representations: signs of zeros and NaNs count.
template <typename Value>
bool HasSameBytes(Value const & a, Value const & b)
{
    using Representation = std::array<unsigned char, sizeof(Value)>;
    return std::bit_cast<Representation>(a) == std::bit_cast<Representation>(b);
}

template <typename T>
T NextAbove(T x)
{
    return std::nextafter(x, std::numeric_limits<T>::infinity());
}
template <typename T>
T NextBelow(T x)
{
    return std::nextafter(x, -std::numeric_limits<T>::infinity());
}

template <typename T>
inline constexpr T k_Infinity = std::numeric_limits<T>::infinity();
template <typename T>
inline constexpr T k_NaN = std::numeric_limits<T>::quiet_NaN();

/// Runs `operation(target, a, b)` with the target as either operand and as both, against separate objects.
template <typename Vector, typename Operation>
void ExpectTargetMayBeAnyOperand(Operation operation, Vector const & a, Vector const & b)
{
    auto const separate = [&](Vector target, Vector const & first, Vector const & second)
    {
        operation(target, first, second);
        return Components(target);
    };
    Vector first = a;
    operation(first, first, b);
    EXPECT_EQ(Components(first), separate(a, a, b)) << "the target is the first operand";
    Vector second = b;
    operation(second, a, second);
    EXPECT_EQ(Components(second), separate(b, a, b)) << "the target is the second operand";
    Vector both = a;
    operation(both, both, both);
    EXPECT_EQ(Components(both), separate(a, a, a)) << "the target is both operands";
}

using ScalarTypes = testing::Types<float, double>;
using AllVectorTypes = testing::Types<C3DVector2Tpl<float>, C3DVector2Tpl<double>, C3DVector3Tpl<float>,
                                      C3DVector3Tpl<double>, C3DVector4Tpl<float>, C3DVector4Tpl<double>, C3DVectorw>;

} // namespace test_support
