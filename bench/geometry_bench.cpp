// Geometry: boxes against view volumes. Results are per box (items_per_second); the counters tell which part of all
// boxes ends where.

#include "math/view_volume.h"
#include "random_values.h"
#include "run_over_array.h"

#include <Eigen/Geometry>
#include <benchmark/benchmark.h>
#include <cmath>
#include <vector>

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;

constexpr std::size_t k_BoxCount = 100000;

struct Box
{
    Vector corners[2];
};

/// Boxes with sides of up to 4 in the cube from -20 to 20 about the origin.
std::vector<Box> MakeBoxes()
{
    return bench::RandomObjects<6, double>(k_BoxCount,
                                           [](double const * v)
                                           {
                                               Vector const centre(20 * v[0], 20 * v[1], 20 * v[2]);
                                               Vector const half(1 + v[3], 1 + v[4], 1 + v[5]);
                                               return Box{{Vector().Sub(centre, half), Vector().Add(centre, half)}};
                                           });
}

/// A camera that looks askew, and one that looks along the axes.
Matrix MakeCamera(bool isAligned)
{
    Matrix camera;
    if (!isAligned)
    {
        Eigen::Quaterniond const turn(0.8, 0.2, -0.5, 0.26);
        Eigen::Matrix3d const rows = turn.normalized().toRotationMatrix().transpose();
        double const block[3][3] = {{rows(0, 0), rows(0, 1), rows(0, 2)},
                                    {rows(1, 0), rows(1, 1), rows(1, 2)},
                                    {rows(2, 0), rows(2, 1), rows(2, 2)}};
        camera.Set(block);
    }
    return camera.SetTranslation(Vector(3, 2, 10));
}

enum Projection
{
    k_Orthographic,
    k_Perspective
};

enum Strategy
{
    k_World = 0,
    k_View = 1
};

void SetVolume(C3DViewVolume & volume, Strategy strategy, Projection projection, bool isAligned)
{
    volume.SetViewSpace(strategy);
    if (projection == k_Orthographic)
    {
        volume.SetOrtho(-8, 8, -6, 6, 1, 20, MakeCamera(isAligned));
    }
    else
    {
        volume.SetPersp(1.2, 4.0 / 3, 1, 20, MakeCamera(isAligned));
    }
}

/// The peer: the bounds of the volume as an Eigen box, then its six planes as half spaces in a plain loop, for each of
/// which the eight corners are asked. It has no silhouettes, and says crossing where these separate.
class EigenVolume
{
public:
    EigenVolume(Projection projection, bool isAligned)
    {
        Matrix const camera = MakeCamera(isAligned);
        double const halfWidth = projection == k_Orthographic ? 8 : std::tan(0.6);
        double const halfHeight = projection == k_Orthographic ? 6 : halfWidth * 3 / 4;
        double const widening = projection == k_Orthographic ? 1 : 20;
        Eigen::Vector3d corners[8];
        Eigen::Vector3d middle(0, 0, 0);
        for (int i = 0; i < 8; ++i)
        {
            double const factor = (i & 4) != 0 ? widening : 1;
            Vector corner(((i & 1) != 0 ? factor : -factor) * halfWidth, ((i & 2) != 0 ? factor : -factor) * halfHeight,
                          (i & 4) != 0 ? -20 : -1);
            corner.Mul(corner, camera);
            corners[i] = Eigen::Vector3d(corner.X, corner.Y, corner.Z);
            m_Bounds.extend(corners[i]);
            middle += corners[i] / 8;
        }
        int const faces[6][3] = {{0, 1, 2}, {4, 5, 6}, {0, 2, 4}, {1, 3, 5}, {0, 1, 4}, {2, 3, 6}};
        for (int i = 0; i < 6; ++i)
        {
            auto & plane = m_Planes[i];
            plane =
                Eigen::Hyperplane<double, 3>::Through(corners[faces[i][0]], corners[faces[i][1]], corners[faces[i][2]]);
            plane.coeffs() *= plane.signedDistance(middle) > 0 ? -1 : 1;
        }
    }

    bool IsOutsideBounds(Eigen::AlignedBox3d const & box) const { return !m_Bounds.intersects(box); }

    tagE3DVIEWINTERSECTION ClassifyByPlanes(Eigen::AlignedBox3d const & box) const
    {
        bool isCrossing = false;
        for (auto const & plane : m_Planes)
        {
            int beyond = 0;
            for (int i = 0; i < 8; ++i)
            {
                beyond += plane.signedDistance(box.corner(static_cast<Eigen::AlignedBox3d::CornerType>(i))) > 0 ? 1 : 0;
            }
            if (beyond == 8)
            {
                return E3DVIEWINTERSECTION_OUTSIDE;
            }
            isCrossing |= beyond != 0;
        }
        return isCrossing ? E3DVIEWINTERSECTION_CROSSING : E3DVIEWINTERSECTION_INSIDE;
    }

    tagE3DVIEWINTERSECTION Classify(Eigen::AlignedBox3d const & box) const
    {
        return IsOutsideBounds(box) ? E3DVIEWINTERSECTION_OUTSIDE : ClassifyByPlanes(box);
    }

private:
    Eigen::AlignedBox3d m_Bounds;
    Eigen::Hyperplane<double, 3> m_Planes[6];
};

Eigen::AlignedBox3d ToEigen(Box const & box)
{
    return {Eigen::Vector3d::Map(box.corners[0].GetArray()), Eigen::Vector3d::Map(box.corners[1].GetArray())};
}

void CountAnswers(benchmark::State & state, std::vector<tagE3DVIEWINTERSECTION> const & answers)
{
    double counts[3] = {0, 0, 0};
    for (tagE3DVIEWINTERSECTION const answer : answers)
    {
        ++counts[answer];
    }
    auto const all = static_cast<double>(answers.size());
    state.counters["outside"] = counts[E3DVIEWINTERSECTION_OUTSIDE] / all;
    state.counters["inside"] = counts[E3DVIEWINTERSECTION_INSIDE] / all;
    state.counters["crossing"] = counts[E3DVIEWINTERSECTION_CROSSING] / all;
}

/// Which stage of the world strategy finds the outside boxes, told by the peer.
void CountStages(benchmark::State & state, std::vector<Box> const & boxes, EigenVolume const & peer)
{
    double byBounds = 0;
    double byPlanes = 0;
    for (Box const & box : boxes)
    {
        Eigen::AlignedBox3d const eigenBox = ToEigen(box);
        if (peer.IsOutsideBounds(eigenBox))
        {
            ++byBounds;
        }
        else if (peer.ClassifyByPlanes(eigenBox) == E3DVIEWINTERSECTION_OUTSIDE)
        {
            ++byPlanes;
        }
    }
    auto const all = static_cast<double>(boxes.size());
    state.counters["by_bounds"] = byBounds / all;
    state.counters["by_planes"] = byPlanes / all;
    state.counters["by_silhouettes"] = state.counters["outside"] - (byBounds + byPlanes) / all;
}

/// Runs the operation over all boxes and counts its answers.
template <typename Boxes, typename Operation>
void RunOverBoxes(benchmark::State & state, Boxes const & boxes, Operation operation)
{
    std::vector<tagE3DVIEWINTERSECTION> answers(boxes.size());
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < boxes.size(); ++i)
        {
            answers[i] = operation(boxes[i]);
        }
        benchmark::DoNotOptimize(answers.data());
        benchmark::ClobberMemory();
    }
    bench::CountItems(state, boxes.size());
    CountAnswers(state, answers);
}

void Classify(benchmark::State & state, Strategy strategy, Projection projection, bool isAligned, bool isPlaced)
{
    auto const boxes = MakeBoxes();
    Matrix const placement = MakeCamera(false);
    Matrix const * const boxToWorld = isPlaced ? &placement : nullptr;
    C3DViewVolume volume;
    SetVolume(volume, strategy, projection, isAligned);
    RunOverBoxes(state, boxes, [&](Box const & box) { return volume.Classify(box.corners, boxToWorld); });
    if (strategy == k_World && !isPlaced)
    {
        CountStages(state, boxes, EigenVolume(projection, isAligned));
    }
}

void ClassifyEigen(benchmark::State & state, Projection projection, bool isAligned)
{
    std::vector<Eigen::AlignedBox3d> boxes;
    for (Box const & box : MakeBoxes())
    {
        boxes.push_back(ToEigen(box));
    }
    EigenVolume const volume(projection, isAligned);
    RunOverBoxes(state, boxes, [&volume](Eigen::AlignedBox3d const & box) { return volume.Classify(box); });
}

BENCHMARK_CAPTURE(Classify, WorldOrthographicAligned, k_World, k_Orthographic, true, false);
BENCHMARK_CAPTURE(Classify, WorldOrthographic, k_World, k_Orthographic, false, false);
BENCHMARK_CAPTURE(Classify, WorldPerspectiveAligned, k_World, k_Perspective, true, false);
BENCHMARK_CAPTURE(Classify, WorldPerspective, k_World, k_Perspective, false, false);
BENCHMARK_CAPTURE(Classify, WorldPerspectivePlaced, k_World, k_Perspective, false, true);
BENCHMARK_CAPTURE(Classify, ViewOrthographic, k_View, k_Orthographic, false, false);
BENCHMARK_CAPTURE(Classify, ViewPerspective, k_View, k_Perspective, false, false);
BENCHMARK_CAPTURE(Classify, ViewPerspectivePlaced, k_View, k_Perspective, false, true);
BENCHMARK_CAPTURE(ClassifyEigen, OrthographicAligned, k_Orthographic, true);
BENCHMARK_CAPTURE(ClassifyEigen, Orthographic, k_Orthographic, false);
BENCHMARK_CAPTURE(ClassifyEigen, Perspective, k_Perspective, false);

} // namespace
