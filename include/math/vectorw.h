#pragma once

/// \file
/// The homogeneous point.

#include "math/numeric.h"

#include <cstdint>

/// A position X, Y, Z in `double` that carries a weight W beside it.
///
/// W stays apart from the arithmetic: sums, products, lengths and interpolations read and write X, Y, Z alone and leave
/// the target's W as it was, whatever the operands' W. Comparisons and null tests look at all four. In manner it is a
/// C3DVector3Tpl<double>: methods write into the target, which may be an operand, and return it.
class MATH_API C3DVectorw
{
public:
    double X;
    double Y;
    double Z;
    double W;

    /// \name Construction and access
    ///@{

    /// (0, 0, 0, 1).
    C3DVectorw();
    C3DVectorw(double x, double y, double z, double w);

    /// Copies four consecutive scalars.
    explicit C3DVectorw(double const * array);

    C3DVectorw & Set(double x, double y, double z, double w);

    /// Copies all four components.
    C3DVectorw & Set(C3DVectorw const & vector);

    /// Sets component 0, 1, 2 or 3; any other index changes nothing.
    C3DVectorw & Set(int index, double value);
    C3DVectorw & SetX(double x);
    C3DVectorw & SetY(double y);
    C3DVectorw & SetZ(double z);
    C3DVectorw & SetW(double w);

    void Get(double & x, double & y, double & z, double & w) const;

    /// Component 1, 2 or 3; any other index gives X, where the other vectors fall back on their last component.
    double Get(int index) const;
    double GetX() const;
    double GetY() const;
    double GetZ() const;
    double GetW() const;

    /// The component; the index is not checked.
    double & operator[](unsigned long index);
    double const & operator[](unsigned long index) const;

    /// The four components as an array.
    double * GetArray();
    double const * GetArray() const;

    /// Bytes held outside the object: none.
    std::uint64_t GetDynamicMemSize() const;
    ///@}

    /// \name Tests
    /// All four components are compared, W included.
    ///@{

    /// 1 unless the magnitude of some component is above `epsilon`: (0, 0, 0, 1) is not null at an `epsilon` below 1.
    int IsNull(double epsilon = math::detail::k_StandardTolerance<double>) const;

    /// 1 when all four components compare equal to 0.
    int IsExactlyNull() const;

    /// 1 unless some component differs by `epsilon` or more; a NaN counts as close.
    int AreAlmostEqual(C3DVectorw const & other, double epsilon = math::detail::k_StandardTolerance<double>) const;

    /// Exact comparison by "below" and "above": a NaN compares equal to anything.
    bool operator==(C3DVectorw const & other) const;
    bool operator!=(C3DVectorw const & other) const;
    ///@}

    /// \name Arithmetic on X, Y, Z
    /// Nothing is tested. W keeps its value.
    ///@{

    /// (0, 0, 0, 1): the one operation here that sets W.
    C3DVectorw & SetNull();

    C3DVectorw & Negate();
    C3DVectorw & Negate(C3DVectorw const & a);

    C3DVectorw & Add(C3DVectorw const & b);
    C3DVectorw & Add(C3DVectorw const & a, C3DVectorw const & b);
    C3DVectorw & Add(double x, double y, double z);

    /// a - b in the form with two operands.
    C3DVectorw & Sub(C3DVectorw const & b);
    C3DVectorw & Sub(C3DVectorw const & a, C3DVectorw const & b);
    C3DVectorw & Sub(double x, double y, double z);

    C3DVectorw & Mul(double factor);
    C3DVectorw & Mul(double factor, C3DVectorw const & a);
    C3DVectorw & Mul(C3DVectorw const & a, double factor);

    /// Scales by the reciprocal of the divisor, which comes first in the form with two operands.
    C3DVectorw & Div(double divisor);
    C3DVectorw & Div(double divisor, C3DVectorw const & a);

    /// Component by component.
    C3DVectorw & MulComp(C3DVectorw const & b);
    C3DVectorw & MulComp(C3DVectorw const & a, C3DVectorw const & b);

    /// Component by component, with true quotients.
    C3DVectorw & DivComp(C3DVectorw const & b);
    C3DVectorw & DivComp(C3DVectorw const & a, C3DVectorw const & b);

    double GetLength() const;
    double GetSquaredLength() const;

    /// Scales to length one. Returns 0, with the point unchanged, where the length is not above the standard tolerance.
    int Normalize();

    /// Scales to the given length. Returns 0, with the point unchanged, where the length is not at or above the
    /// standard tolerance: a length of just that is scaled here, but not by Normalize.
    int SetLength(double length);

    C3DVectorw & SetMidpoint(C3DVectorw const & a, C3DVectorw const & b);

    /// (1 - t) a + t b, formed with these two products.
    C3DVectorw & LinearPositionInterpolate(C3DVectorw const & a, C3DVectorw const & b, double t);

    /// A floor for the magnitudes of X, Y, Z: one below `limit` gets `limit` with its own sign, a zero counting as
    /// positive. W is then set to 1.
    C3DVectorw & SetMinimal(double limit);

    static double GetDot(C3DVectorw const & a, C3DVectorw const & b);
    static double GetDistance(C3DVectorw const & a, C3DVectorw const & b);
    static double GetSquaredDistance(C3DVectorw const & a, C3DVectorw const & b);
    ///@}
};

/// The dot product of X, Y, Z.
MATH_API double GetDot(C3DVectorw const & a, C3DVectorw const & b);
/// The distance of two positions.
MATH_API double GetDistance(C3DVectorw const & a, C3DVectorw const & b);
/// The squared distance of two positions.
MATH_API double GetSquaredDistance(C3DVectorw const & a, C3DVectorw const & b);
