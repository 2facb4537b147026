#pragma once

/// \file
/// The application's pose object, as the geometry sees it.

#include "math/api.h"

class C3DTransfo;
template <typename T>
class C3DVector3Tpl;
template <typename T>
class C3DXfoMatTpl;

/// Where a primitive stands. The application implements it and owns its poses; the library calls it and keeps nothing.
/// Each operation returns a result code, negative on failure.
class MATH_API I3DPose_QN
{
public:
    /// Gives the transformation from the pose's space to world space.
    virtual long GetGlobalTransfo(C3DTransfo & out) = 0;

    /// Gives a pointer to the matrix from the pose's space to world space. The pose owns the matrix.
    virtual long GetGlobalMatrix(C3DXfoMatTpl<double> const ** out) = 0;

    /// Gives the transformation of this pose relative to `other`.
    /// \param out receives the transformation
    /// \param other the pose that it is relative to
    /// \param components mask of the components wanted; 0x3F for all of them
    virtual long GetRelativeTransfo(C3DTransfo & out, I3DPose_QN * other, unsigned char components) = 0;

    /// Gives the pose's position in world space.
    virtual long GetGlobalPosition(C3DVector3Tpl<double> & out) = 0;

    /// Gives the pose's scaling in world space, a factor per axis.
    virtual long GetGlobalScaling(C3DVector3Tpl<double> & out) = 0;

protected:
    ~I3DPose_QN() = default;
};
