// Values in every state that a printer tells apart. Each function stops with its values as locals, for a debugger to
// show.

#include "math/math.h"

#include <cstring>
#include <limits>

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;

constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double k_Infinity = std::numeric_limits<double>::infinity();
constexpr double k_Third = 1.0 / 3;

/// Where the debugger stops.
[[gnu::noinline]] void Stop()
{
    asm volatile("" ::: "memory");
}

/// Takes X to Y, Y to Z and Z to X: a third of a turn about (1, 1, 1).
C3DQuatTpl<double> ThirdOfATurn()
{
    return {0.5, 0.5, 0.5, 0.5};
}

/// The same as a matrix.
C3DRotMatTpl<double> CyclicMatrix()
{
    return {Vector(0, 1, 0), Vector(0, 0, 1), Vector(1, 0, 0), 1};
}

void Vectors()
{
    [[maybe_unused]] C3DVector2Tpl<double> const vector2(1.0, -2.5);
    [[maybe_unused]] C3DVector2Tpl<float> const vector2Float(1.0F, -2.5F);
    [[maybe_unused]] Vector const vector3(0.1, k_Third, -0.0);
    [[maybe_unused]] C3DVector3Tpl<float> const vector3Float(0.1F, 1.0F / 3, 16777216);
    [[maybe_unused]] C3DVector3Tpl<float> const extremesFloat(std::numeric_limits<float>::denorm_min(),
                                                              std::numeric_limits<float>::max(), -0.0F);
    [[maybe_unused]] C3DVector4Tpl<double> const vector4(1e300, 1e-300, 10, 100000);
    [[maybe_unused]] C3DVector4Tpl<float> const vector4Float(1, 2, 3, 1016.84845F);
    [[maybe_unused]] C3DVectorw const vectorw(1, 2, 3, 4);
    [[maybe_unused]] Vector const withNaN(k_NaN, k_Infinity, -k_Infinity);
    [[maybe_unused]] C3DVector2Tpl<float> const withNaNFloat(std::numeric_limits<float>::quiet_NaN(), 1);

    Vector position(1, 2, 3);
    [[maybe_unused]] Vector const & reference = position;
    [[maybe_unused]] Vector * const pointer = &position;
    [[maybe_unused]] Vector const pair[2] = {Vector(1, 2, 3), Vector(4, 5, 6)};
    struct Joint
    {
        Vector position;
        C3DQuatTpl<double> orientation;
    };
    [[maybe_unused]] Joint const joint{position, ThirdOfATurn()};
    Stop();
}

void Quaternions()
{
    [[maybe_unused]] C3DQuatTpl<double> const unit = ThirdOfATurn();
    [[maybe_unused]] C3DQuatTpl<float> const unitFloat(0.8F, 0, -0.6F, 0);
    [[maybe_unused]] C3DQuatTpl<double> const identity;
    [[maybe_unused]] C3DQuatTpl<double> const negative(-0.5, 0.5, 0.5, 0.5);
    [[maybe_unused]] C3DQuatTpl<double> const longer(1, 2, 4, 10);
    [[maybe_unused]] C3DQuatTpl<double> const null(0, 0, 0, 0);
    [[maybe_unused]] C3DQuatTpl<double> const withNaN(1, k_NaN, 0, 0);
    [[maybe_unused]] C3DQuatTpl<double> const infinite(1, 0, k_Infinity, 0);

    [[maybe_unused]] C3DDualQuatTpl<double> const rigid(ThirdOfATurn(), Vector(1, 2, 3));
    [[maybe_unused]] C3DDualQuatTpl<float> const rigidFloat(unitFloat, C3DVector3Tpl<float>(4, 8, -16));
    [[maybe_unused]] C3DDualQuatTpl<double> const doubled(C3DQuatTpl<double>(2, 0, 0, 0),
                                                          C3DQuatTpl<double>(0, 1, 2, 3));
    [[maybe_unused]] C3DDualQuatTpl<double> const tiny(C3DQuatTpl<double>(0, 1e-200, 0, 0),
                                                       C3DQuatTpl<double>(-1e-200, 0, 0, 0));
    [[maybe_unused]] C3DDualQuatTpl<double> const huge(C3DQuatTpl<double>(1e300, 1e300, 0, 0),
                                                       C3DQuatTpl<double>(1e300, 1e300, 1e300, 1e300));
    [[maybe_unused]] C3DDualQuatTpl<double> const smallest(C3DQuatTpl<double>(5e-324, 0, 0, 0),
                                                           C3DQuatTpl<double>(0, 1, 0, 0));
    [[maybe_unused]] C3DDualQuatTpl<double> const nullDual(null, null);
    [[maybe_unused]] C3DDualQuatTpl<double> const withNaNDual(ThirdOfATurn(), withNaN);
    Stop();
}

void Matrices()
{
    [[maybe_unused]] C3DMatrix33Tpl<double> const matrix33(1, 2, 3, 4, 5, 6, 7, 8, 0.1);
    [[maybe_unused]] C3DMatrix33Tpl<float> const matrix33Float(1, 2, 3, 4, 5, 6, 7, 8, 0.1F);
    [[maybe_unused]] C3DMatrix44Tpl<double> const matrix44(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, k_NaN);
    [[maybe_unused]] C3DMatrix44Tpl<float> const matrix44Float(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 0.1F);
    [[maybe_unused]] C3DRotMatTpl<double> const rotation = CyclicMatrix();
    [[maybe_unused]] C3DRotMatTpl<float> const rotationFloat;

    [[maybe_unused]] C3DMatrixMN const empty;
    C3DMatrixMN matrixMN;
    matrixMN.SetDimensions(2, 3);
    C3DMatrixMN large;
    large.SetDimensions(34, 35);
    for (int r = 0; r < 34; ++r)
    {
        for (int c = 0; c < 35; ++c)
        {
            large.Set(r, c, 100 * r + c);
            if (r < 2 && c < 3)
            {
                matrixMN.Set(r, c, r + 0.1 * c);
            }
        }
    }
    Stop();
}

void TransformationMatrices()
{
    [[maybe_unused]] Matrix const plain(1, 2, 3, 0, 0, 5, 6, 0, 0, 0, 9, 0, 10, 11, 12, 1);
    Matrix mirroredInY;
    mirroredInY.SetScaling(Vector(2, -3, 4));
    Matrix mirroredInXAndY;
    mirroredInXAndY.SetScaling(Vector(-2, -3, 4));
    C3DXfoMatTpl<float> mirroredFloat;
    mirroredFloat.SetScaling(C3DVector3Tpl<float>(-1, -1, -1));
    Matrix mirroredBySetting;
    mirroredBySetting.Set(0, 0, -1);
    Matrix restoredBySetting = mirroredInY;
    restoredBySetting.Set(1, 1, 3);
    [[maybe_unused]] Matrix const singular(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    Matrix withNaN;
    withNaN.Set(0, 0, k_NaN);
    // The product of the diagonal is just below 1: rounded to float it is 1, and the determinant is 0 and no mirror.
    C3DXfoMatTpl<float> nearlySingularFloat;
    nearlySingularFloat.Set(0, 0, 0.99999988F).Set(0, 1, 1.0F).Set(1, 0, 1.0F).Set(1, 1, 1.00000012F);
    // Each element weighs differently, and so does each sign of the expansion.
    [[maybe_unused]] Matrix const expanded(1, 2, 3, 4, 5, -6, 7, 8, 9, 10, -11, 12, 13, 14, 15, 17);
    Stop();
}

void RotationsGivenAsQuaternion()
{
    Vector angles;
    C3DRotMatTpl<double> matrix;

    [[maybe_unused]] C3DRotation const identity;
    C3DRotation identityWithMatrix;
    identityWithMatrix.GetMatrix(matrix);
    C3DRotation identityWithAngles;
    identityWithAngles.GetXYZAngles(angles);

    [[maybe_unused]] C3DRotation const quaternion(ThirdOfATurn());
    C3DRotation withMatrix(ThirdOfATurn());
    withMatrix.GetMatrix(matrix);
    C3DRotation withAll(ThirdOfATurn());
    withAll.GetXYZAngles(angles);
    [[maybe_unused]] C3DRotation const aboutAxis(E3D_AXIS_Y, 0.5);
    [[maybe_unused]] C3DRotation const wholeTurns(Vector(1, 1, 0), 8);
    [[maybe_unused]] C3DRotation const withNaN(C3DQuatTpl<double>(k_NaN, 0, 0, 0));
    Stop();
}

void RotationsGivenOtherwise()
{
    Vector angles;
    C3DRotMatTpl<double> matrix;
    C3DQuatTpl<double> quat;

    [[maybe_unused]] C3DRotation const nothing{C3DInitRequest_DoNotInitialize()};

    [[maybe_unused]] C3DRotation const fromMatrix(CyclicMatrix());
    C3DRotation matrixWithQuaternion(CyclicMatrix());
    matrixWithQuaternion.GetQuat(quat);
    C3DRotation matrixWithAngles(CyclicMatrix());
    matrixWithAngles.GetXYZAngles(angles);
    C3DRotation matrixWithAll(CyclicMatrix());
    matrixWithAll.GetXYZAngles(angles);
    matrixWithAll.GetQuat(quat);

    [[maybe_unused]] C3DRotation const fromAngles(0.5, 0, 7, E3DROTORDER_ZXY);
    C3DRotation anglesWithQuaternion(0.5, 0, 0, E3DROTORDER_XZY);
    anglesWithQuaternion.GetQuat(quat);
    C3DRotation anglesWithMatrix(0, 0, 0, E3DROTORDER_YXZ);
    anglesWithMatrix.GetMatrix(matrix);
    C3DRotation anglesWithAll(0, 0.5, 0, E3DROTORDER_YZX);
    anglesWithAll.GetMatrix(matrix);
    anglesWithAll.GetQuat(quat);
    [[maybe_unused]] C3DRotation const anglesWithNaN(0.5, k_NaN, 0, E3DROTORDER_ZYX);
    Stop();
}

void CompactRotations()
{
    [[maybe_unused]] C3DRotation3Tpl<double> const identity;
    [[maybe_unused]] C3DRotation3Tpl<double> const quaternion(C3DQuatTpl<double>(0.5, -0.5, 0.1, k_Third));
    [[maybe_unused]] C3DRotation3Tpl<float> const quaternionFloat(C3DQuatTpl<float>(0.8F, 0, 0, 0.6F));
    [[maybe_unused]] C3DRotation3Tpl<double> const angles(0.5, 0, 7, E3DROTORDER_ZXY);
    [[maybe_unused]] C3DRotation3Tpl<float> const anglesFloat(0.5F, 0, 7, E3DROTORDER_ZYX);
    [[maybe_unused]] C3DRotation3Tpl<double> const axisAngle(Vector(1, 2, 3), 0.5);
    [[maybe_unused]] C3DRotation3Tpl<float> const axisAngleFloat(C3DVector3Tpl<float>(1, 2, 3), 0.1F);
    [[maybe_unused]] C3DRotation3Tpl<double> const withNaN(Vector(1, 2, 3), k_NaN);
    Stop();
}

void Transformations()
{
    C3DRotation rotation(0, 0.5, 0, E3DROTORDER_XYZ);
    C3DRotation orientation(ThirdOfATurn());
    Vector scaling(1, -2, 3);
    Vector const translation(4, 5, 6);
    C3DXfoMatTpl<double> matrix;

    [[maybe_unused]] C3DTransfo const identity;
    [[maybe_unused]] C3DTransfo const nothing(C3DInitRequest_DoNotInitialize(), false);
    [[maybe_unused]] C3DTransfo const components(scaling, rotation, translation);
    C3DTransfo componentsWithMatrix(scaling, C3DRotation(), translation);
    componentsWithMatrix.GetMatrix(matrix);

    C3DTransfo fromMatrix;
    fromMatrix.SetRotation(E3DROTORDER_ZXY, 0);
    fromMatrix.Set(matrix);
    C3DTransfo matrixWithComponents;
    matrixWithComponents.Set(matrix);
    matrixWithComponents.GetScaling(scaling);

    [[maybe_unused]] C3DTransfo const oriented(scaling, orientation);
    C3DTransfo preserving;
    preserving.SetTranslation(1, 2, 3);
    preserving.SetPreserveRotOrderFlag(1);
    preserving.SetQNScalingFlag(0);
    [[maybe_unused]] C3DTransfo const withNaN(scaling, C3DRotation(), Vector(k_NaN, 0, 0));
    Stop();
}

/// Bytes where objects are not: the debugger reads them as any of the types.
void Overwritten()
{
    alignas(16) unsigned char overwritten[1024];
    std::memset(overwritten, 0xAA, sizeof overwritten);
    C3DMatrixMN matrix;
    matrix.SetDimensions(2, 2);
    matrix.SetIdentity();
    [[maybe_unused]] C3DRotation const rotation(E3D_AXIS_Y, 0.5);
    [[maybe_unused]] C3DTransfo const transformation;
    [[maybe_unused]] C3DRotation3Tpl<float> const compact(1, 2, 3, E3DROTORDER_ZYX);
    Stop();
}

} // namespace

int main()
{
    Vectors();
    Quaternions();
    Matrices();
    TransformationMatrices();
    RotationsGivenAsQuaternion();
    RotationsGivenOtherwise();
    CompactRotations();
    Transformations();
    Overwritten();
}
