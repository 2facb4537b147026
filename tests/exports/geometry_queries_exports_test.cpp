#include "exports/exported.h"

#include "math/box_intersection.h"
#include "math/closest_position.h"
#include "math/cross_in_quad.h"
#include "math/deforming_collision.h"
#include "math/line_intersection.h"
#include "math/map_points_in_ref.h"
#include "math/point_sphere_intersection.h"
#include "math/triangle_intersection.h"

using exported::Function;

namespace
{

using V = C3DVector3Tpl<double>;
using V2 = C3DVector2Tpl<double>;
using M = C3DXfoMatTpl<double>;
using Flags = unsigned long &;
using Info = tagS3DGEOMINFO *;
using Infos = tagS3DGEOMINFO **;
using Count = unsigned int &;
using Number = double const &;

} // namespace

TEST(Exports, Point_and_sphere_intersections)
{
    Function<long(V const &, V const &, Flags, Info, double)>(&F3DWorldPointVsPointIntersection);
    Function<long(V const &, V const &, Number, Flags, Info, double)>(&F3DWorldPointVsSphereIntersection);
    Function<long(V const &, V const &, Number, Flags, V &, double)>(&F3DWorldPointVsSphereIntersection);
    Function<long(V const &, Number, V const &, Number, Flags, Info, double)>(&F3DWorldSphereVsSphereIntersection);
}

TEST(Exports, Box_intersections)
{
    Function<long(V const &, V const &, V const &, Flags, V &, double)>(&F3DLocalBoxVsPointIntersection);
    Function<long(V const &, V const &, V const &, Flags, Info, double)>(&F3DLocalBoxVsPointIntersection);
    Function<long(V const &, V const &, V const &, double, Flags, Info, double)>(&F3DLocalBoxVsSphereIntersection);
    Function<long(C3DRotMatTpl<double> const &, V const &, V const &, V const &, Flags, Info, double)>(
        &F3DLocalBoxVsBoxIntersection);
}

TEST(Exports, Line_and_plane_intersections)
{
    Function<long(double, double, V const &, V const &, Flags, Count, Infos)>(&F3DLocalConeVsLineIntersection);
    Function<long(unsigned long, V2 const *, int, V2 const &, V2 const &, Flags, Count, Infos)>(
        &F2DPolygonVs2DLineIntersection);
    Function<long(V2 const &, V2 const &, V2 const &, V2 const &, Flags, Info, double, double)>(
        &F3DWorld2DLineVs2DLineIntersection);
    Function<long(C3DBaseCircle const &, V const &, V const &, Flags, Count, Infos, double, double)>(
        &F3DWorldCircleVsLineIntersection);
    Function<long(V const &, V const &, V const &, V const &, Flags, Info, double, double)>(
        &F3DWorldPlaneVsPlaneIntersection);
}

TEST(Exports, Triangle_intersections)
{
    Function<long(V const &, V const &, V const &, V const &, V const &, double &, double &, double &, V *, double *)>(
        &F3DWorldSegmentVsTriangleIntersection);
    Function<long(V &, V &, V &, V &, V &, Flags, Info, double)>(&F3DWorldSegmentVsTriangleIntersection);
    Function<long(V const &, V const &, V const &, V const &, V const &, double &, double &, double &, V *)>(
        &F3DWorldSegmentVsTriangleIntersectionOld);
    Function<long(V &, V &, V &, V &, Flags, Info, double)>(&F3DWorldPointVsTriangleIntersection);
}

TEST(Exports, Closest_positions)
{
    Function<long(V const &, V const &, V const &, double &, double &, double *, V *)>(&F3DClosestPositionOnSegment);
    Function<long(V const &, V const &, V const &, V const &, double &, double &, double &, double *, V *)>(
        &F3DClosestPositionOnTriangle);
}

TEST(Exports, Mappings_and_deforming_collision)
{
    Function<long(V *, unsigned long, M const *, M const *, int)>(&F3DMapPointsInRef);
    Function<long(C3DPlane const &, V2 const *, V2 const &, double *, double *)>(&F3DFindCrossInQuad);
    Function<long(V const &, V const &, V const &, V const &, V const &, V const &, V const &, V const &,
                  unsigned long &, double *, Number)>(&F3DGetFourDeformedPtsColinearTimes);
    Function<long(V const &, V const &, V const &, V const &, V const &, V const &, V const &, V const &,
                  unsigned long &, double *, double *, Number)>(&F3DDeformedPtVsDeformedTriangleIntersection);
}
