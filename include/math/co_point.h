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
    /// As the constructors of C3DPoint.
    ///@{
    C3DCoPoint();
    explicit C3DCoPoint(C3DVector3Tpl<double> const & position);
    ///@}
    C3DCoPoint(C3DCoPoint const & other);
    C3DCoPoint & operator=(C3DCoPoint const & other);
    ~C3DCoPoint() override;

    /// Answers to `IUnknown`, I3DReadPoint_QN and I3DImplicitGeometry.
    long QueryInterface(_GUID const & iid, void ** out) override;
    unsigned long AddRef() override;
    unsigned long Release() override;

    long GetType(e3dBaseGeomType & type) const override;

    using C3DPoint::GetDistanceFrom;
    using C3DPoint::GetPos;
    long GetPos(C3DVector3Tpl<double> & position) override;
    long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) override;

private:
    unsigned long m_ReferenceCount = 1;
};
