#pragma once

#include "math/matrix44.h"
#include "math/vector3.h"

#include <Eigen/Geometry>

#include <string_view>

/// A rotation by its channels, for points as columns: the first-named stands on the left.
/// \param angles about X, Y and Z in radians
inline Eigen::Quaterniond ReferenceRotation(std::string_view order, C3DVector3Tpl<double> const & angles)
{
    Eigen::Quaterniond rotation = Eigen::Quaterniond::Identity();
    for (char const axis : order)
    {
        rotation = rotation * Eigen::AngleAxisd(angles.Get(axis - 'X'), Eigen::Vector3d::Unit(axis - 'X'));
    }
    return rotation;
}

inline Eigen::Vector3d ToEigen(C3DVector3Tpl<double> const & vector)
{
    return {vector.X, vector.Y, vector.Z};
}

/// For points as columns.
inline Eigen::Matrix4d ToEigen(C3DMatrix44Tpl<double> const & matrix)
{
    Eigen::Matrix4d transposed;
    for (int row = 0; row < 4; ++row)
    {
        for (int column = 0; column < 4; ++column)
        {
            transposed(column, row) = matrix.Get(row, column);
        }
    }
    return transposed;
}
