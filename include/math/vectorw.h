#pragma once

/// \file
/// The position with a weight.

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
    double X; ///< The position along the first axis.
    double Y; ///< The position along the second axis.
    double Z; ///< The position along the third axis.
    double W; ///< The weight.

    /// \name Construction and access
    ///@{

    /// (0, 0, 0, 1).
    C3DVectorw();
    /// (x, y, z) with the weight w. Unlike C3DVector4Tpl, the position is taken as it is and not multiplied by w.
    C3DVectorw(double x, double y, double z, double w);

    /// Copies four consecutive scalars.
    explicit C3DVectorw(double const * array);

    /// Becomes (x, y, z) with the weight w.
    C3DVectorw & Set(double x, double y, double z, double w);

    /// Copies all four components.
    C3DVectorw & Set(C3DVectorw const & vector);

    /// Sets component 0, 1, 2 or 3; any other index changes nothing.
    C3DVectorw & Set(int index, double value);
    /// Sets X and leaves the others.
    C3DVectorw & SetX(double x);
    /// Sets Y and leaves the others.
    C3DVectorw & SetY(double y);
    /// Sets Z and leaves the others.
    C3DVectorw & SetZ(double z);
    /// Sets the weight and leaves the position.
    C3DVectorw & SetW(double w);

    /// All components at once.
    void Get(double & x, double & y, double & z, double & w) const;

    /// Component 1, 2 or 3; any other index gives X, where the other vectors fall back on their last component.
    double Get(int index) const;
    /// X.
    double GetX() const;
    /// Y.
    double GetY() const;
    /// Z.
    double GetZ() const;
    /// W.
    double GetW() const;

    /// The component; the index is not checked.
    double & operator[](unsigned long index);
    /// The component, for reading; the index is not checked.
    double const & operator[](unsigned long index) const;

    /// The four components as an array.
    double * GetArray();
    /// The components as an array, for reading.
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
    /// The negation of operator==: false where a NaN hides a difference.
    bool operator!=(C3DVectorw const & other) const;
    ///@}

    /// \name Arithmetic on X, Y, Z
    /// Nothing is tested. W keeps its value.
    ///@{

    /// (0, 0, 0, 1): the one operation here that sets W.
    C3DVectorw & SetNull();

    /// The opposite position.
    C3DVectorw & Negate();
    /// The position -a.
    C3DVectorw & Negate(C3DVectorw const & a);

    /// The target plus b.
    C3DVectorw & Add(C3DVectorw const & b);
    /// a + b.
    C3DVectorw & Add(C3DVectorw const & a, C3DVectorw const & b);
    /// The target plus (x, y, z).
    C3DVectorw & Add(double x, double y, double z);

    /// The target minus b.
    C3DVectorw & Sub(C3DVectorw const & b);
    /// a - b.
    C3DVectorw & Sub(C3DVectorw const & a, C3DVectorw const & b);
    /// The target minus (x, y, z).
    C3DVectorw & Sub(double x, double y, double z);

    /// The target times a scalar.
    C3DVectorw & Mul(double factor);
    /// A scalar times a.
    C3DVectorw & Mul(double factor, C3DVectorw const & a);
    /// a times a scalar.
    C3DVectorw & Mul(C3DVectorw const & a, double factor);

    /// Scales by the reciprocal of the divisor, taken once; a zero divisor gives infinities or NaNs.
    C3DVectorw & Div(double divisor);
    /// a by the divisor, in the same way. The divisor comes first, where the vector templates have it last.
    C3DVectorw & Div(double divisor, C3DVectorw const & a);

    /// The target times b, component by component.
    C3DVectorw & MulComp(C3DVectorw const & b);
    /// a times b, component by component.
    C3DVectorw & MulComp(C3DVectorw const & a, C3DVectorw const & b);

    /// The target by b, component by component, with true quotients.
    C3DVectorw & DivComp(C3DVectorw const & b);
    /// a by b, component by component, with true quotients.
    C3DVectorw & DivComp(C3DVectorw const & a, C3DVectorw const & b);

    /// The distance from the origin: infinite where a square overflows.
    double GetLength() const;
    /// The sum of the squares of X, Y, Z.
    double GetSquaredLength() const;

    /// Scales to length one. Returns 0, with the point unchanged, where the length is not above the standard tolerance.
    int Normalize();

    /// Scales to the given length. Returns 0, with the point unchanged, where the length is not at or above the
    /// standard tolerance: a length of just that is scaled here, but not by Normalize.
    int SetLength(double length);

    /// The position half-way between a and b.
    C3DVectorw & SetMidpoint(C3DVectorw const & a, C3DVectorw const & b);

    /// (1 - t) a + t b, formed with these two products.
    C3DVectorw & LinearPositionInterpolate(C3DVectorw const & a, C3DVectorw const & b, double t);

    /// A floor for the magnitudes of X, Y, Z: one below `limit` gets `limit` with its own sign, a zero counting as
    /// positive. W is then set to 1.
    C3DVectorw & SetMinimal(double limit);

    /// The dot product of X, Y, Z.
    static double GetDot(C3DVectorw const & a, C3DVectorw const & b);
    /// The distance of two positions.
    static double GetDistance(C3DVectorw const & a, C3DVectorw const & b);
    /// The squared distance of two positions.
    static double GetSquaredDistance(C3DVectorw const & a, C3DVectorw const & b);
    ///@}
};

/// The dot product of X, Y, Z.
MATH_API double GetDot(C3DVectorw const & a, C3DVectorw const & b);
/// The distance of two positions.
MATH_API double GetDistance(C3DVectorw const & a, C3DVectorw const & b);
/// The squared distance of two positions.
MATH_API double GetSquaredDistance(C3DVectorw const & a, C3DVectorw const & b);
