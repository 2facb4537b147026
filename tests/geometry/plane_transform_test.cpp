/// Planes through matrices, and the matrices that planes give.

#include "math/plane.h"

#include "geometry/plane_parts.h"

using namespace geometry_test;

namespace
{

constexpr unsigned k_AllSignBits = 2 | 4 | 8;

Eigen::Matrix4d ElementsOf(Matrix const & matrix)
{
    Eigen::Matrix4d elements;
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            elements(r, c) = matrix.Get(r, c);
        }
    }
    return elements;
}

unsigned SignBitsOf(Matrix const & matrix)
{
    return matrix.GetMaskInfo() & k_AllSignBits;
}

/// A scale along n about the origin, as a map of rows.
Eigen::Matrix4d ScaleAlong(PlaneParts const & plane, double s)
{
    Eigen::Vector3d const n = ToEigen(plane.normal);
    Eigen::Matrix4d expected = Eigen::Matrix4d::Identity();
    expected.topLeftCorner<3, 3>() -= (1 - s) * n * n.transpose();
    expected.bottomLeftCorner<1, 3>() = (1 - s) * ToEigen(plane.origin).dot(n) * n.transpose();
    return expected;
}

C3DPlane RandomUnitPlane(Random & random)
{
    return {RandomVector(random, 3), RandomVector(random, 1).Mul(3).Add(0.1, 0, 0)};
}

} // namespace

TEST(PlaneTransform, Mul_keeps_the_parameters_of_every_point)
{
    Random random(521);
    for (int i = 0; i < 200; ++i)
    {
        AffineMap const map = RandomAffineMap(random);
        C3DPlane const source =
            PlaneOfTangents(RandomVector(random, 3), RandomVector(random, 3), RandomVector(random, 3));
        C3DPlane target;
        ASSERT_EQ(&target.Mul(source, map.ForRows()), &target);
        for (int k = 0; k < 5; ++k)
        {
            double const u = random.Uniform(-2.0, 2.0);
            double const v = random.Uniform(-2.0, 2.0);
            Vector before;
            Vector after;
            source.GetPos(u, v, before);
            target.GetPos(u, v, after);
            EXPECT_TRUE(IsNear(after, map(before), 1e-10));
        }
        C3DPlane inPlace(source);
        inPlace.Mul(inPlace, map.ForRows());
        EXPECT_TRUE(Same(inPlace, PlaneParts(target)));
    }
}

TEST(PlaneTransform, Mul_makes_the_normal_unit_across_the_new_tangents)
{
    Random random(522);
    int mirrors = 0;
    for (int i = 0; i < 200; ++i)
    {
        AffineMap const map = RandomAffineMap(random);
        C3DPlane const source(RandomVector(random, 3), RandomVector(random, 3), RandomVector(random, 3));
        C3DPlane target;
        target.Mul(source, map.ForRows());
        // Normals go through the transposed inverse; a mirror reverses the cross product of the tangents beside that.
        bool const isMirror = map.block.determinant() < 0;
        mirrors += isMirror ? 1 : 0;
        Eigen::Vector3d const through = map.block.inverse().transpose() * ToEigen(PlaneParts(source).normal);
        EXPECT_TRUE(IsNear(PlaneParts(target).normal, FromEigen((isMirror ? -1 : 1) * through.normalized()), 1e-8));
    }
    EXPECT_GT(mirrors, 50);
    EXPECT_LT(mirrors, 150);
}

TEST(PlaneTransform, Mul_does_not_look_at_the_old_normal)
{
    C3DPlane plane(Vector(1, 2, 3), Vector(2, 0, 0), Vector(0, 3, 0)); // normal (0, 0, 6)
    Matrix identity;
    identity.SetIdentity();
    plane.Mul(plane, identity);
    EXPECT_TRUE(Same(plane, {Vector(1, 2, 3), Vector(0, 0, 1), Vector(2, 0, 0), Vector(0, 12, 0)}));
}

TEST(PlaneTransform, Mul_keeps_a_normal_not_above_its_limit)
{
    Matrix flat; // takes Y to 1e-12 of itself
    flat.SetIdentity();
    flat.SetRow(1, 0, 1e-12, 0, 0);
    C3DPlane plane;
    plane.Mul(C3DPlane(), flat);
    EXPECT_TRUE(Same(plane, {Vector(0, 0, 0), Vector(0, 0, 1e-12), Vector(1, 0, 0), Vector(0, 1e-12, 0)}));
    flat.SetRow(1, 0, Above(1e-12), 0, 0);
    plane.Mul(C3DPlane(), flat);
    EXPECT_TRUE(IsNear(PlaneParts(plane).normal, Vector(0, 0, 1), 1e-15));
    flat.SetRow(1, 0, 0, 0, 0);
    plane.Mul(C3DPlane(), flat);
    EXPECT_TRUE(Same(PlaneParts(plane).normal, Vector(0, 0, 0)));
}

TEST(PlaneTransform, Mul_skips_zero_components)
{
    C3DPlane plane(Vector(1, 2, 0), E3D_AXIS_Z);
    plane.Mul(plane, WithInfiniteRow(2));
    EXPECT_TRUE(Same(plane, {Vector(1, 2, 0), Vector(0, 0, 1), Vector(1, 0, 0), Vector(0, 1, 0)}));
}

TEST(PlaneTransform, Mul_forms_tangents_as_differences_of_points)
{
    C3DPlane plane(Vector(1e17, 0, 0), E3D_AXIS_Z);
    Matrix identity;
    identity.SetIdentity();
    plane.Mul(plane, identity);
    EXPECT_TRUE(Same(plane, {Vector(1e17, 0, 0), Vector(0, 0, 0), Vector(0, 0, 0), Vector(0, 1, 0)}))
        << "so far out a unit is nothing";
}

TEST(PlaneTransform, Scale_matrix_is_the_identity_less_the_normal_by_itself)
{
    Random random(523);
    for (int i = 0; i < 200; ++i)
    {
        // A normal of any length: it is taken for unit.
        C3DPlane const plane = RandomUnitPlane(random);
        double const s = random.Uniform(-3.0, 3.0);
        Matrix matrix;
        matrix.SetIdentity();
        EXPECT_EQ(plane.GetScaleMatrix(matrix, s), 0);
        EXPECT_LE((ElementsOf(matrix) - ScaleAlong(PlaneParts(plane), s)).cwiseAbs().maxCoeff(), 1e-12);
        EXPECT_EQ(matrix.Get(0, 3), 0);
        EXPECT_EQ(matrix.Get(1, 3), 0);
        EXPECT_EQ(matrix.Get(2, 3), 0);
        EXPECT_EQ(matrix.Get(3, 3), 1);
        bool const isMirror = ElementsOf(matrix).topLeftCorner<3, 3>().determinant() < 0;
        EXPECT_EQ(SignBitsOf(matrix), isMirror ? k_AllSignBits : 0U);
    }
}

TEST(PlaneTransform, Scale_matrix_of_a_unit_normal_scales_heights_and_keeps_the_plane)
{
    Random random(524);
    for (int i = 0; i < 100; ++i)
    {
        Vector normal = RandomVector(random, 3);
        normal.Normalize();
        C3DPlane const plane(RandomVector(random, 3), normal);
        double const s = random.Uniform(-3.0, 3.0);
        Matrix matrix;
        plane.GetScaleMatrix(matrix, s);
        Vector const point = RandomVector(random, 5);
        Vector image;
        image.Mul(point, matrix);
        double const height = plane.GetSignedDistanceFrom(point);
        EXPECT_NEAR(plane.GetSignedDistanceFrom(image), s * height, 1e-12);
        Vector const expected = Vector().Add(point, Vector().Mul(normal, (s - 1) * height));
        EXPECT_TRUE(IsNear(image, expected, 1e-12)) << "it moves along the normal alone";
    }
}

TEST(PlaneTransform, Scale_matrix_has_exact_elements)
{
    C3DPlane const plane(Vector(1, 2, 3), Vector(2, -1, 0.5));
    Matrix matrix;
    plane.GetScaleMatrix(matrix, 0.5);
    // k = 0.5, origin . N = 1.5; the translation is 0.75 N.
    Eigen::Matrix4d expected;
    expected << -1, 1, -0.5, 0, 1, 0.5, 0.25, 0, -0.5, 0.25, 0.875, 0, 1.5, -0.75, 0.375, 1;
    EXPECT_EQ(ElementsOf(matrix), expected);
}

TEST(PlaneTransform, Sign_bits_follow_the_determinant_and_not_the_scale)
{
    struct
    {
        Vector normal;
        double s;
        unsigned bits;
    } const rows[] = {
        {Vector(0, 0, 1), 2, 0},
        {Vector(0, 0, 1), 1, 0},
        {Vector(0, 0, 1), 0, 0},    // singular
        {Vector(0, 0, 1), -0.0, 0}, // singular
        {Vector(0, 0, 1), -1e-3, k_AllSignBits},
        {Vector(0, 0, 1), -1, k_AllSignBits},
        {Vector(0, 0, 2), 0.5, k_AllSignBits}, // 1 - 0.5 4 = -1
        {Vector(0, 0, 2), 0.76, 0},            // 1 - 0.24 4 = 0.04
        {Vector(0, 0, 0), -1, 0},              // the identity
        {Vector(0, 0, 0.5), -1, 0},            // 1 - 2 0.25 = 0.5
        {Vector(0, 0, k_Nan), 2, k_AllSignBits},
        {Vector(0, 0, 1), k_Nan, k_AllSignBits},
    };
    for (auto const & row : rows)
    {
        for (unsigned const before : {0x00U, 0xFFU, 0x02U, 0x0CU})
        {
            Matrix matrix;
            matrix.SetIdentity();
            matrix.SetMaskInfo(static_cast<unsigned char>(before));
            C3DPlane(Vector(1, 2, 3), row.normal).GetScaleMatrix(matrix, row.s);
            EXPECT_EQ(SignBitsOf(matrix), row.bits) << row.normal << row.s << " after " << before;
            EXPECT_EQ(matrix.GetMaskInfo() & ~k_AllSignBits, before & ~k_AllSignBits) << "the other bits are no one's";
        }
    }
}

TEST(PlaneTransform, Mirror_matrix_is_the_scale_by_minus_1)
{
    Random random(525);
    for (int i = 0; i < 50; ++i)
    {
        C3DPlane const plane = RandomUnitPlane(random);
        Matrix mirror;
        Matrix scale;
        mirror.SetIdentity();
        scale.SetIdentity();
        EXPECT_EQ(plane.GetMirrorMatrix(mirror), 0);
        plane.GetScaleMatrix(scale, -1);
        EXPECT_EQ(ElementsOf(mirror), ElementsOf(scale));
        EXPECT_EQ(SignBitsOf(mirror), SignBitsOf(scale));
    }
}

TEST(PlaneTransform, Mirror_matrix_agrees_with_the_mirror_image_of_points)
{
    Random random(526);
    for (int i = 0; i < 100; ++i)
    {
        C3DPlane plane;
        plane.SetOrigin(RandomVector(random, 3));
        Vector const first = RandomVector(random, 3);
        plane.SetTangents(first, RandomVector(random, 3));
        Matrix mirror;
        plane.GetMirrorMatrix(mirror);
        EXPECT_EQ(SignBitsOf(mirror), k_AllSignBits);
        Vector const point = RandomVector(random, 5);
        Vector byMatrix;
        Vector byFoot;
        byMatrix.Mul(point, mirror);
        plane.ReflectPoint(point, byFoot);
        EXPECT_TRUE(IsNear(byMatrix, byFoot, 1e-8));
        C3DPlane image;
        image.Mul(plane, mirror);
        EXPECT_TRUE(IsNear(PlaneParts(image).normal, PlaneParts(plane).normal, 1e-8))
            << "its own mirror leaves the tangents, and so their cross product";
        PlaneParts const parts(plane);
        C3DPlane const across = PlaneOfTangents(parts.origin, parts.normal, parts.first);
        image.Mul(across, mirror);
        EXPECT_TRUE(IsNear(PlaneParts(image).normal, Vector().Negate(PlaneParts(across).normal), 1e-8))
            << "and reverses the normal of a plane across it";
    }
}
