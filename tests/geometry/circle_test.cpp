/// Circles in space.

#include "math/circle.h"

#include "geometry/vector_checks.h"
#include "math/vector_geometry.h"

using namespace geometry_test;

namespace
{

Vector const k_Center(1, 2, 3);
constexpr double k_SmallestRadius = 1e-6;

Vector CenterOf(C3DBaseCircle const & circle)
{
    Vector center = MarkedVector();
    circle.GetCenter(center);
    return center;
}

Vector NormalOf(C3DBaseCircle const & circle)
{
    Vector normal = MarkedVector();
    circle.GetNormal(normal);
    return normal;
}

double RadiusOf(C3DBaseCircle const & circle)
{
    double radius = k_Mark;
    circle.GetRadius(radius);
    return radius;
}

Matrix Scaling(double x, double y, double z)
{
    return {x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 10, 20, 30, 1};
}

struct Raise
{
    double given;
    double stored;
};
Raise const k_Raises[] = {{2.5, 2.5},
                          {k_SmallestRadius, k_SmallestRadius},
                          {Above(k_SmallestRadius), Above(k_SmallestRadius)},
                          {Below(k_SmallestRadius), k_SmallestRadius},
                          {0, k_SmallestRadius},
                          {-3, k_SmallestRadius},
                          {-k_Infinity, k_SmallestRadius},
                          {k_Infinity, k_Infinity}};

} // namespace

TEST(Circle, Default_circle_is_the_unit_circle_about_Z)
{
    C3DBaseCircle const circle;
    EXPECT_TRUE(SameBits(CenterOf(circle), Vector(0, 0, 0)));
    EXPECT_TRUE(SameBits(NormalOf(circle), Vector(0, 0, 1)));
    EXPECT_EQ(RadiusOf(circle), 1);
}

TEST(Circle, Normal_is_stored_as_given)
{
    C3DBaseCircle const circle(k_Center, 4, Vector(0, -5, 12));
    EXPECT_TRUE(SameBits(CenterOf(circle), k_Center));
    EXPECT_TRUE(SameBits(NormalOf(circle), Vector(0, -5, 12)));
    EXPECT_EQ(RadiusOf(circle), 4);
    C3DBaseCircle const through(k_Center, Vector(4, 6, 3), Vector(0, -5, 12));
    EXPECT_TRUE(SameBits(NormalOf(through), Vector(0, -5, 12)));
    EXPECT_TRUE(SameBits(CenterOf(through), k_Center));
    EXPECT_EQ(RadiusOf(through), 5);
}

TEST(Circle, Axis_gives_the_normal)
{
    Vector const axes[] = {Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1)};
    C3DBaseCircle changed;
    for (int axis = 0; axis < 3; ++axis)
    {
        auto const type = static_cast<tagE3DAXISTYPE>(axis);
        EXPECT_TRUE(SameBits(NormalOf(C3DBaseCircle(k_Center, 4.0, type)), axes[axis]));
        C3DBaseCircle const through(k_Center, Vector(4, 6, 3), type);
        EXPECT_TRUE(SameBits(NormalOf(through), axes[axis]));
        EXPECT_TRUE(SameBits(CenterOf(through), k_Center));
        EXPECT_EQ(RadiusOf(through), 5);
        changed.SetNormal(type);
        EXPECT_TRUE(SameBits(NormalOf(changed), axes[axis]));
    }
}

TEST(Circle, A_value_that_names_no_axis_changes_nothing)
{
    C3DBaseCircle circle(k_Center, 4, Vector(0, -5, 12));
    for (int const axis : {-1, 3, 7})
    {
        circle.SetNormal(static_cast<tagE3DAXISTYPE>(axis));
        EXPECT_TRUE(SameBits(NormalOf(circle), Vector(0, -5, 12))) << axis;
        // As constructed it leaves the normal unwritten; center and radius are as ever.
        C3DBaseCircle const undefined(k_Center, 4.0, static_cast<tagE3DAXISTYPE>(axis));
        EXPECT_TRUE(SameBits(CenterOf(undefined), k_Center));
        EXPECT_EQ(RadiusOf(undefined), 4);
    }
}

TEST(Circle, Radius_is_raised_to_the_smallest_one)
{
    for (Raise const & raise : k_Raises)
    {
        EXPECT_EQ(RadiusOf(C3DBaseCircle(k_Center, raise.given, Vector(0, 0, 1))), raise.stored) << raise.given;
        EXPECT_EQ(RadiusOf(C3DBaseCircle(k_Center, raise.given, E3D_AXIS_Y)), raise.stored) << raise.given;
        C3DBaseCircle circle;
        circle.SetRadius(raise.given);
        EXPECT_EQ(RadiusOf(circle), raise.stored) << raise.given;
    }
}

TEST(Circle, A_NaN_radius_stays_in_the_constructors_and_becomes_the_smallest_in_SetRadius)
{
    EXPECT_TRUE(std::isnan(RadiusOf(C3DBaseCircle(k_Center, k_Nan, Vector(0, 0, 1)))));
    EXPECT_TRUE(std::isnan(RadiusOf(C3DBaseCircle(k_Center, k_Nan, E3D_AXIS_Y))));
    C3DBaseCircle circle;
    circle.SetRadius(k_Nan);
    EXPECT_EQ(RadiusOf(circle), k_SmallestRadius);
}

TEST(Circle, Radius_through_a_point_is_raised_too)
{
    for (Raise const & raise : k_Raises)
    {
        Vector const origin(0, 0, 0);
        Vector const point(0, 0, raise.given);
        double const stored = raise.given < 0 ? std::max(-raise.given, k_SmallestRadius) : raise.stored;
        EXPECT_DOUBLE_EQ(RadiusOf(C3DBaseCircle(origin, point, E3D_AXIS_Z)), stored) << raise.given;
        EXPECT_DOUBLE_EQ(RadiusOf(C3DBaseCircle(origin, point, Vector(1, 1, 1))), stored) << raise.given;
    }
    Vector const lost(1, k_Nan, 3);
    EXPECT_EQ(RadiusOf(C3DBaseCircle(k_Center, lost, E3D_AXIS_Z)), k_SmallestRadius);
    EXPECT_EQ(RadiusOf(C3DBaseCircle(k_Center, lost, Vector(1, 1, 1))), k_SmallestRadius);
}

TEST(Circle, Center_is_stored_as_given)
{
    C3DBaseCircle circle(k_Center, 4, Vector(0, -5, 12));
    circle.SetCenter(Vector(k_Infinity, -0.0, 5));
    EXPECT_TRUE(SameBits(CenterOf(circle), Vector(k_Infinity, -0.0, 5)));
    EXPECT_TRUE(SameBits(NormalOf(circle), Vector(0, -5, 12)));
    EXPECT_EQ(RadiusOf(circle), 4);
}

TEST(Circle, Mul_follows_the_first_vector_of_the_orthogonal_basis)
{
    struct
    {
        Vector normal;
        double radius; // under a scale of (2, 3, 5)
        Vector newNormal;
    } const rows[] = {{Vector(0, 0, 1), 8, Vector(0, 0, 1)},    // along -X
                      {Vector(1, 0, 0), 12, Vector(1, 0, 0)},   // along Y
                      {Vector(0, 1, 0), 8, Vector(0, 1, 0)},    // along -X
                      {Vector(0, 0, -1), 8, Vector(0, 0, -1)}}; // along X
    for (auto const & row : rows)
    {
        C3DBaseCircle circle;
        ASSERT_EQ(&circle.Mul(C3DBaseCircle(k_Center, 4, row.normal), Scaling(2, 3, 5)), &circle);
        EXPECT_TRUE(Same(CenterOf(circle), Vector(12, 26, 45)));
        EXPECT_EQ(RadiusOf(circle), row.radius) << row.normal;
        EXPECT_TRUE(Same(NormalOf(circle), row.newNormal)) << row.normal;
    }
    C3DBaseCircle circle;
    circle.Mul(C3DBaseCircle(), Scaling(2, 3, 1));
    EXPECT_EQ(RadiusOf(circle), 2);
}

TEST(Circle, Mul_multiplies_the_radius_by_the_length_of_the_basis_vector)
{
    Matrix identity;
    identity.SetIdentity();
    C3DBaseCircle circle(k_Center, 4, Vector(0, 0, -3));
    circle.Mul(circle, identity);
    EXPECT_EQ(RadiusOf(circle), 12);
    EXPECT_TRUE(Same(NormalOf(circle), Vector(0, 0, -1)));
    // A unit normal off the coordinate planes loses its least component.
    Vector const normal(2.0 / 7, 3.0 / 7, 6.0 / 7);
    circle.Mul(C3DBaseCircle(k_Center, 4, normal), identity);
    EXPECT_NEAR(RadiusOf(circle), 4 * std::sqrt(45.0) / 7, 1e-14);
    EXPECT_TRUE(IsNear(NormalOf(circle), normal, 1e-15));
}

TEST(Circle, Mul_takes_the_normal_across_the_images_of_both_basis_vectors)
{
    Random random(531);
    for (int i = 0; i < 200; ++i)
    {
        AffineMap const map = RandomAffineMap(random);
        C3DBaseCircle const source(RandomVector(random, 3), random.Uniform(0.1, 3.0), RandomVector(random, 3));
        C3DBaseCircle target;
        target.Mul(source, map.ForRows());
        Vector a;
        Vector b;
        GetOrthogonalBasis(NormalOf(source), a, b);
        Eigen::Vector3d const imageA = map.block * ToEigen(a) * RadiusOf(source);
        Eigen::Vector3d const through = map.block.inverse().transpose() * ToEigen(NormalOf(source));
        double const sign = map.block.determinant() < 0 ? -1 : 1;
        EXPECT_TRUE(IsNear(CenterOf(target), map(CenterOf(source)), 1e-12));
        EXPECT_NEAR(RadiusOf(target), imageA.norm(), 1e-10);
        EXPECT_TRUE(IsNear(NormalOf(target), FromEigen(sign * through.normalized()), 1e-8)) << "a mirror reverses it";
        C3DBaseCircle inPlace(source);
        inPlace.Mul(inPlace, map.ForRows());
        EXPECT_TRUE(SameBits(CenterOf(inPlace), CenterOf(target)));
        EXPECT_TRUE(SameBits(NormalOf(inPlace), NormalOf(target)));
        EXPECT_TRUE(SameBits(RadiusOf(inPlace), RadiusOf(target)));
    }
}

TEST(Circle, Mul_raises_no_radius_and_keeps_a_short_normal)
{
    C3DBaseCircle circle;
    circle.Mul(C3DBaseCircle(), Scaling(1e-9, 1e-4, 1));
    EXPECT_NEAR(RadiusOf(circle), 1e-9, 1e-14);
    EXPECT_LT(RadiusOf(circle), k_SmallestRadius);
    Matrix tiny = Scaling(1e-9, 1e-4, 1);
    tiny.SetRow(3, 0, 0, 0, 1);
    circle.Mul(C3DBaseCircle(), tiny);
    EXPECT_NEAR(NormalOf(circle).Z, 1e-13, 1e-25) << "a cross product not above the limit stays";
    tiny.SetRow(1, 0, 1e-2, 0, 0);
    circle.Mul(C3DBaseCircle(), tiny);
    EXPECT_TRUE(IsNear(NormalOf(circle), Vector(0, 0, 1), 1e-15));
    tiny.SetRow(0, 0, 0, 0, 0);
    circle.Mul(C3DBaseCircle(), tiny);
    EXPECT_EQ(RadiusOf(circle), 0);
    EXPECT_TRUE(Same(NormalOf(circle), Vector(0, 0, 0)));
}

TEST(Circle, Mul_skips_zero_components)
{
    C3DBaseCircle circle(Vector(1, 2, 0), 4, Vector(0, 0, 1));
    circle.Mul(circle, WithInfiniteRow(2));
    EXPECT_TRUE(Same(CenterOf(circle), Vector(1, 2, 0)));
    EXPECT_EQ(RadiusOf(circle), 4);
    EXPECT_TRUE(Same(NormalOf(circle), Vector(0, 0, 1)));
}
