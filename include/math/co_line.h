#pragma once

/// \file
/// The line as a reference-counted object.

#include "math/implicit_geometry.h"
#include "math/line.h"

/// A line that clients read through I3DReadCurve_QN and I3DImplicitGeometry.
///
/// It is made on the heap, with one reference that its maker holds, and the `Release` of the last one deletes it. The
/// two interfaces and the object share one count, and each gives the other; the identity, `IUnknown`, is the read
/// interface. **The count is not atomic:** threads that share an object take turns. A copy is an object of its own,
/// with one reference.
class MATH_API C3DCoLine : public C3DLine, public I3DReadCurve_QN, public I3DImplicitGeometry
{
public:
    /// \name Construction
    /// As the constructors of C3DLine, with one reference.
    ///@{
    C3DCoLine();
    C3DCoLine(C3DVector3Tpl<double> const & origin, tagE3DAXISTYPE axis);
    C3DCoLine(C3DVector3Tpl<double> const & origin, C3DVector3Tpl<double> const & tangent);
    ///@}
    /// A copy of the geometry, with one reference of its own.
    C3DCoLine(C3DCoLine const & other);
    /// Takes over the geometry. The references of both objects stay as they are.
    C3DCoLine & operator=(C3DCoLine const & other);
    ~C3DCoLine() override;

    /// Answers to `IUnknown`, I3DReadCurve_QN and I3DImplicitGeometry.
    long QueryInterface(_GUID const & iid, void ** out) override;
    /// Adds a reference and returns the new count.
    unsigned long AddRef() override;
    /// Gives a reference back and returns the new count; the last one deletes the object.
    unsigned long Release() override;

    /// Writes the kind of the primitive and returns 0.
    long GetType(e3dBaseGeomType & type) const override;

    /// \name Reading
    /// What is read of an object that is not const goes through the interface; the answers are those of C3DLine.
    ///@{
    using C3DLine::GetDistanceFrom;
    using C3DLine::GetPos;
    using C3DLine::GetTangent;
    using C3DLine::ProjectOn;
    long GetPos(double t, C3DVector3Tpl<double> & position) override;
    long GetTangent(double t, C3DVector3Tpl<double> & tangent) override;
    long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) override;
    long ProjectOn(C3DVector3Tpl<double> const & point, double & t) override;
    ///@}

private:
    unsigned long m_ReferenceCount = 1;
};
