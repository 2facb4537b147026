#include "math/vectorw.h"

#include "numeric/components.h"

#include <cmath>
#include <type_traits>

namespace
{

/// Writes the position and leaves the weight.
C3DVectorw & SetPosition(C3DVectorw & target, double x, double y, double z)
{
    target.X = x;
    target.Y = y;
    target.Z = z;
    return target;
}

} // namespace

C3DVectorw::C3DVectorw() : X(0), Y(0), Z(0), W(1) {}

C3DVectorw::C3DVectorw(double x, double y, double z, double w) : X(x), Y(y), Z(z), W(w) {}

C3DVectorw::C3DVectorw(double const * array) : C3DVectorw(array[0], array[1], array[2], array[3]) {}

C3DVectorw & C3DVectorw::Set(double x, double y, double z, double w)
{
    return *this = C3DVectorw(x, y, z, w);
}

C3DVectorw & C3DVectorw::Set(C3DVectorw const & vector)
{
    return *this = vector;
}

C3DVectorw & C3DVectorw::Set(int index, double value)
{
    if (index >= 0 && index <= 3)
    {
        GetArray()[index] = value;
    }
    return *this;
}

C3DVectorw & C3DVectorw::SetX(double x)
{
    X = x;
    return *this;
}

C3DVectorw & C3DVectorw::SetY(double y)
{
    Y = y;
    return *this;
}

C3DVectorw & C3DVectorw::SetZ(double z)
{
    Z = z;
    return *this;
}

C3DVectorw & C3DVectorw::SetW(double w)
{
    W = w;
    return *this;
}

void C3DVectorw::Get(double & x, double & y, double & z, double & w) const
{
    x = X;
    y = Y;
    z = Z;
    w = W;
}

double C3DVectorw::Get(int index) const
{
    return index >= 1 && index <= 3 ? GetArray()[index] : X;
}

double C3DVectorw::GetX() const
{
    return X;
}

double C3DVectorw::GetY() const
{
    return Y;
}

double C3DVectorw::GetZ() const
{
    return Z;
}

double C3DVectorw::GetW() const
{
    return W;
}

double & C3DVectorw::operator[](unsigned long index)
{
    return GetArray()[index];
}

double const & C3DVectorw::operator[](unsigned long index) const
{
    return GetArray()[index];
}

double * C3DVectorw::GetArray()
{
    return reinterpret_cast<double *>(this);
}

double const * C3DVectorw::GetArray() const
{
    return reinterpret_cast<double const *>(this);
}

std::uint64_t C3DVectorw::GetDynamicMemSize() const
{
    return 0;
}

int C3DVectorw::IsNull(double epsilon) const
{
    return !(std::abs(X) > epsilon || std::abs(Y) > epsilon || std::abs(Z) > epsilon || std::abs(W) > epsilon);
}

int C3DVectorw::IsExactlyNull() const
{
    return X == 0 && Y == 0 && Z == 0 && W == 0;
}

int C3DVectorw::AreAlmostEqual(C3DVectorw const & other, double epsilon) const
{
    return !(std::abs(X - other.X) >= epsilon || std::abs(Y - other.Y) >= epsilon || std::abs(Z - other.Z) >= epsilon ||
             std::abs(W - other.W) >= epsilon);
}

bool C3DVectorw::operator==(C3DVectorw const & other) const
{
    return !(X < other.X || X > other.X || Y < other.Y || Y > other.Y || Z < other.Z || Z > other.Z || W < other.W ||
             W > other.W);
}

bool C3DVectorw::operator!=(C3DVectorw const & other) const
{
    return !(*this == other);
}

C3DVectorw & C3DVectorw::SetNull()
{
    return Set(0, 0, 0, 1);
}

C3DVectorw & C3DVectorw::Negate()
{
    return Negate(*this);
}

C3DVectorw & C3DVectorw::Negate(C3DVectorw const & a)
{
    return SetPosition(*this, -a.X, -a.Y, -a.Z);
}

C3DVectorw & C3DVectorw::Add(C3DVectorw const & b)
{
    return Add(*this, b);
}

C3DVectorw & C3DVectorw::Add(C3DVectorw const & a, C3DVectorw const & b)
{
    return SetPosition(*this, a.X + b.X, a.Y + b.Y, a.Z + b.Z);
}

C3DVectorw & C3DVectorw::Add(double x, double y, double z)
{
    return SetPosition(*this, X + x, Y + y, Z + z);
}

C3DVectorw & C3DVectorw::Sub(C3DVectorw const & b)
{
    return Sub(*this, b);
}

C3DVectorw & C3DVectorw::Sub(C3DVectorw const & a, C3DVectorw const & b)
{
    return SetPosition(*this, a.X - b.X, a.Y - b.Y, a.Z - b.Z);
}

C3DVectorw & C3DVectorw::Sub(double x, double y, double z)
{
    return SetPosition(*this, X - x, Y - y, Z - z);
}

C3DVectorw & C3DVectorw::Mul(double factor)
{
    return Mul(*this, factor);
}

C3DVectorw & C3DVectorw::Mul(double factor, C3DVectorw const & a)
{
    return Mul(a, factor);
}

C3DVectorw & C3DVectorw::Mul(C3DVectorw const & a, double factor)
{
    return SetPosition(*this, a.X * factor, a.Y * factor, a.Z * factor);
}

C3DVectorw & C3DVectorw::Div(double divisor)
{
    return Div(divisor, *this);
}

C3DVectorw & C3DVectorw::Div(double divisor, C3DVectorw const & a)
{
    return Mul(a, 1 / divisor);
}

C3DVectorw & C3DVectorw::MulComp(C3DVectorw const & b)
{
    return MulComp(*this, b);
}

C3DVectorw & C3DVectorw::MulComp(C3DVectorw const & a, C3DVectorw const & b)
{
    return SetPosition(*this, a.X * b.X, a.Y * b.Y, a.Z * b.Z);
}

C3DVectorw & C3DVectorw::DivComp(C3DVectorw const & b)
{
    return DivComp(*this, b);
}

C3DVectorw & C3DVectorw::DivComp(C3DVectorw const & a, C3DVectorw const & b)
{
    return SetPosition(*this, a.X / b.X, a.Y / b.Y, a.Z / b.Z);
}

double C3DVectorw::GetLength() const
{
    return std::sqrt(GetSquaredLength());
}

double C3DVectorw::GetSquaredLength() const
{
    return GetDot(*this, *this);
}

int C3DVectorw::Normalize()
{
    double const length = GetLength();
    if (!(length > math::detail::k_StandardTolerance<double>))
    {
        return 0;
    }
    Mul(1 / length);
    return 1;
}

int C3DVectorw::SetLength(double length)
{
    double const current = GetLength();
    if (!(current >= math::detail::k_StandardTolerance<double>))
    {
        return 0;
    }
    Mul(length / current);
    return 1;
}

C3DVectorw & C3DVectorw::SetMidpoint(C3DVectorw const & a, C3DVectorw const & b)
{
    return SetPosition(*this, (a.X + b.X) * 0.5, (a.Y + b.Y) * 0.5, (a.Z + b.Z) * 0.5);
}

C3DVectorw & C3DVectorw::LinearPositionInterpolate(C3DVectorw const & a, C3DVectorw const & b, double t)
{
    double const s = 1 - t;
    return SetPosition(*this, s * a.X + t * b.X, s * a.Y + t * b.Y, s * a.Z + t * b.Z);
}

C3DVectorw & C3DVectorw::SetMinimal(double limit)
{
    return Set(math::detail::RaiseMagnitudeToLimit(X, limit), math::detail::RaiseMagnitudeToLimit(Y, limit),
               math::detail::RaiseMagnitudeToLimit(Z, limit), 1);
}

double C3DVectorw::GetDot(C3DVectorw const & a, C3DVectorw const & b)
{
    return a.X * b.X + a.Y * b.Y + a.Z * b.Z;
}

double C3DVectorw::GetDistance(C3DVectorw const & a, C3DVectorw const & b)
{
    return C3DVectorw().Sub(a, b).GetLength();
}

double C3DVectorw::GetSquaredDistance(C3DVectorw const & a, C3DVectorw const & b)
{
    return C3DVectorw().Sub(a, b).GetSquaredLength();
}

double GetDot(C3DVectorw const & a, C3DVectorw const & b)
{
    return C3DVectorw::GetDot(a, b);
}

double GetDistance(C3DVectorw const & a, C3DVectorw const & b)
{
    return C3DVectorw::GetDistance(a, b);
}

double GetSquaredDistance(C3DVectorw const & a, C3DVectorw const & b)
{
    return C3DVectorw::GetSquaredDistance(a, b);
}

static_assert(sizeof(C3DVectorw) == 4 * sizeof(double));
static_assert(std::is_standard_layout_v<C3DVectorw> && std::is_trivially_copyable_v<C3DVectorw>);
