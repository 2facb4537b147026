#pragma once

/// \file
/// The point as a reference-counted object.

#include "math/implicit_geometry.h"
#include "math/point.h"

/// A point that clients read through I3DReadPoint_QN and I3DImplicitGeometry.
///
/// It is made on the heap, with one reference that its maker holds, and the `Release` of the last one deletes it. The
/// two interfaces and the object share one count, and each gives the other; the identity, `IUnknown`, is the read
/// interface. **The count is not atomic:** threads that share an object take turns. A copy is an object of its own,
/// with one reference.
class MATH_API C3DCoPoint : public C3DPoint, public I3DReadPoint_QN, public I3DImplicitGeometry
{
public:
    /// \name Construction
    /// As the constructors of C3DPoint, with one reference.
    ///@{
    C3DCoPoint();
    explicit C3DCoPoint(C3DVector3Tpl<double> const & position);
    ///@}
    /// A copy of the geometry, with one reference of its own.
    C3DCoPoint(C3DCoPoint const & other);
    /// Takes over the geometry. The references of both objects stay as they are.
    C3DCoPoint & operator=(C3DCoPoint const & other);
    ~C3DCoPoint() override;

    /// Answers to `IUnknown`, I3DReadPoint_QN and I3DImplicitGeometry.
    long QueryInterface(_GUID const & iid, void ** out) override;
    /// Adds a reference and returns the new count.
    unsigned long AddRef() override;
    /// Gives a reference back and returns the new count; the last one deletes the object.
    unsigned long Release() override;

    /// Writes the kind of the primitive and returns 0.
    long GetType(e3dBaseGeomType & type) const override;

    /// \name Reading
    /// What is read of an object that is not const goes through the interface; the answers are those of C3DPoint.
    ///@{
    using C3DPoint::GetDistanceFrom;
    using C3DPoint::GetPos;
    long GetPos(C3DVector3Tpl<double> & position) override;
    long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) override;
    ///@}

private:
    unsigned long m_ReferenceCount = 1;
};
