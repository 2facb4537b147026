#pragma once

#include "clip/joint_rotation.h"
#include "math/rotation_matrix.h"
#include "math/vector3.h"

namespace bake
{

/// Near the pole of an order, where the middle angle is a quarter turn, an extraction can miss the matrix: in a narrow
/// belt around it digits are lost, and at the pole itself a free angle of zero can be shared out wrongly. Where the
/// angles miss the matrix by more than a ten-thousand-millionth, this keeps the one that acts first and solves the
/// other two from what is left, which is well conditioned everywhere. What may remain then is the miss of the first
/// angle times the cosine of the middle one: nothing at the pole itself, and a millionth or two of a radian in the
/// belt where the extraction takes the middle angle for a quarter turn.
///
/// \param target in radians, what the angles were extracted with; the solved ones stay within half a turn of it
/// \param angles in radians, as extracted
/// \return whether they had to be changed
bool RepairAtPole(C3DRotMatTpl<double> const & matrix, clip::ChannelOrder const & order,
                  C3DVector3Tpl<double> const & target, C3DVector3Tpl<double> & angles);

/// The angles of a matrix in an order, the nearest to those that `angles` brings in, repaired at the pole.
/// \return whether they had to be repaired
bool ExtractNearest(C3DRotMatTpl<double> const & matrix, clip::ChannelOrder const & order,
                    C3DVector3Tpl<double> & angles);

} // namespace bake
