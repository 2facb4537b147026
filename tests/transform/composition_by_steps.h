#pragma once

/// \file
/// Products and differences of transformations, written step after step, for the tests to hold the library's against.
///
/// Only operations of the parts are used here: of rotations, of their matrices, and the bridges between components and
/// matrix. An operand may be the object itself, as in the library, and sees what the steps before have written.

#include "math/rotation_conversions.h"
#include "transform/transformation_states.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

namespace composition_test
{

using namespace transformation_test;

// --- Comparison ------------------------------------------------------------------------------------------------------

/// Two NaNs are close, and so are infinities of one sign.
inline bool Close(double a, double b, double tolerance)
{
    return a == b || (std::isnan(a) && std::isnan(b)) || std::abs(a - b) <= tolerance * (1 + std::abs(b));
}

template <typename Elements>
bool AllClose(Elements const & a, Elements const & b, double tolerance = 1e-12)
{
    for (std::size_t i = 0; i < a.size(); ++i)
    {
        if (!Close(a[i], b[i], tolerance))
        {
            return false;
        }
    }
    return true;
}

/// Whether two rotations have the same source, mark and order, and what is fresh in both is close. Which of the other
/// forms are fresh is nobody's concern.
inline testing::AssertionResult Agree(Rotation a, Rotation b)
{
    RotationInside first(a);
    RotationInside second(b);
    constexpr unsigned identity = rotation_test::k_Source | rotation_test::k_Marked;
    if ((first.Flags() & identity) != (second.Flags() & identity) || first.Order() != second.Order())
    {
        return testing::AssertionFailure() << "flags " << first.Flags() << " and " << second.Flags() << ", orders "
                                           << first.Order() << " and " << second.Order();
    }
    unsigned const stale = first.Flags() | second.Flags();
    using rotation_test::Elements;
    bool const quat =
        (stale & rotation_test::k_QuatDirty) != 0 || AllClose(Elements(first.Quat()), Elements(second.Quat()));
    bool const matrix =
        (stale & rotation_test::k_MatDirty) != 0 || AllClose(Elements(first.Matrix()), Elements(second.Matrix()));
    bool const angles = (stale & rotation_test::k_AnglesDirty) != 0 ||
                        AllClose(Elements(first.Angles()), Elements(second.Angles()), 1e-9);
    if (quat && matrix && angles)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "close quaternion: " << quat << ", matrix: " << matrix
                                       << ", angles: " << angles;
}

inline testing::AssertionResult ComponentsAgree(Snapshot const & a, Snapshot const & b)
{
    if (!AllClose(Elements(a.scaling), Elements(b.scaling)))
    {
        return testing::AssertionFailure() << "scaling: " << Near(a.scaling, b.scaling, -1).message();
    }
    if (!AllClose(Elements(a.translation), Elements(b.translation)))
    {
        return testing::AssertionFailure() << "translation: " << Near(a.translation, b.translation, -1).message();
    }
    if (auto const agree = Agree(a.rotation, b.rotation); !agree)
    {
        return testing::AssertionFailure() << "rotation: " << agree.message();
    }
    if (a.orientation.has_value() && b.orientation.has_value())
    {
        if (auto const agree = Agree(*a.orientation, *b.orientation); !agree)
        {
            return testing::AssertionFailure() << "scaling orientation: " << agree.message();
        }
    }
    return testing::AssertionSuccess();
}

/// Whether two transformations have the same flags, orders, sign bits and either a scaling orientation or none, and
/// what is fresh of them is close.
inline testing::AssertionResult Agree(C3DTransfo & actual, C3DTransfo & expected)
{
    Snapshot const a(actual);
    Snapshot const b(expected);
    if (a.flags != b.flags || a.matrix_order != b.matrix_order ||
        a.orientation.has_value() != b.orientation.has_value())
    {
        return testing::AssertionFailure()
               << "flags " << a.flags << " and " << b.flags << ", orders of the matrix " << a.matrix_order << " and "
               << b.matrix_order << ", a scaling orientation: " << a.orientation.has_value() << " and "
               << b.orientation.has_value();
    }
    if (a.HasComponents())
    {
        if (auto const agree = ComponentsAgree(a, b); !agree)
        {
            return agree;
        }
    }
    if (a.HasMatrix() &&
        (!AllClose(Elements(a.matrix), Elements(b.matrix)) || a.matrix.GetSclSignBits() != b.matrix.GetSclSignBits()))
    {
        return testing::AssertionFailure()
               << Near(a.matrix, b.matrix, -1).message() << " (matrix), sign bits "
               << unsigned(a.matrix.GetSclSignBits()) << " and " << unsigned(b.matrix.GetSclSignBits());
    }
    return testing::AssertionSuccess();
}

// --- Parts -----------------------------------------------------------------------------------------------------------

inline bool Has(unsigned mask, unsigned value)
{
    return (mask & value) != 0;
}

inline double Clamped(double factor)
{
    if (!(std::abs(factor) >= 1e-12))
    {
        return factor >= 0 ? 1e-12 : -1e-12;
    }
    return factor;
}

inline void FreshenComponents(C3DTransfo & transfo, unsigned mask = 63)
{
    if (Inside::AreComponentsDirty(transfo) != 0)
    {
        Inside::Factorize(transfo, mask);
    }
}

inline void FreshenMatrix(C3DTransfo & transfo)
{
    if (Inside::IsXfoMatDirty(transfo) != 0)
    {
        Inside::Combine(transfo);
    }
}

inline void ComponentsAreSource(C3DTransfo & transfo)
{
    Inside::SetComponentsDirty(transfo, 0);
    Inside::SetXfoMatDirty(transfo, 1);
}

inline void MatrixIsSource(C3DTransfo & transfo)
{
    Inside::SetComponentsDirty(transfo, 1);
    Inside::SetXfoMatDirty(transfo, 0);
}

inline Vector RowTimes(Vector const & v, RotMatrix const & m, bool transposed = false)
{
    Vector product(0, 0, 0);
    for (int i = 0; i < 3; ++i)
    {
        for (int j = 0; j < 3; ++j)
        {
            product.Set(j, product.Get(j) + v.Get(i) * (transposed ? m.Get(j, i) : m.Get(i, j)));
        }
    }
    return product;
}

/// A vector through a rotation, or its inverse; one that is marked as the identity is skipped.
inline Vector Rotated(Vector const & v, Rotation const & rotation, bool inverse = false)
{
    return rotation.QuickIsIdentity() != 0 ? v : RowTimes(v, MatrixOf(rotation), inverse);
}

/// A point through a matrix: row 3 counts, and coordinates that are exactly 0 do not.
inline Vector PointThrough(Vector const & p, Matrix const & m)
{
    Vector image(m.Get(3, 0), m.Get(3, 1), m.Get(3, 2));
    for (int i = 0; i < 3; ++i)
    {
        for (int j = 0; j < 3 && p.Get(i) != 0; ++j)
        {
            image.Set(j, image.Get(j) + p.Get(i) * m.Get(i, j));
        }
    }
    return image;
}

inline double SquaredLength(Vector const & v)
{
    return v.X * v.X + v.Y * v.Y + v.Z * v.Z;
}

/// The squared length of a vector in the scaled axes of a transformation.
inline double SquaredLengthInScaledAxes(Vector const & v, C3DTransfo & space)
{
    Vector u = Rotated(v, Inside::Rotation(space), true);
    for (int i = 0; i < 3; ++i)
    {
        u.Set(i, u.Get(i) / Inside::Scaling(space).Get(i));
    }
    return SquaredLength(u);
}

inline Vector Times(Vector const & v, double factor)
{
    return {v.X * factor, v.Y * factor, v.Z * factor};
}

inline Vector Sum(Vector const & a, Vector const & b)
{
    return {a.X + b.X, a.Y + b.Y, a.Z + b.Z};
}

/// Whether clean components have a scaling orientation that counts.
inline bool HasOrientation(C3DTransfo & transfo)
{
    Rotation const * const orientation = Inside::ScalingOrientation(transfo);
    return !transfo.QuickIsIdentity() && orientation != nullptr && orientation->IsAlmostIdentity(1e-12) == 0;
}

inline void StoreOrientation(C3DTransfo & transfo, Rotation const & orientation)
{
    bool const wanted = orientation.IsAlmostIdentity(1e-12) == 0;
    Inside::AllocateScalingOrientation(transfo, wanted);
    if (wanted)
    {
        *Inside::ScalingOrientation(transfo) = orientation;
    }
}

inline bool IsSheared(Matrix const & m)
{
    constexpr int pairs[3][2] = {{0, 1}, {0, 2}, {1, 2}};
    for (auto const & [i, j] : pairs)
    {
        double const dot = m.Get(i, 0) * m.Get(j, 0) + m.Get(i, 1) * m.Get(j, 1) + m.Get(i, 2) * m.Get(j, 2);
        if (std::abs(dot) > 1e-6)
        {
            return true;
        }
    }
    return false;
}

/// Complements the sign bits where their number is odd and the determinant not negative, or the other way round.
inline void RepairSigns(Matrix & m)
{
    unsigned const bits = m.GetSclSignBits();
    bool const odd = ((bits >> 1U ^ bits >> 2U ^ bits >> 3U) & 1U) != 0;
    bool const negative = !(m.GetDet() >= 0);
    if (odd != negative)
    {
        Inside::SetSclSignBits(m, bits ^ 14U);
    }
}

/// The matrix product a b, with the sign bits of both.
inline Matrix ProductOf(Matrix const & a, Matrix const & b)
{
    Matrix product;
    for (int i = 0; i < 4; ++i)
    {
        for (int j = 0; j < 4; ++j)
        {
            double sum = 0;
            for (int k = 0; k < 4; ++k)
            {
                sum += a.Get(i, k) * b.Get(k, j);
            }
            product.Set(i, j, sum);
        }
    }
    Inside::SetSclSignBits(product, unsigned(a.GetSclSignBits()) ^ b.GetSclSignBits());
    RepairSigns(product);
    return product;
}

// --- Product ---------------------------------------------------------------------------------------------------------

/// What a product or difference of two identities does under a mask that is not 63.
inline void ResetBySteps(C3DTransfo & self, unsigned mask)
{
    if (self.QuickIsIdentity())
    {
        return;
    }
    FreshenComponents(self, ~mask & 255U);
    if (Has(mask, 1))
    {
        Inside::Scaling(self).Set(1, 1, 1);
    }
    if (Has(mask, 2))
    {
        Inside::AllocateScalingOrientation(self, false);
    }
    if (Has(mask, 4))
    {
        Inside::Rotation(self).SetIdentity();
    }
    if (Has(mask, 8))
    {
        Inside::Translation(self).Set(0, 0, 0);
    }
    ComponentsAreSource(self);
}

/// The stretch of a vector that a scale inherited without the rotation amounts to.
inline double Stretch(Vector const & v, C3DTransfo & space)
{
    double const w = SquaredLengthInScaledAxes(v, space);
    return w > 0 ? std::sqrt(SquaredLength(v) / w) : 1;
}

inline void MulTranslationsBySteps(C3DTransfo & self, C3DTransfo & a, C3DTransfo & b, unsigned mask)
{
    Vector & t = Inside::Translation(self);
    if (Has(mask, 16) && Has(mask, 32))
    {
        FreshenMatrix(b);
        t = PointThrough(Inside::Translation(a), Inside::Matrix(b));
    }
    else if (!Has(mask, 16) && !Has(mask, 32))
    {
        t = Sum(Inside::Translation(a), Inside::Translation(b));
    }
    else
    {
        t = Inside::Translation(a);
        t = Has(mask, 32) ? Rotated(t, Inside::Rotation(b)) : Times(t, Stretch(t, b));
        // In place: the translation of b may be the one that has just been written.
        t = Sum(t, Inside::Translation(b));
    }
}

inline void MulByComponents(C3DTransfo & self, C3DTransfo & a, C3DTransfo & b, unsigned mask)
{
    FreshenComponents(a);
    FreshenComponents(b);
    if (Has(mask, 8))
    {
        MulTranslationsBySteps(self, a, b, mask);
    }
    for (int i = 0; i < 3 && Has(mask, 1); ++i)
    {
        Inside::Scaling(self).Set(i, Clamped(Inside::Scaling(a).Get(i) * Inside::Scaling(b).Get(i)));
    }
    if (Has(mask, 4))
    {
        Inside::Rotation(self).Mul(Inside::Rotation(a), Inside::Rotation(b));
    }
    if (Has(mask, 2))
    {
        Rotation soA = HasOrientation(a) ? *Inside::ScalingOrientation(a) : Rotation();
        Rotation soB = HasOrientation(b) ? *Inside::ScalingOrientation(b) : Rotation();
        Rotation product;
        StoreOrientation(self, product.Mul(soA, soB));
    }
    ComponentsAreSource(self);
}

inline void StoreProductBySteps(C3DTransfo & self, Matrix const & product)
{
    Inside::Matrix(self) = product;
    MatrixIsSource(self);
    if (!IsSheared(product))
    {
        Inside::AllocateScalingOrientation(self, false);
    }
}

inline void RecordOrder(C3DTransfo & self)
{
    if (Inside::IsXfoMatDirty(self) != 0 && Inside::AreComponentsDirty(self) == 0)
    {
        Inside::Combine(self);
    }
}

inline void MulByMatrices(C3DTransfo & self, C3DTransfo & a, C3DTransfo & b)
{
    RecordOrder(self);
    FreshenMatrix(a);
    FreshenMatrix(b);
    StoreProductBySteps(self, ProductOf(Inside::Matrix(a), Inside::Matrix(b)));
}

inline void MulBySteps(C3DTransfo & self, C3DTransfo & a, C3DTransfo & b, unsigned mask)
{
    bool const is_a_identity = a.QuickIsIdentity();
    bool const is_b_identity = b.QuickIsIdentity();
    if (mask == 63 && is_b_identity && is_a_identity)
    {
        self.SetIdentity();
    }
    else if (mask == 63 && is_b_identity)
    {
        self.Set(a, true);
    }
    else if (mask == 63 && is_a_identity)
    {
        self.Set(b, true);
    }
    else if (is_a_identity && is_b_identity)
    {
        ResetBySteps(self, mask);
    }
    else
    {
        Inside::SetDefinitelyIdentity(self, 0);
        self.GetQNScalingFlag() != 0 ? MulByComponents(self, a, b, mask) : MulByMatrices(self, a, b);
    }
}

// --- Difference ------------------------------------------------------------------------------------------------------

/// What a difference with the identity does to the angles. `target` is null, or another object than self.
inline void NormalizeBySteps(C3DTransfo & self, C3DTransfo * target)
{
    Rotation & rotation = Inside::Rotation(self);
    if (self.GetQNScalingFlag() != 0 && target != nullptr)
    {
        FreshenComponents(self);
        FreshenComponents(*target);
        tagE3DROTORDER const order = rotation.GetXYZRotOrder();
        Rotation near = Inside::Rotation(*target);
        Vector angles;
        near.Set(order, 1).GetXYZAngles(angles);
        F3DMatToEulerUsingTarget(MatrixOf(rotation), angles, order);
        rotation.Set(angles, order);
    }
    else if (Inside::AreComponentsDirty(self) == 0)
    {
        tagE3DROTORDER const order = rotation.GetXYZRotOrder();
        Vector angles;
        F3DMatToEuler(MatrixOf(rotation), angles, order);
        rotation.Set(angles, order);
    }
}

/// The inverse of a transformation's matrix, in a fresh identity.
inline Matrix InverseBySteps(C3DTransfo & b)
{
    Matrix inverse;
    if (!b.QuickIsIdentity())
    {
        FreshenMatrix(b);
        inverse.Invert(Inside::Matrix(b));
    }
    return inverse;
}

inline void DifTranslationsBySteps(C3DTransfo & self, C3DTransfo & a, C3DTransfo & b, unsigned mask, bool ia)
{
    Vector & t = Inside::Translation(self);
    Vector const ta = Inside::Translation(a);
    if (Has(mask, 16) && Has(mask, 32))
    {
        Matrix const inverse = InverseBySteps(b);
        t = PointThrough(ia ? Vector(0, 0, 0) : ta, inverse);
        return;
    }
    Vector const d = Sum(ta, Times(Inside::Translation(b), -1));
    double const length = SquaredLength(d);
    if (Has(mask, 16))
    {
        t = length > 0 ? Times(d, std::sqrt(SquaredLengthInScaledAxes(d, b) / length)) : d;
    }
    else
    {
        t = Has(mask, 32) ? Rotated(d, Inside::Rotation(b), true) : d;
    }
}

inline Rotation InverseUnlessIdentity(Rotation rotation)
{
    if (rotation.IsExactlyIdentity() == 0)
    {
        rotation.Invert(rotation);
    }
    return rotation;
}

inline void DifOrientationsBySteps(C3DTransfo & self, C3DTransfo & a, C3DTransfo & b, C3DTransfo * target, bool ia)
{
    bool const has_a = !ia && HasOrientation(a);
    bool const has_b = HasOrientation(b);
    if (!has_a && !has_b)
    {
        Inside::AllocateScalingOrientation(self, false);
        return;
    }
    Rotation soA = has_a ? *Inside::ScalingOrientation(a) : Rotation();
    Rotation soB = InverseUnlessIdentity(has_b ? *Inside::ScalingOrientation(b) : Rotation());
    Rotation product;
    product.Mul(soA, soB);
    bool const wanted = product.IsAlmostIdentity(1e-12) == 0;
    Inside::AllocateScalingOrientation(self, wanted);
    if (!wanted)
    {
        return;
    }
    if (target != nullptr)
    {
        Vector angles(0, 0, 0);
        if (Inside::ScalingOrientation(*target) != nullptr)
        {
            Inside::ScalingOrientation(*target)->GetXYZAngles(angles);
        }
        product.MulUsingEulerAnglesTarget(soA, soB, angles, E3DROTORDER_XYZ);
    }
    *Inside::ScalingOrientation(self) = product;
}

/// `target` is null, or another object than self, with its components clean.
inline void DifByComponents(C3DTransfo & self, C3DTransfo & a, C3DTransfo & b, unsigned mask, C3DTransfo * target,
                            bool ia)
{
    tagE3DROTORDER const order = self.GetXYZRotOrder();
    FreshenComponents(a);
    FreshenComponents(b);
    Vector const tb = Inside::Translation(b);
    if (Has(mask, 8) && !(ia && tb.X == 0 && tb.Y == 0 && tb.Z == 0))
    {
        DifTranslationsBySteps(self, a, b, mask, ia);
    }
    for (int i = 0; i < 3 && Has(mask, 1); ++i)
    {
        Inside::Scaling(self).Set(i, Clamped(Inside::Scaling(a).Get(i) / Inside::Scaling(b).Get(i)));
    }
    if (Has(mask, 4))
    {
        Rotation inverse = InverseUnlessIdentity(Inside::Rotation(b));
        if (target != nullptr)
        {
            Rotation near = Inside::Rotation(*target);
            near.Set(order, 1);
            Inside::Rotation(self).MulUsingEulerAnglesTarget(Inside::Rotation(a), inverse, near);
        }
        else
        {
            Inside::Rotation(self).Mul(Inside::Rotation(a), inverse);
        }
    }
    if (Has(mask, 2))
    {
        DifOrientationsBySteps(self, a, b, target, ia);
    }
    ComponentsAreSource(self);
}

inline void DifByMatrices(C3DTransfo & self, C3DTransfo & a, C3DTransfo & b)
{
    RecordOrder(self);
    FreshenMatrix(a);
    Matrix const inverse = InverseBySteps(b);
    StoreProductBySteps(self, ProductOf(Inside::Matrix(a), inverse));
}

/// The target is only read, so that its value on entry serves, whichever object it is. Where it is the object itself,
/// and a mask names a rotation, the object's components are brought up to date for it.
inline void DifBySteps(C3DTransfo & self, C3DTransfo & a, C3DTransfo & b, unsigned mask, C3DTransfo * target)
{
    bool const ia = a.QuickIsIdentity();
    bool const is_b_identity = b.QuickIsIdentity();
    C3DTransfo target_value = target != nullptr ? C3DTransfo(*target) : C3DTransfo();
    FreshenComponents(target_value);
    C3DTransfo * const near = target != nullptr ? &target_value : nullptr;
    if (mask == 63 && is_b_identity)
    {
        ia ? self.SetIdentity() : self.Set(a, true);
        C3DTransfo copied(self);
        NormalizeBySteps(self, target == &self ? &copied : near);
    }
    else if (ia && is_b_identity)
    {
        ResetBySteps(self, mask);
    }
    else
    {
        Inside::SetDefinitelyIdentity(self, 0);
        if (target == &self && self.GetQNScalingFlag() != 0 && Has(mask, 2 | 4))
        {
            FreshenComponents(self);
        }
        self.GetQNScalingFlag() != 0 ? DifByComponents(self, a, b, mask, near, ia) : DifByMatrices(self, a, b);
    }
}

// --- Operands --------------------------------------------------------------------------------------------------------

struct Operand
{
    char const * name;
    C3DTransfo value;
};

inline std::ostream & operator<<(std::ostream & stream, Operand const & operand)
{
    return stream << operand.name;
}

/// Translations with a zero, no rotation, and a mirror: what the shortcuts of the steps ask for.
inline Values Unrotated()
{
    return {Vector(3, 0.5, -2), std::nullopt, IdentityValues(E3DROTORDER_YZX).rotation, Vector(0, 4, 0)};
}

inline Values WithoutTranslation()
{
    Values values = OtherPlain();
    values.translation = Vector(0, 0, 0);
    return values;
}

/// Transformations in every state that a product tells apart. The flag of QN scaling is that of nobody.
inline std::array<Operand, 12> Operands()
{
    return {{{"identity", MakeState(k_MatrixDirty | k_QNScaling | k_Identity)},
             {"identity with both forms", MakeState(k_Identity, IdentityValues(E3DROTORDER_XZY))},
             {"identity without the flag", MakeState(k_MatrixDirty, IdentityValues())},
             {"components", MakeState(k_MatrixDirty | k_QNScaling)},
             {"sheared components", MakeState(k_MatrixDirty, Sheared())},
             {"almost unsheared components", MakeState(k_MatrixDirty | k_QNScaling, AlmostUnsheared())},
             {"unrotated components", MakeState(k_MatrixDirty, Unrotated())},
             {"components without translation", MakeState(k_MatrixDirty, WithoutTranslation())},
             {"matrix", MakeState(k_ComponentsDirty, OtherPlain())},
             {"sheared matrix", MakeState(k_ComponentsDirty | k_QNScaling, OtherSheared())},
             {"both forms", MakeState(k_QNScaling | k_PreserveOrder, OtherPlain())},
             {"both forms, sheared", MakeState(0, OtherSheared())}}};
}

/// Objects that receive a result, before it: what they held must not matter, or stay.
inline std::array<Operand, 5> Receivers(unsigned qnScaling)
{
    return {{{"identity", MakeState(k_MatrixDirty | qnScaling | k_Identity, IdentityValues(E3DROTORDER_ZYX))},
             {"sheared components", MakeState(k_MatrixDirty | qnScaling | k_PreserveOrder, Sheared())},
             {"components", MakeState(k_MatrixDirty | qnScaling, OtherPlain())},
             {"sheared matrix", MakeState(k_ComponentsDirty | qnScaling, Sheared())},
             {"both forms", MakeState(qnScaling | k_Unused, OtherSheared())}}};
}

} // namespace composition_test
