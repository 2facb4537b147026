#pragma once

/// \file
/// The interfaces by which a client reads a primitive without knowing its class.
///
/// Each operation has the meaning of that of the same name of C3DPoint, C3DLine or C3DPlane, and its result code.

#include "math/geometry.h"
#include "math/platform/unknown.h"
#include "math/vector3.h"

/// {B1BCC591-BFFD-11D0-96C3-00A0243E3463}
inline constexpr _GUID IID_I3DImplicitGeometry{
    0xB1BCC591, 0xBFFD, 0x11D0, {0x96, 0xC3, 0x00, 0xA0, 0x24, 0x3E, 0x34, 0x63}};
/// {D4803730-8C05-11D0-84D5-00A0243E3543}
inline constexpr _GUID IID_I3DReadPoint_QN{
    0xD4803730, 0x8C05, 0x11D0, {0x84, 0xD5, 0x00, 0xA0, 0x24, 0x3E, 0x35, 0x43}};
/// {D4803731-8C05-11D0-84D5-00A0243E3543}
inline constexpr _GUID IID_I3DReadCurve_QN{
    0xD4803731, 0x8C05, 0x11D0, {0x84, 0xD5, 0x00, 0xA0, 0x24, 0x3E, 0x35, 0x43}};
/// {D4803732-8C05-11D0-84D5-00A0243E3543}
inline constexpr _GUID IID_I3DReadSurface_QN{
    0xD4803732, 0x8C05, 0x11D0, {0x84, 0xD5, 0x00, 0xA0, 0x24, 0x3E, 0x35, 0x43}};

/// Tells the kind of a geometry object.
class MATH_API I3DImplicitGeometry : public IUnknown
{
public:
    /// Writes the kind and returns 0.
    virtual long GetType(e3dBaseGeomType & type) const = 0;

protected:
    ~I3DImplicitGeometry() = default;
};

/// A point. Its operations are those of C3DPoint.
class MATH_API I3DReadPoint_QN : public IUnknown
{
public:
    /// Writes the position.
    virtual long GetPos(C3DVector3Tpl<double> & position) = 0;
    /// Writes the distance of a point.
    virtual long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) = 0;

protected:
    ~I3DReadPoint_QN() = default;
};

/// A curve p(t). Its operations are those of C3DLine.
class MATH_API I3DReadCurve_QN : public IUnknown
{
public:
    /// Writes the point at a parameter.
    virtual long GetPos(double t, C3DVector3Tpl<double> & position) = 0;
    /// Writes the derivative of the point with respect to the parameter.
    virtual long GetTangent(double t, C3DVector3Tpl<double> & tangent) = 0;
    /// Writes the distance of a point from the curve; never negative.
    virtual long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) = 0;
    /// Writes the parameter of the point of the curve that is closest to a point.
    virtual long ProjectOn(C3DVector3Tpl<double> const & point, double & t) = 0;

protected:
    ~I3DReadCurve_QN() = default;
};

/// A surface p(u, v). Its operations are those of C3DPlane.
class MATH_API I3DReadSurface_QN : public IUnknown
{
public:
    /// Writes the point at two parameters.
    virtual long GetPos(double u, double v, C3DVector3Tpl<double> & position) = 0;
    /// Writes the derivatives of the point with respect to u and to v.
    virtual long GetTangents(double u, double v, C3DVector3Tpl<double> & first, C3DVector3Tpl<double> & second) = 0;
    /// Writes the normal at two parameters, of any length.
    virtual long GetNormal(double u, double v, C3DVector3Tpl<double> & normal) = 0;
    /// Writes the distance of a point from the surface; never negative.
    virtual long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) = 0;
    /// Writes the parameters of the foot of a point; a negative code where the surface has none, as a plane with a null
    /// tangent.
    virtual long ProjectOn(C3DVector3Tpl<double> const & point, double & u, double & v) = 0;

protected:
    ~I3DReadSurface_QN() = default;
};
