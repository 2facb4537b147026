#pragma once

/// \file
/// The bounding cylinder.

#include "math/cylinder.h"

/// A cylinder by another name.
class MATH_API C3DBCylinder : public C3DBaseCylinder
{
public:
    /// \name Construction
    /// As the constructors of C3DBaseCylinder.
    ///@{
    C3DBCylinder();
    C3DBCylinder(double radius, double length, tagE3DCylinderAxisType type);
    C3DBCylinder(double radius, C3DVector3Tpl<double> const & start, C3DVector3Tpl<double> const & end);
    ///@}
    /// Copies, of the same size and at the same place.
    C3DBCylinder(C3DBCylinder const & other) = default;
    C3DBCylinder & operator=(C3DBCylinder const & other) = default;
    ~C3DBCylinder() override;
};
