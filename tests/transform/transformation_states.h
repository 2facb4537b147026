#pragma once

/// \file
/// Transformations in every state of their caches, and what the tests of C3DTransfo compare them by.

#include "math/transformation.h"
#include "rotation/rotation_states.h"
#include "support/random.h"
#include "transform/transformation_inspector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>
#include <ostream>
#include <utility>

namespace transformation_test
{

using Rotation = C3DRotation;
using Quat = C3DQuatTpl<double>;
using RotMatrix = C3DRotMatTpl<double>;
using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;
using Inside = math::detail::TransformationInspector;
using RotationInside = math::detail::RotationInspector;

using rotation_test::k_HalfPi;
using rotation_test::k_Infinity;
using rotation_test::k_Nan;
using rotation_test::k_NoOrder;
using rotation_test::k_Orders;
using rotation_test::k_Pi;

// The bits of the flags.
inline constexpr unsigned k_ComponentsDirty = 1;
inline constexpr unsigned k_MatrixDirty = 2;
inline constexpr unsigned k_QNScaling = 4;
inline constexpr unsigned k_PreserveOrder = 8;
inline constexpr unsigned k_Identity = 16;
/// A bit that no operation sets or reads.
inline constexpr unsigned k_Unused = 32;

/// Which of the two forms is fresh, without the other flags: both, only the matrix, only the components.
inline constexpr unsigned k_Freshness[3] = {0, k_ComponentsDirty, k_MatrixDirty};

/// The order of a matrix that is stale, and of a rotation that is.
inline constexpr tagE3DROTORDER k_StaleOrder = E3DROTORDER_YXZ;

/// What a transformation is, as components. No scaling orientation is the identity.
struct Values
{
    Vector scaling = Vector(1, 1, 1);
    std::optional<Rotation> orientation = std::nullopt;
    Rotation rotation = Rotation();
    Vector translation = Vector(0, 0, 0);
};

/// Mirrored in one axis, not uniform, rotated, moved, not sheared.
inline Values Plain()
{
    return {Vector(2, -3, 0.5), std::nullopt, Rotation(0.3, -0.5, 0.7, E3DROTORDER_ZXY), Vector(1, -2, 3)};
}

/// With a scaling orientation too.
inline Values Sheared()
{
    Values values = Plain();
    values.orientation = Rotation(0.2, 0.4, -0.6, E3DROTORDER_YZX);
    return values;
}

/// With a scaling orientation that counts as none.
inline Values AlmostUnsheared()
{
    Values values = Plain();
    values.orientation = Rotation(1e-13, 0, -1e-13, E3DROTORDER_XYZ);
    return values;
}

/// Other numbers than Plain and Sheared, for the second of two operands.
inline Values OtherPlain()
{
    return {Vector(0.25, 1.5, 4), std::nullopt, Rotation(-1.1, 0.2, 0.4, E3DROTORDER_XZY), Vector(-7, 5, 0.125)};
}

inline Values OtherSheared()
{
    Values values = OtherPlain();
    values.orientation = Rotation(-0.3, 0.9, 0.1, E3DROTORDER_ZYX);
    return values;
}

inline Values IdentityValues(tagE3DROTORDER order = E3DROTORDER_ZXY)
{
    Values values;
    values.rotation.Set(order, 1);
    return values;
}

/// The rotation as a matrix, without a change of its caches.
inline RotMatrix MatrixOf(Rotation rotation)
{
    return *rotation.GetMatrix();
}

inline Matrix MakeMatrix(std::array<double, 16> const & elements, unsigned bits)
{
    Matrix matrix;
    for (int i = 0; i < 16; ++i)
    {
        matrix.Set(i / 4, i % 4, elements[static_cast<std::size_t>(i)]);
    }
    Inside::SetSclSignBits(matrix, bits);
    return matrix;
}

/// SO^T S SO R and, in the last row, T, summed up as it is written; the sign bits are the signs of S.
inline Matrix MatrixOf(Values const & values)
{
    RotMatrix const orientation = values.orientation ? MatrixOf(*values.orientation) : RotMatrix();
    RotMatrix const rotation = MatrixOf(values.rotation);
    std::array<double, 16> elements{};
    for (int i = 0; i < 3; ++i)
    {
        for (int j = 0; j < 3; ++j)
        {
            double sum = 0;
            for (int k = 0; k < 3; ++k)
            {
                for (int l = 0; l < 3; ++l)
                {
                    sum += orientation.Get(k, i) * values.scaling.Get(k) * orientation.Get(k, l) * rotation.Get(l, j);
                }
            }
            elements[4 * static_cast<std::size_t>(i) + static_cast<std::size_t>(j)] = sum;
        }
        elements[12 + static_cast<std::size_t>(i)] = values.translation.Get(i);
    }
    elements[15] = 1;
    unsigned bits = 0;
    for (int i = 0; i < 3; ++i)
    {
        bits |= 0 > values.scaling.Get(i) ? 2U << i : 0U;
    }
    return MakeMatrix(elements, bits);
}

inline std::array<double, 16> Elements(Matrix const & m)
{
    std::array<double, 16> elements{};
    std::copy_n(m.GetArray(), 16, elements.begin());
    return elements;
}

inline std::array<double, 3> Elements(Vector const & v)
{
    return {v.X, v.Y, v.Z};
}

/// Whether every element has the same bits: NaNs are the same, and 0 is not -0.
template <typename Form>
bool SameBits(Form const & a, Form const & b)
{
    auto const first = Elements(a);
    auto const second = Elements(b);
    return std::equal(first.begin(), first.end(), second.begin(),
                      [](double x, double y)
                      { return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y); });
}

/// Whether two rotations have the same flags and order, and the same fresh forms to the last bit, be they NaNs.
inline testing::AssertionResult SameRotation(Rotation a, Rotation b)
{
    RotationInside first(a);
    RotationInside second(b);
    // A comparison of numbers knows no NaN.
    auto const replace_nans = [](double & x) { x = std::isnan(x) ? 777 : x; };
    for (RotationInside * const inside : {&first, &second})
    {
        std::for_each_n(&inside->Quat().W, 4, replace_nans);
        std::for_each_n(inside->Matrix().GetArray(), 9, replace_nans);
        std::for_each_n(inside->Angles().GetArray(), 3, replace_nans);
        replace_nans(inside->Angle());
    }
    return rotation_test::SameState(a, b);
}

/// A NaN differs from everything.
template <typename Form>
double MaxDifference(Form const & a, Form const & b)
{
    auto const first = Elements(a);
    auto const second = Elements(b);
    double difference = 0;
    for (std::size_t i = 0; i < first.size(); ++i)
    {
        double const here = std::abs(first[i] - second[i]);
        if (!std::isnan(difference) && !(here <= difference))
        {
            difference = here;
        }
    }
    return difference;
}

template <typename Form>
testing::AssertionResult Near(Form const & a, Form const & b, double tolerance = 1e-12)
{
    double const difference = MaxDifference(a, b);
    if (difference <= tolerance)
    {
        return testing::AssertionSuccess();
    }
    testing::AssertionResult result = testing::AssertionFailure() << "off by " << difference << ":";
    for (auto const & elements : {Elements(a), Elements(b)})
    {
        result << "\n ";
        for (double const element : elements)
        {
            result << ' ' << element;
        }
    }
    return result;
}

/// How far apart two rotations are: their quaternions up to sign.
inline double Distance(Rotation const & a, Rotation const & b)
{
    return rotation_test::Distance(rotation_test::JudgeOf(MatrixOf(a)), rotation_test::JudgeOf(MatrixOf(b)));
}

/// Fills what a state calls stale with NaNs, so that reading it shows, and gives its orders other values.
inline void FillStale(C3DTransfo & transfo)
{
    if (Inside::AreComponentsDirty(transfo) != 0)
    {
        Rotation const stale = Rotation(k_Nan, k_Nan, k_Nan, k_StaleOrder);
        Inside::Scaling(transfo).Set(k_Nan, k_Nan, k_Nan);
        Inside::Translation(transfo).Set(k_Nan, k_Nan, k_Nan);
        Inside::Rotation(transfo) = stale;
        if (Inside::ScalingOrientation(transfo) != nullptr)
        {
            *Inside::ScalingOrientation(transfo) = stale;
        }
    }
    if (Inside::IsXfoMatDirty(transfo) != 0)
    {
        std::array<double, 16> elements{};
        elements.fill(k_Nan);
        Inside::Matrix(transfo) = MakeMatrix(elements, 4);
        Inside::MatrixRotOrder(transfo) = k_StaleOrder;
    }
}

/// A transformation with these flags and values. A fresh form holds the values and a stale one NaNs, with the order
/// k_StaleOrder; a scaling orientation of dirty components is there, and stale. With the flag of the identity the
/// values are those of the identity, whatever is passed, except the order.
inline C3DTransfo MakeState(unsigned flags, Values values = Plain())
{
    if ((flags & k_Identity) != 0)
    {
        values = IdentityValues(values.rotation.GetXYZRotOrder());
    }
    C3DTransfo transfo;
    Inside::Scaling(transfo) = values.scaling;
    Inside::Rotation(transfo) = values.rotation;
    Inside::Translation(transfo) = values.translation;
    if (values.orientation)
    {
        Inside::ScalingOrientation(transfo) = new Rotation(*values.orientation);
    }
    Inside::Matrix(transfo) = MatrixOf(values);
    Inside::MatrixRotOrder(transfo) = values.rotation.GetXYZRotOrder();
    Inside::SetFlags(transfo, flags);
    FillStale(transfo);
    return transfo;
}

/// All that a transformation holds, field by field, taken without a change of it.
struct Snapshot
{
    explicit Snapshot(C3DTransfo & transfo)
        : flags(Inside::Flags(transfo)), scaling(Inside::Scaling(transfo)), translation(Inside::Translation(transfo)),
          rotation(Inside::Rotation(transfo)), pointer(Inside::ScalingOrientation(transfo)),
          matrix(Inside::Matrix(transfo)), matrix_order(Inside::MatrixRotOrder(transfo))
    {
        if (pointer != nullptr)
        {
            orientation = *pointer;
        }
    }

    bool HasComponents() const { return (flags & k_ComponentsDirty) == 0; }
    bool HasMatrix() const { return (flags & k_MatrixDirty) == 0; }

    unsigned flags;
    Vector scaling;
    Vector translation;
    Rotation rotation;
    std::optional<Rotation> orientation;
    Rotation const * pointer; ///< Whose orientation it is; for identity only.
    Matrix matrix;
    tagE3DROTORDER matrix_order;
};

namespace detail
{

inline testing::AssertionResult SameOrientation(Snapshot const & a, Snapshot const & b)
{
    if (a.orientation.has_value() != b.orientation.has_value())
    {
        return testing::AssertionFailure()
               << "a scaling orientation: " << a.orientation.has_value() << " and " << b.orientation.has_value();
    }
    return a.orientation ? SameRotation(*a.orientation, *b.orientation) : testing::AssertionSuccess();
}

} // namespace detail

/// Whether the scaling, the scaling orientation, the rotation and the translation are the same to the last bit, with
/// the flags and orders of the rotations.
inline testing::AssertionResult SameComponents(Snapshot const & a, Snapshot const & b)
{
    if (!SameBits(a.scaling, b.scaling))
    {
        return Near(a.scaling, b.scaling, -1) << " (scaling)";
    }
    if (!SameBits(a.translation, b.translation))
    {
        return Near(a.translation, b.translation, -1) << " (translation)";
    }
    if (auto const same = SameRotation(a.rotation, b.rotation); !same)
    {
        return testing::AssertionFailure() << "rotation: " << same.message();
    }
    if (auto const same = detail::SameOrientation(a, b); !same)
    {
        return testing::AssertionFailure() << "scaling orientation: " << same.message();
    }
    return testing::AssertionSuccess();
}

/// Whether the elements, the whole mask byte and the order of the matrix are the same to the last bit.
inline testing::AssertionResult SameMatrix(Snapshot const & a, Snapshot const & b)
{
    if (!SameBits(a.matrix, b.matrix))
    {
        return Near(a.matrix, b.matrix, -1) << " (matrix)";
    }
    if (a.matrix.GetMaskInfo() != b.matrix.GetMaskInfo() || a.matrix_order != b.matrix_order)
    {
        return testing::AssertionFailure()
               << "mask bytes " << unsigned(a.matrix.GetMaskInfo()) << " and " << unsigned(b.matrix.GetMaskInfo())
               << ", orders of the matrix " << a.matrix_order << " and " << b.matrix_order;
    }
    return testing::AssertionSuccess();
}

/// Whether two transformations have the same flags, and the same fresh forms to the last bit.
inline testing::AssertionResult SameState(Snapshot const & a, Snapshot const & b)
{
    if (a.flags != b.flags)
    {
        return testing::AssertionFailure() << "flags " << a.flags << " and " << b.flags;
    }
    if (a.HasComponents())
    {
        if (auto const same = SameComponents(a, b); !same)
        {
            return same;
        }
    }
    return a.HasMatrix() ? SameMatrix(a, b) : testing::AssertionSuccess();
}

inline testing::AssertionResult SameState(C3DTransfo & a, C3DTransfo & b)
{
    return SameState(Snapshot(a), Snapshot(b));
}

/// Whether every field is the same to the last bit, stale ones too. Of the scaling orientations the values count.
inline testing::AssertionResult Untouched(Snapshot const & before, C3DTransfo & transfo)
{
    Snapshot const after(transfo);
    if (before.flags != after.flags)
    {
        return testing::AssertionFailure() << "flags " << before.flags << " and " << after.flags;
    }
    if (auto const same = SameComponents(before, after); !same)
    {
        return same;
    }
    return SameMatrix(before, after);
}

/// What a transformation is as components, without a change of it. The components must be clean.
inline Values ValuesOf(C3DTransfo & transfo)
{
    Snapshot const snapshot(transfo);
    if ((snapshot.flags & k_Identity) != 0)
    {
        return IdentityValues(snapshot.rotation.GetXYZRotOrder());
    }
    return {snapshot.scaling, snapshot.orientation, snapshot.rotation, snapshot.translation};
}

/// What a transformation is as a matrix, without a change of it: the formula of the components where the matrix is
/// stale.
inline Matrix ValueOf(C3DTransfo & transfo)
{
    Snapshot const snapshot(transfo);
    bool const is_identity = (snapshot.flags & k_Identity) != 0;
    return !is_identity && snapshot.HasMatrix() ? snapshot.matrix : MatrixOf(ValuesOf(transfo));
}

/// Whether what is fresh of a transformation all is this matrix, and something is fresh.
inline testing::AssertionResult FreshFormsAre(C3DTransfo & transfo, Matrix const & expected, double tolerance = 1e-12)
{
    Snapshot const snapshot(transfo);
    if (!snapshot.HasComponents() && !snapshot.HasMatrix())
    {
        return testing::AssertionFailure() << "nothing is fresh";
    }
    if (snapshot.HasComponents())
    {
        Matrix const formula =
            MatrixOf(Values{snapshot.scaling, snapshot.orientation, snapshot.rotation, snapshot.translation});
        if (auto const near = Near(formula, expected, tolerance); !near)
        {
            return testing::AssertionFailure() << "components: " << near.message();
        }
    }
    if (snapshot.HasMatrix())
    {
        if (auto const near = Near(snapshot.matrix, expected, tolerance); !near)
        {
            return testing::AssertionFailure() << "matrix: " << near.message();
        }
    }
    return testing::AssertionSuccess();
}

/// A factor of scale of either sign, away from zero.
inline double RandomFactor(test_support::Random & random)
{
    return random.OverDecades(-1, 1);
}

inline Vector RandomScaling(test_support::Random & random)
{
    return {RandomFactor(random), RandomFactor(random), RandomFactor(random)};
}

inline Vector RandomTranslation(test_support::Random & random)
{
    return {random.Uniform(-10.0, 10.0), random.Uniform(-10.0, 10.0), random.Uniform(-10.0, 10.0)};
}

/// Random components, with a scaling orientation half of the time.
inline Values RandomValues(test_support::Random & random)
{
    Values values = {RandomScaling(random), std::nullopt, rotation_test::RandomRotation(random),
                     RandomTranslation(random)};
    if (random.Integer(0, 1) == 0)
    {
        values.orientation = rotation_test::RandomRotation(random);
    }
    return values;
}

} // namespace transformation_test
