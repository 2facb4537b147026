// Geometry: closest points, lines and moving points against triangles, box against box, arrays of points between
// frames. Results are per query, per pair or per point (items_per_second).

#include "math/box_intersection.h"
#include "math/closest_position.h"
#include "math/deforming_collision.h"
#include "math/map_points_in_ref.h"
#include "math/triangle_intersection.h"
#include "random_values.h"
#include "run_over_array.h"

#include <Eigen/Dense>
#include <Eigen/Geometry>
#include <benchmark/benchmark.h>
#include <cmath>

namespace
{

/// Too many for a processor to learn by heart where the branches of each lead, as it does with a few thousand that are
/// repeated: nobody asks the same queries again and again.
constexpr std::size_t k_Count = 65536;

using bench::RunOverArray;
using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;
using EigenVector = Eigen::Vector3d;

Vector At(double const * v)
{
    return {v[0], v[1], v[2]};
}

EigenVector ToEigen(Vector const & v)
{
    return {v.X, v.Y, v.Z};
}

// --- Points and lines against a triangle -----------------------------------------------------------------------------

/// A triangle in the cube from -1 to 1, and a point and a direction twice as far out.
template <typename V>
struct TriangleQuery
{
    V a;
    V b;
    V c;
    V point;
    V direction;
};

std::vector<TriangleQuery<Vector>> MakeTriangleQueries()
{
    return bench::RandomObjects<15, double>(
        k_Count,
        [](double const * v) {
            return TriangleQuery<Vector>{At(v), At(v + 3), At(v + 6), At(v + 9).Mul(2), At(v + 12)};
        });
}

std::vector<TriangleQuery<EigenVector>> MakeEigenTriangleQueries()
{
    std::vector<TriangleQuery<EigenVector>> queries;
    for (auto const & q : MakeTriangleQueries())
    {
        queries.push_back({ToEigen(q.a), ToEigen(q.b), ToEigen(q.c), ToEigen(q.point), ToEigen(q.direction)});
    }
    return queries;
}

template <typename V>
struct TriangleAnswer
{
    double weights[3];
    double squaredDistance;
    V position;
};

void ClosestOnTriangle(benchmark::State & state)
{
    RunOverArray(state, MakeTriangleQueries(), std::vector<TriangleAnswer<Vector>>(k_Count),
                 [](auto const & in, auto & out, std::size_t i)
                 {
                     F3DClosestPositionOnTriangle(in[i].point, in[i].a, in[i].b, in[i].c, out[i].weights[0],
                                                  out[i].weights[1], out[i].weights[2], &out[i].squaredDistance,
                                                  &out[i].position);
                 });
}

/// The peer: the region of the point among those of the three vertices, the three edges and the inside, by dot products
/// alone, and with exact answers everywhere.
void FindByRegions(TriangleQuery<EigenVector> const & q, double (&weights)[3])
{
    EigenVector const ab = q.b - q.a;
    EigenVector const ac = q.c - q.a;
    EigenVector const fromA = q.point - q.a;
    EigenVector const fromB = q.point - q.b;
    EigenVector const fromC = q.point - q.c;
    double const abA = ab.dot(fromA);
    double const acA = ac.dot(fromA);
    double const abB = ab.dot(fromB);
    double const acB = ac.dot(fromB);
    double const abC = ab.dot(fromC);
    double const acC = ac.dot(fromC);
    double const ofA = abB * acC - abC * acB;
    double const ofB = abC * acA - abA * acC;
    double const ofC = abA * acB - abB * acA;
    auto const set = [&weights](double a, double b, double c)
    {
        weights[0] = a;
        weights[1] = b;
        weights[2] = c;
    };
    if (abA <= 0 && acA <= 0)
    {
        set(1, 0, 0);
    }
    else if (abB >= 0 && acB <= abB)
    {
        set(0, 1, 0);
    }
    else if (acC >= 0 && abC <= acC)
    {
        set(0, 0, 1);
    }
    else if (ofC <= 0 && abA >= 0 && abB <= 0)
    {
        double const t = abA / (abA - abB);
        set(1 - t, t, 0);
    }
    else if (ofB <= 0 && acA >= 0 && acC <= 0)
    {
        double const t = acA / (acA - acC);
        set(1 - t, 0, t);
    }
    else if (ofA <= 0 && acB >= abB && abC >= acC)
    {
        double const t = (acB - abB) / ((acB - abB) + (abC - acC));
        set(0, 1 - t, t);
    }
    else
    {
        double const reciprocal = 1 / (ofA + ofB + ofC);
        set(ofA * reciprocal, ofB * reciprocal, ofC * reciprocal);
    }
}

void ClosestOnTriangleEigen(benchmark::State & state)
{
    RunOverArray(state, MakeEigenTriangleQueries(), std::vector<TriangleAnswer<EigenVector>>(k_Count),
                 [](auto const & in, auto & out, std::size_t i)
                 {
                     auto & w = out[i].weights;
                     FindByRegions(in[i], w);
                     out[i].position = w[0] * in[i].a + w[1] * in[i].b + w[2] * in[i].c;
                     out[i].squaredDistance = (in[i].point - out[i].position).squaredNorm();
                 });
}

void LineAgainstTriangle(benchmark::State & state)
{
    RunOverArray(state, MakeTriangleQueries(), std::vector<TriangleAnswer<Vector>>(k_Count),
                 [](auto const & in, auto & out, std::size_t i)
                 {
                     F3DWorldSegmentVsTriangleIntersection(in[i].point, in[i].direction, in[i].a, in[i].b, in[i].c,
                                                           out[i].weights[0], out[i].weights[1], out[i].weights[2],
                                                           &out[i].position, &out[i].squaredDistance);
                 });
}

void LineAgainstTriangleByProjection(benchmark::State & state)
{
    RunOverArray(state, MakeTriangleQueries(), std::vector<TriangleAnswer<Vector>>(k_Count),
                 [](auto const & in, auto & out, std::size_t i)
                 {
                     F3DWorldSegmentVsTriangleIntersectionOld(in[i].point, in[i].direction, in[i].a, in[i].b, in[i].c,
                                                              out[i].weights[0], out[i].weights[1], out[i].weights[2],
                                                              &out[i].position);
                 });
}

/// The peer: T. Moller, B. Trumbore, "Fast, minimum storage ray-triangle intersection" (1997), without early outs.
void LineAgainstTriangleEigen(benchmark::State & state)
{
    RunOverArray(state, MakeEigenTriangleQueries(), std::vector<TriangleAnswer<EigenVector>>(k_Count),
                 [](auto const & in, auto & out, std::size_t i)
                 {
                     EigenVector const edge1 = in[i].b - in[i].a;
                     EigenVector const edge2 = in[i].c - in[i].a;
                     EigenVector const cross = in[i].direction.cross(edge2);
                     double const reciprocal = 1 / edge1.dot(cross);
                     EigenVector const offset = in[i].point - in[i].a;
                     EigenVector const otherCross = offset.cross(edge1);
                     out[i].weights[1] = offset.dot(cross) * reciprocal;
                     out[i].weights[2] = in[i].direction.dot(otherCross) * reciprocal;
                     out[i].weights[0] = 1 - out[i].weights[1] - out[i].weights[2];
                     out[i].squaredDistance = edge2.dot(otherCross) * reciprocal;
                     out[i].position = in[i].point + out[i].squaredDistance * in[i].direction;
                 });
}

// --- Box against box -------------------------------------------------------------------------------------------------

/// The second box in the space of the first, with the rows of the rotation as its axes.
struct BoxPose
{
    Eigen::Matrix3d rotation;
    EigenVector translation;
    EigenVector extentsA;
    EigenVector extentsB;
};

BoxPose MakeBoxPose(double const * v)
{
    Eigen::Quaterniond const turn(v[0], v[1], v[2], v[3]);
    EigenVector const one(1, 1, 1);
    return {turn.normalized().toRotationMatrix(), 4 * EigenVector(v[4], v[5], v[6]),
            one + 0.5 * EigenVector(v[7], v[8], v[9]), one + 0.5 * EigenVector(v[10], v[11], v[12])};
}

/// The peer: each axis in a plain loop, in the order of the faces of both boxes and then of their edges.
/// \return the first axis that separates, or 15
int FindSeparatingAxis(BoxPose const & pose)
{
    for (int i = 0; i < 15; ++i)
    {
        EigenVector axis;
        if (i < 3)
        {
            axis = EigenVector::Unit(i);
        }
        else if (i < 6)
        {
            axis = pose.rotation.row(i - 3);
        }
        else
        {
            axis = EigenVector::Unit((i - 6) / 3).cross(EigenVector(pose.rotation.row((i - 6) % 3)));
        }
        double const reach = axis.cwiseAbs().dot(pose.extentsA) + (pose.rotation * axis).cwiseAbs().dot(pose.extentsB);
        if (std::abs(axis.dot(pose.translation)) > reach)
        {
            return i;
        }
    }
    return 15;
}

enum Separation
{
    k_Early, // by a face of the first box
    k_Late,  // by edges alone
    k_Overlapping,
    k_Mixed
};

std::vector<BoxPose> MakeBoxPoses(Separation separation)
{
    std::vector<BoxPose> poses;
    for (BoxPose const & pose : bench::RandomObjects<13, double>(200000, MakeBoxPose))
    {
        int const axis = FindSeparatingAxis(pose);
        bool const isWanted = separation == k_Mixed || (separation == k_Early && axis < 3) ||
                              (separation == k_Late && axis >= 6 && axis < 14) ||
                              (separation == k_Overlapping && axis == 15);
        if (isWanted && poses.size() < 1024)
        {
            poses.push_back(pose);
        }
    }
    return poses;
}

struct BoxQuery
{
    C3DRotMatTpl<double> rotation;
    Vector translation;
    Vector extentsA;
    Vector extentsB;
};

void BoxAgainstBox(benchmark::State & state, Separation separation)
{
    std::vector<BoxQuery> in;
    for (BoxPose const & p : MakeBoxPoses(separation))
    {
        Eigen::Matrix3d const & r = p.rotation;
        in.push_back({{r(0, 0), r(0, 1), r(0, 2), r(1, 0), r(1, 1), r(1, 2), r(2, 0), r(2, 1), r(2, 2)},
                      At(p.translation.data()),
                      At(p.extentsA.data()),
                      At(p.extentsB.data())});
    }
    std::vector<unsigned long> const flags(in.size());
    RunOverArray(state, in, flags,
                 [](auto const & boxes, auto & out, std::size_t i)
                 {
                     F3DLocalBoxVsBoxIntersection(boxes[i].rotation, boxes[i].translation, boxes[i].extentsA,
                                                  boxes[i].extentsB, out[i], nullptr, 0);
                 });
}

void BoxAgainstBoxEigen(benchmark::State & state, Separation separation)
{
    auto const in = MakeBoxPoses(separation);
    std::vector<int> const axes(in.size());
    RunOverArray(state, in, axes,
                 [](auto const & poses, auto & out, std::size_t i) { out[i] = FindSeparatingAxis(poses[i]); });
}

// --- Moving points against deforming triangles -----------------------------------------------------------------------

/// First and second positions of the point and of the vertices.
struct Motion
{
    Vector from[4];
    Vector to[4];
};

/// Anywhere in the cube from -1 to 1: most volumes are cubics with one root or three.
Motion MakeWildMotion(double const * v)
{
    return {{At(v), At(v + 3), At(v + 6), At(v + 9)}, {At(v + 12), At(v + 15), At(v + 18), At(v + 21)}};
}

/// A point that falls on a triangle at rest, or beside it: the volume is linear.
Motion MakeFall(double const * v)
{
    Motion motion = MakeWildMotion(v);
    for (int i = 1; i < 4; ++i)
    {
        motion.to[i] = motion.from[i];
    }
    return motion;
}

/// A point at rest off the plane of a triangle at rest: no root.
Motion MakeRest(double const * v)
{
    Motion motion = MakeFall(v);
    motion.to[0] = motion.from[0];
    return motion;
}

struct Collisions
{
    unsigned long count;
    double times[3];
    double weights[9];
};

/// What there is to solve in these motions, beside the time.
template <typename Find>
void RunOverMotions(benchmark::State & state, Motion (*make)(double const *), Find find)
{
    auto const motions = bench::RandomObjects<24, double>(k_Count, make);
    RunOverArray(state, motions, std::vector<Collisions>(k_Count),
                 [find](auto const & in, auto & out, std::size_t i) { find(in[i], out[i]); });
    double found = 0;
    for (Motion const & motion : motions)
    {
        Collisions collisions{};
        find(motion, collisions);
        found += static_cast<double>(collisions.count);
    }
    state.counters["found_per_pair"] = found / k_Count;
}

void CoplanarTimes(benchmark::State & state, Motion (*make)(double const *))
{
    RunOverMotions(state, make,
                   [](Motion const & m, Collisions & c)
                   {
                       F3DGetFourDeformedPtsColinearTimes(m.from[0], m.to[0], m.from[1], m.to[1], m.from[2], m.to[2],
                                                          m.from[3], m.to[3], c.count, c.times, 1e-9);
                   });
}

void DeformingCollision(benchmark::State & state, Motion (*make)(double const *))
{
    RunOverMotions(state, make,
                   [](Motion const & m, Collisions & c)
                   {
                       F3DDeformedPtVsDeformedTriangleIntersection(m.from[0], m.to[0], m.from[1], m.to[1], m.from[2],
                                                                   m.to[2], m.from[3], m.to[3], c.count, c.times,
                                                                   c.weights, 1e-9);
                   });
}

// --- Arrays of points between frames ---------------------------------------------------------------------------------

/// Rigid, so that points that are mapped over and over stay in range.
Matrix MakeFrame(double angle, Vector const & translation)
{
    double const c = std::cos(angle);
    double const s = std::sin(angle);
    Matrix matrix(c, s, 0, 0, -s * c, c * c, s, 0, s * s, -s * c, c, 0, 0, 0, 0, 1);
    return matrix.SetTranslation(translation);
}

Matrix const k_First = MakeFrame(0.7, Vector(1, 2, 3));
Matrix const k_Second = MakeFrame(-0.4, Vector(-3, 1, 2));

std::size_t GetCount(benchmark::State const & state)
{
    return static_cast<std::size_t>(state.range(0));
}

/// Every pass maps the same points in place, to the second frame and back in turn. 48 bytes a point are moved.
template <typename Points, typename Map>
void RunOverPoints(benchmark::State & state, Points points, Map map)
{
    int firstToSecond = 1;
    for (auto _ : state)
    {
        map(points, firstToSecond);
        firstToSecond = 1 - firstToSecond;
        benchmark::DoNotOptimize(points.data());
        benchmark::ClobberMemory();
    }
    bench::CountItems(state, GetCount(state));
    state.SetBytesProcessed(state.iterations() * state.range(0) * 48);
}

std::vector<Vector> MakePoints(std::size_t count)
{
    return bench::RandomObjects<3, double>(count, At);
}

void MapPoints(benchmark::State & state)
{
    RunOverPoints(state, MakePoints(GetCount(state)),
                  [](std::vector<Vector> & points, int firstToSecond)
                  { F3DMapPointsInRef(points.data(), points.size(), &k_First, &k_Second, firstToSecond); });
}

/// The peer: one point after the other, with the components that are 0 left out.
void MapPointsPlain(benchmark::State & state)
{
    RunOverPoints(state, MakePoints(GetCount(state)),
                  [](std::vector<Vector> & points, int firstToSecond)
                  {
                      Matrix map;
                      map.Invert(firstToSecond != 0 ? k_Second : k_First);
                      map.Mul(firstToSecond != 0 ? k_First : k_Second, map);
                      for (Vector & point : points)
                      {
                          Vector sum(map.Get(3, 0), map.Get(3, 1), map.Get(3, 2));
                          for (int r = 0; r < 3; ++r)
                          {
                              double const x = point.GetArray()[r];
                              if (x < 0 || x > 0)
                              {
                                  sum.Add(x * map.Get(r, 0), x * map.Get(r, 1), x * map.Get(r, 2));
                              }
                          }
                          point = sum;
                      }
                  });
}

Eigen::Affine3d ToEigen(Matrix const & matrix)
{
    Eigen::Affine3d result;
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            result.matrix()(c, r) = matrix.Get(r, c);
        }
    }
    return result;
}

void MapPointsEigen(benchmark::State & state)
{
    std::vector<Vector> const points = MakePoints(GetCount(state));
    Eigen::Affine3d const first = ToEigen(k_First);
    Eigen::Affine3d const second = ToEigen(k_Second);
    RunOverPoints(
        state,
        Eigen::Matrix3Xd(Eigen::Matrix3Xd::Map(points.front().GetArray(), 3, static_cast<Eigen::Index>(points.size()))),
        [&](Eigen::Matrix3Xd & columns, int firstToSecond)
        {
            Eigen::Affine3d const map =
                firstToSecond != 0 ? second.inverse(Eigen::Affine) * first : first.inverse(Eigen::Affine) * second;
            columns = map * columns;
        });
}

void PointCounts(benchmark::internal::Benchmark * benchmark)
{
    benchmark->Arg(1)->Arg(64)->Arg(4096)->Arg(1000000);
}

BENCHMARK(ClosestOnTriangle);
BENCHMARK(ClosestOnTriangleEigen);
BENCHMARK(LineAgainstTriangle);
BENCHMARK(LineAgainstTriangleByProjection);
BENCHMARK(LineAgainstTriangleEigen);
BENCHMARK_CAPTURE(BoxAgainstBox, Early, k_Early);
BENCHMARK_CAPTURE(BoxAgainstBox, Late, k_Late);
BENCHMARK_CAPTURE(BoxAgainstBox, Overlapping, k_Overlapping);
BENCHMARK_CAPTURE(BoxAgainstBox, Mixed, k_Mixed);
BENCHMARK_CAPTURE(BoxAgainstBoxEigen, Early, k_Early);
BENCHMARK_CAPTURE(BoxAgainstBoxEigen, Late, k_Late);
BENCHMARK_CAPTURE(BoxAgainstBoxEigen, Overlapping, k_Overlapping);
BENCHMARK_CAPTURE(BoxAgainstBoxEigen, Mixed, k_Mixed);
BENCHMARK_CAPTURE(CoplanarTimes, Wild, MakeWildMotion);
BENCHMARK_CAPTURE(DeformingCollision, Wild, MakeWildMotion);
BENCHMARK_CAPTURE(DeformingCollision, Fall, MakeFall);
BENCHMARK_CAPTURE(DeformingCollision, Rest, MakeRest);
BENCHMARK(MapPoints)->Apply(PointCounts);
BENCHMARK(MapPointsPlain)->Apply(PointCounts);
BENCHMARK(MapPointsEigen)->Apply(PointCounts);

} // namespace
