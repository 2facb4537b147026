#pragma once

/// \file
/// The plane as a reference-counted object.

#include "math/implicit_geometry.h"
#include "math/plane.h"

/// A plane that clients read through I3DReadSurface_QN and I3DImplicitGeometry.
///
/// It is made on the heap, with one reference that its maker holds, and the `Release` of the last one deletes it. The
/// two interfaces and the object share one count, and each gives the other; the identity, `IUnknown`, is the read
/// interface. **The count is not atomic:** threads that share an object take turns. A copy is an object of its own,
/// with one reference.
class MATH_API C3DCoPlane : public C3DPlane, public I3DReadSurface_QN, public I3DImplicitGeometry
{
public:
    /// \name Construction
    /// As the constructors of C3DPlane, with one reference.
    ///@{
    C3DCoPlane();
    C3DCoPlane(C3DVector3Tpl<double> const & origin, tagE3DAXISTYPE normalAxis);
    C3DCoPlane(C3DVector3Tpl<double> const & origin, C3DVector3Tpl<double> const & normal);
    C3DCoPlane(C3DVector3Tpl<double> const & origin, tagE3DAXISTYPE first, tagE3DAXISTYPE second);
    C3DCoPlane(C3DVector3Tpl<double> const & origin, C3DVector3Tpl<double> const & first,
               C3DVector3Tpl<double> const & second);
    ///@}
    /// A copy of the geometry, with one reference of its own.
    C3DCoPlane(C3DCoPlane const & other);
    /// Takes over the geometry. The references of both objects stay as they are.
    C3DCoPlane & operator=(C3DCoPlane const & other);
    ~C3DCoPlane() override;

    /// Answers to `IUnknown`, I3DReadSurface_QN and I3DImplicitGeometry.
    long QueryInterface(_GUID const & iid, void ** out) override;
    /// Adds a reference and returns the new count.
    unsigned long AddRef() override;
    /// Gives a reference back and returns the new count; the last one deletes the object.
    unsigned long Release() override;

    /// Writes the kind of the primitive and returns 0.
    long GetType(e3dBaseGeomType & type) const override;

    /// \name Reading
    /// What is read of an object that is not const goes through the interface; the answers are those of C3DPlane.
    ///@{
    using C3DPlane::GetDistanceFrom;
    using C3DPlane::GetNormal;
    using C3DPlane::GetPos;
    using C3DPlane::GetTangents;
    using C3DPlane::ProjectOn;
    long GetPos(double u, double v, C3DVector3Tpl<double> & position) override;
    long GetTangents(double u, double v, C3DVector3Tpl<double> & first, C3DVector3Tpl<double> & second) override;
    long GetNormal(double u, double v, C3DVector3Tpl<double> & normal) override;
    long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) override;
    long ProjectOn(C3DVector3Tpl<double> const & point, double & u, double & v) override;
    ///@}

private:
    unsigned long m_ReferenceCount = 1;
};
