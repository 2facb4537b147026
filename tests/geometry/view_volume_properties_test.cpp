#include "math/view_volume.h"

#include "support/random.h"

#include <Eigen/Dense>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>

using test_support::Random;

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;

/// A view volume by its definition: where a point lies, without planes in world space and without outcodes.
struct Camera
{
    double left;
    double right;
    double bottom;
    double top;
    double near;
    double far;
    bool isOrthographic;
    Matrix toWorld;

    /// How far inside all limits a point of view space is; negative outside.
    double Depth(Eigen::Vector3d const & p) const
    {
        double const widening = isOrthographic ? 1 : -p.z() / near;
        return std::min({p.x() - left * widening, right * widening - p.x(), p.y() - bottom * widening,
                         top * widening - p.y(), -near - p.z(), p.z() + far});
    }

    /// A point of the volume, from three fractions.
    Eigen::Vector3d PointAt(double u, double v, double w) const
    {
        double const depth = near + w * (far - near);
        double const widening = isOrthographic ? 1 : depth / near;
        return {widening * (left + u * (right - left)), widening * (bottom + v * (top - bottom)), -depth};
    }

    void Set(C3DViewVolume & volume) const
    {
        volume.Set(left, right, bottom, top, near, far, toWorld, isOrthographic ? 1 : 0);
    }
};

/// A point p maps to p A + t, written for columns.
Eigen::Affine3d ToEigen(Matrix const & m)
{
    Eigen::Affine3d affine = Eigen::Affine3d::Identity();
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            affine.matrix()(c, r) = m.Get(r, c);
        }
    }
    return affine;
}

enum class Shape
{
    Rigid,
    Sheared,
    Mirrored
};

/// A turn, then for Sheared a general affine map not far from it; a mirror is one in X before the turn.
Matrix RandomPlacement(Random & random, Shape shape)
{
    Eigen::Quaterniond turn(random.Uniform(-1.0, 1.0), random.Uniform(-1.0, 1.0), random.Uniform(-1.0, 1.0),
                            random.Uniform(-1.0, 1.0));
    Eigen::Matrix3d block = turn.normalized().toRotationMatrix();
    if (shape != Shape::Rigid)
    {
        Eigen::Matrix3d shear = Eigen::Matrix3d::Identity();
        for (int i = 0; i < 9; ++i)
        {
            shear(i) += random.Uniform(-0.3, 0.3);
        }
        block *= shear;
        block.col(0) *= shape == Shape::Mirrored ? -1 : 1;
    }
    Matrix matrix(block(0, 0), block(1, 0), block(2, 0), 0, block(0, 1), block(1, 1), block(2, 1), 0, block(0, 2),
                  block(1, 2), block(2, 2), 0, 0, 0, 0, 1);
    return matrix.SetTranslation(
        Vector(random.Uniform(-5.0, 5.0), random.Uniform(-5.0, 5.0), random.Uniform(-5.0, 5.0)));
}

/// A quarter turn or none about each axis, so that axes stay aligned.
Matrix RandomAlignedPlacement(Random & random)
{
    Matrix matrix;
    for (int axis = 0; axis < 3; ++axis)
    {
        int const a = (axis + 1) % 3;
        int const b = (axis + 2) % 3;
        double const angle = 1.5707963267948966 * random.Integer(0, 3);
        Matrix turn;
        turn.Set(a, a, std::cos(angle)).Set(b, b, std::cos(angle));
        turn.Set(a, b, std::sin(angle)).Set(b, a, -std::sin(angle));
        matrix.Mul(turn);
    }
    return matrix;
}

Camera RandomCamera(Random & random, bool isOrthographic, Matrix const & toWorld)
{
    double const x = random.Uniform(-1.5, 1.5);
    double const y = random.Uniform(-1.5, 1.5);
    double const near = random.Uniform(0.5, 3.0);
    return {x - random.Uniform(0.2, 2.0),
            x + random.Uniform(0.2, 2.0),
            y - random.Uniform(0.2, 2.0),
            y + random.Uniform(0.2, 2.0),
            near,
            near + random.Uniform(0.5, 6.0),
            isOrthographic,
            toWorld};
}

/// A box near the volume, small or large, in the space from which `placement` leads to the world.
std::array<Vector, 2> RandomBox(Random & random, Camera const & camera, Matrix const & placement)
{
    Eigen::Vector3d const inWorld =
        ToEigen(camera.toWorld) *
        camera.PointAt(random.Uniform(-0.7, 1.7), random.Uniform(-0.7, 1.7), random.Uniform(-0.4, 1.4));
    Eigen::Vector3d const p = ToEigen(placement).inverse() * inWorld;
    double const size = std::abs(random.OverDecades(-1.5, 0.9));
    auto const reach = [&] { return size * random.Uniform(0.1, 1.0); };
    return {Vector(p.x() - reach(), p.y() - reach(), p.z() - reach()),
            Vector(p.x() + reach(), p.y() + reach(), p.z() + reach())};
}

struct Judgement
{
    bool hasPointInside = false;
    bool hasPointOutside = false;
};

/// Samples the box, on a grid with its corners, and the volume, likewise.
Judgement Sample(Camera const & camera, std::array<Vector, 2> const & box, Matrix const & placement)
{
    constexpr int steps = 3;
    constexpr double margin = 1e-9;
    Judgement judgement;
    Eigen::Affine3d const boxToView = ToEigen(camera.toWorld).inverse() * ToEigen(placement);
    Eigen::Affine3d const viewToBox = boxToView.inverse();
    Eigen::Vector3d const minimum = Eigen::Vector3d::Map(box[0].GetArray());
    Eigen::Vector3d const maximum = Eigen::Vector3d::Map(box[1].GetArray());
    for (int i = 0; i <= steps; ++i)
    {
        for (int j = 0; j <= steps; ++j)
        {
            for (int k = 0; k <= steps; ++k)
            {
                Eigen::Vector3d const fraction = Eigen::Vector3d(i, j, k) / steps;
                double const depth = camera.Depth(boxToView * (minimum + fraction.cwiseProduct(maximum - minimum)));
                Eigen::Vector3d const inBox = viewToBox * camera.PointAt(fraction.x(), fraction.y(), fraction.z());
                double const depthInBox = std::min((inBox - minimum).minCoeff(), (maximum - inBox).minCoeff());
                judgement.hasPointInside |= depth > margin || depthInBox > margin;
                judgement.hasPointOutside |= depth < -margin;
            }
        }
    }
    return judgement;
}

/// How often each strategy gave each answer, [world][view].
using Table = int[3][3];

void CheckAgainstSamples(Judgement const & judgement, tagE3DVIEWINTERSECTION answer)
{
    ASSERT_FALSE(answer == E3DVIEWINTERSECTION_OUTSIDE && judgement.hasPointInside);
    ASSERT_FALSE(answer == E3DVIEWINTERSECTION_INSIDE && judgement.hasPointOutside);
}

void CheckBoxes(Random & random, Camera const & camera, bool isPlaced, Table & table)
{
    C3DViewVolume world;
    C3DViewVolume view;
    view.SetViewSpace(1);
    camera.Set(world);
    camera.Set(view);
    for (int i = 0; i < 12; ++i)
    {
        Matrix const placement = isPlaced ? RandomPlacement(random, static_cast<Shape>(i % 3)) : Matrix();
        auto const box = RandomBox(random, camera, placement);
        Judgement const judgement = Sample(camera, box, placement);
        Matrix const * const boxToWorld = isPlaced ? &placement : nullptr;
        tagE3DVIEWINTERSECTION const inWorld = world.Classify(box.data(), boxToWorld);
        tagE3DVIEWINTERSECTION const inView = view.Classify(box.data(), boxToWorld);
        ASSERT_NO_FATAL_FAILURE(CheckAgainstSamples(judgement, inWorld)) << "world strategy";
        ASSERT_NO_FATAL_FAILURE(CheckAgainstSamples(judgement, inView)) << "view strategy";
        ++table[inWorld][inView];
    }
}

struct Case
{
    char const * name;
    bool isOrthographic;
    bool isPlaced;
};

class ViewVolumeProperties : public testing::TestWithParam<Case>
{
protected:
    static constexpr int k_CameraCount = 400;

    template <typename MakePlacement>
    void Run(std::uint64_t seed, MakePlacement makePlacement)
    {
        Random random(seed);
        for (int i = 0; i < k_CameraCount; ++i)
        {
            Camera const camera = RandomCamera(random, GetParam().isOrthographic, makePlacement(random));
            ASSERT_NO_FATAL_FAILURE(CheckBoxes(random, camera, GetParam().isPlaced, table));
        }
        for (int const answer : {0, 1, 2})
        {
            EXPECT_GT(table[answer][answer], 100) << "answer " << answer << " hardly met";
        }
        EXPECT_EQ(table[0][1] + table[1][0], 0);
        if (!GetParam().isPlaced)
        {
            // The two strategies then ask the same planes, and world space the silhouettes besides.
            EXPECT_EQ(table[1][2] + table[2][1] + table[2][0], 0);
        }
    }

    Table table = {};
};

INSTANTIATE_TEST_SUITE_P(Volumes, ViewVolumeProperties,
                         testing::Values(Case{"Orthographic", true, false}, Case{"Perspective", false, false},
                                         Case{"OrthographicPlaced", true, true},
                                         Case{"PerspectivePlaced", false, true}),
                         [](auto const & each) { return std::string(each.param.name); });

} // namespace

TEST_P(ViewVolumeProperties, No_answer_contradicts_a_sampled_point_for_rigid_cameras)
{
    Run(501, [](Random & random) { return RandomPlacement(random, Shape::Rigid); });
    // The silhouettes earn their keep.
    EXPECT_GT(table[0][2], 20);
}

TEST_P(ViewVolumeProperties, No_answer_contradicts_a_sampled_point_for_sheared_cameras)
{
    Run(502, [](Random & random) { return RandomPlacement(random, Shape::Sheared); });
}

TEST_P(ViewVolumeProperties, No_answer_contradicts_a_sampled_point_for_cameras_along_the_axes)
{
    Run(503, [](Random & random) { return RandomAlignedPlacement(random); });
}

TEST_P(ViewVolumeProperties, In_view_space_a_mirrored_camera_is_as_right)
{
    Random random(504);
    int counts[3] = {};
    for (int i = 0; i < 900; ++i)
    {
        Camera const camera = RandomCamera(random, GetParam().isOrthographic, RandomPlacement(random, Shape::Mirrored));
        C3DViewVolume view;
        view.SetViewSpace(1);
        camera.Set(view);
        Matrix const placement = GetParam().isPlaced ? RandomPlacement(random, Shape::Mirrored) : Matrix();
        auto const box = RandomBox(random, camera, placement);
        tagE3DVIEWINTERSECTION const answer = view.Classify(box.data(), GetParam().isPlaced ? &placement : nullptr);
        ASSERT_NO_FATAL_FAILURE(CheckAgainstSamples(Sample(camera, box, placement), answer));
        ++counts[answer];
    }
    for (int const count : counts)
    {
        EXPECT_GT(count, 10);
    }
}

TEST_P(ViewVolumeProperties, In_world_space_no_box_is_inside_a_mirrored_volume)
{
    Random random(505);
    int wrong = 0;
    for (int i = 0; i < 300; ++i)
    {
        Camera const camera = RandomCamera(random, GetParam().isOrthographic, RandomPlacement(random, Shape::Mirrored));
        C3DViewVolume world;
        camera.Set(world);
        auto const box = RandomBox(random, camera, Matrix());
        tagE3DVIEWINTERSECTION const answer = world.Classify(box.data(), nullptr);
        Judgement const judgement = Sample(camera, box, Matrix());
        EXPECT_NE(answer, E3DVIEWINTERSECTION_INSIDE);
        // A box that has no point outside is called outside: the price of planes that point inwards.
        EXPECT_TRUE(judgement.hasPointOutside || answer == E3DVIEWINTERSECTION_OUTSIDE);
        wrong += judgement.hasPointInside && answer == E3DVIEWINTERSECTION_OUTSIDE ? 1 : 0;
    }
    EXPECT_GT(wrong, 20);
}
