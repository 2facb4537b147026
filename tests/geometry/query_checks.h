#pragma once

/// \file
/// What the tests of queries between posed primitives share.

#include "geometry/marked_record.h"
#include "geometry/pose_tree.h"
#include "math/geometry.h"

#include <Eigen/Dense>
#include <gtest/gtest.h>

namespace geometry_test
{

/// What one query gave. The record was marked before, and so were the flags.
struct Answer
{
    long result = 0;
    unsigned long flags = test_support::k_MarkedFlags;
    tagS3DGEOMINFO info = test_support::MakeMarkedRecord();
};

/// Asks with a record, or without.
template <typename Ask>
Answer AskWith(bool withRecord, Ask ask)
{
    Answer answer;
    answer.result = ask(answer.flags, withRecord ? &answer.info : nullptr);
    return answer;
}

/// Whether nothing but the result was written.
inline testing::AssertionResult WroteNothing(Answer const & answer)
{
    if (answer.flags != test_support::k_MarkedFlags)
    {
        return testing::AssertionFailure() << "flags are " << answer.flags;
    }
    return test_support::HasOnly(test_support::k_NoField, answer.info);
}

/// The matrix of a pose, for points as rows.
inline Eigen::Matrix4d EigenMatrix(PoseNode & pose)
{
    C3DXfoMatTpl<double> const matrix = pose.GlobalMatrix();
    Eigen::Matrix4d result;
    for (int row = 0; row < 4; ++row)
    {
        for (int column = 0; column < 4; ++column)
        {
            result(row, column) = matrix.Get(row, column);
        }
    }
    return result;
}

inline C3DVector3Tpl<double> Map(C3DVector3Tpl<double> const & point, Eigen::Matrix4d const & matrix)
{
    Eigen::RowVector4d const mapped = Eigen::RowVector4d(point.X, point.Y, point.Z, 1) * matrix;
    return {mapped[0], mapped[1], mapped[2]};
}

} // namespace geometry_test
