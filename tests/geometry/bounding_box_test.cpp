/// The bounding box: its corners, edges and faces, and how it grows.

#include "geometry/box_checks.h"
#include "math/bounding_box.h"
#include "math/platform/result.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <type_traits>

using namespace geometry_test;

namespace
{

/// What an enumeration's output holds before a question.
constexpr int k_MarkedIndex = 77;
constexpr int k_OutOfRange[] = {-1, 99, -2147483647 - 1, 2147483647};

struct CornerRow
{
    short signs[3];
    int opposite;
};

CornerRow const k_Corners[8] = {{{-1, -1, -1}, 6}, {{-1, -1, 1}, 7}, {{-1, 1, 1}, 4}, {{-1, 1, -1}, 5},
                                {{1, -1, -1}, 2},  {{1, -1, 1}, 3},  {{1, 1, 1}, 0},  {{1, 1, -1}, 1}};

struct EdgeRow
{
    int corners[2];
    int axis;
    int opposite;
};

EdgeRow const k_Edges[12] = {{{0, 1}, 2, 5},  {{3, 2}, 2, 4},  {{0, 3}, 1, 7}, {{1, 2}, 1, 6},
                             {{4, 5}, 2, 1},  {{7, 6}, 2, 0},  {{4, 7}, 1, 3}, {{5, 6}, 1, 2},
                             {{0, 4}, 0, 11}, {{1, 5}, 0, 10}, {{3, 7}, 0, 9}, {{2, 6}, 0, 8}};

struct FaceRow
{
    int corners[4];
    int axis;
    double side;
    int opposite;
};

FaceRow const k_Faces[6] = {{{0, 1, 2, 3}, 0, -1, 1}, {{4, 7, 6, 5}, 0, 1, 0},  {{0, 4, 5, 1}, 1, -1, 3},
                            {{3, 2, 6, 7}, 1, 1, 2},  {{0, 3, 7, 4}, 2, -1, 5}, {{1, 5, 6, 2}, 2, 1, 4}};

/// X from -1 to 4, Y from -2 to 6, Z from -3 to 8: no two bounds are alike.
C3DBBox MakeBox()
{
    return {Vector(-1, -2, -3), Vector(4, 6, 8)};
}

/// A corner of that box, by its row.
Vector CornerOf(int corner)
{
    short const(&signs)[3] = k_Corners[corner].signs;
    return {signs[0] < 0 ? -1.0 : 4.0, signs[1] < 0 ? -2.0 : 6.0, signs[2] < 0 ? -3.0 : 8.0};
}

template <typename Index>
Index As(int value)
{
    return static_cast<Index>(value);
}

/// Asks for what lies opposite, with a marked output.
template <typename Index>
long Oppose(long (C3DBBox::*ask)(Index, Index *) const, int index, int & opposite)
{
    auto out = As<Index>(k_MarkedIndex);
    long const result = (MakeBox().*ask)(As<Index>(index), &out);
    opposite = out;
    return result;
}

/// The codes of a question for what lies opposite, for input that is not in its table of `size` rows.
template <typename Index>
void ExpectCodes(long (C3DBBox::*ask)(Index, Index *) const, int size)
{
    for (int const index : {k_OutOfRange[0], k_OutOfRange[1], k_OutOfRange[2], k_OutOfRange[3], size})
    {
        int opposite = 0;
        EXPECT_EQ(Oppose(ask, index, opposite), E_INVALIDARG) << index;
        EXPECT_EQ(opposite, k_MarkedIndex) << index;
        EXPECT_EQ((MakeBox().*ask)(As<Index>(index), nullptr), E_POINTER) << "the pointer is tested first";
    }
    EXPECT_EQ((MakeBox().*ask)(As<Index>(0), nullptr), E_POINTER);
}

} // namespace

static_assert(sizeof(S3DBBoxEdgeInfo) == 12 && std::is_standard_layout_v<S3DBBoxEdgeInfo>);
static_assert(sizeof(S3DBBoxFaceInfo) == 20 && std::is_standard_layout_v<S3DBBoxFaceInfo>);

TEST(BoundingBox, Constructors_give_the_bounds_of_the_box)
{
    EXPECT_TRUE(HasBounds(C3DBBox(), Vector(0, 0, 0), Vector(0, 0, 0)));
    EXPECT_TRUE(HasBounds(C3DBBox(3.0), Vector(-1.5, -1.5, -1.5), Vector(1.5, 1.5, 1.5)));
    EXPECT_TRUE(HasBounds(C3DBBox(Vector(2, 4, -6)), Vector(-1, -2, 3), Vector(1, 2, -3)));
    C3DBBox const box = MakeBox();
    C3DBBox const copy(box);
    EXPECT_TRUE(HasBounds(copy, Vector(-1, -2, -3), Vector(4, 6, 8)));
    C3DBBox assigned(Vector(7, 7, 7), Vector(9, 9, 9));
    EXPECT_EQ(&(assigned = box), &assigned);
    EXPECT_TRUE(HasBounds(assigned, Vector(-1, -2, -3), Vector(4, 6, 8)));
    C3DBBox const boxes[] = {C3DBBox(), C3DBBox(3.0), C3DBBox(Vector(1, 2, 3)), box, copy, assigned};
    for (C3DBBox const & each : boxes)
    {
        e3dBaseGeomType type = E3DGEOMTYPE_NONE;
        EXPECT_EQ(each.GetType(type), S_OK);
        EXPECT_EQ(type, 18);
    }
}

TEST(BoundingBox, Codes_have_their_32_bit_values)
{
    EXPECT_EQ(static_cast<unsigned>(E_POINTER), 0x80004003U);
    EXPECT_EQ(static_cast<unsigned>(E_INVALIDARG), 0x80070057U);
}

TEST(BoundingBox, Corners_edges_and_faces_have_their_numbers)
{
    tagE3DBBOXCORNER const corners[] = {E3DBBOXCORNER_MMM, E3DBBOXCORNER_MMP, E3DBBOXCORNER_MPP, E3DBBOXCORNER_MPM,
                                        E3DBBOXCORNER_PMM, E3DBBOXCORNER_PMP, E3DBBOXCORNER_PPP, E3DBBOXCORNER_PPM};
    tagE3DBBOXEDGE const edges[] = {E3DBBOXEDGE_0_1, E3DBBOXEDGE_3_2, E3DBBOXEDGE_0_3, E3DBBOXEDGE_1_2,
                                    E3DBBOXEDGE_4_5, E3DBBOXEDGE_7_6, E3DBBOXEDGE_4_7, E3DBBOXEDGE_5_6,
                                    E3DBBOXEDGE_0_4, E3DBBOXEDGE_1_5, E3DBBOXEDGE_3_7, E3DBBOXEDGE_2_6};
    tagE3DBBOXFACE const faces[] = {E3DBBOXFACE_MINUS_X, E3DBBOXFACE_PLUS_X,  E3DBBOXFACE_MINUS_Y,
                                    E3DBBOXFACE_PLUS_Y,  E3DBBOXFACE_MINUS_Z, E3DBBOXFACE_PLUS_Z};
    auto const expectConsecutive = [](auto const & values)
    {
        int next = 0;
        for (auto const value : values)
        {
            EXPECT_EQ(value, next++);
        }
    };
    expectConsecutive(corners);
    expectConsecutive(edges);
    expectConsecutive(faces);
}

TEST(BoundingBoxCorners, Signs_and_positions_row_by_row)
{
    for (int corner = 0; corner < 8; ++corner)
    {
        short signs[4] = {9, 9, 9, 9};
        MakeBox().GetSign(As<tagE3DBBOXCORNER>(corner), signs);
        EXPECT_TRUE(std::equal(signs, signs + 3, k_Corners[corner].signs)) << corner;
        EXPECT_EQ(signs[3], 9);
        Vector point = MarkedVector();
        EXPECT_EQ(MakeBox().GetCorner(As<tagE3DBBOXCORNER>(corner), point), S_OK);
        EXPECT_TRUE(HasBits(point, CornerOf(corner))) << corner;
    }
}

TEST(BoundingBoxCorners, Names_tell_the_bounds)
{
    Vector point;
    MakeBox().GetCorner(E3DBBOXCORNER_MPM, point);
    EXPECT_TRUE(HasBits(point, Vector(-1, 6, -3)));
    MakeBox().GetCorner(E3DBBOXCORNER_PMP, point);
    EXPECT_TRUE(HasBits(point, Vector(4, -2, 8)));
}

TEST(BoundingBoxCorners, Out_of_range_leaves_the_outputs)
{
    for (int const corner : {k_OutOfRange[0], k_OutOfRange[1], k_OutOfRange[2], k_OutOfRange[3], 8})
    {
        short signs[3] = {7, 8, 9};
        MakeBox().GetSign(As<tagE3DBBOXCORNER>(corner), signs);
        EXPECT_TRUE(signs[0] == 7 && signs[1] == 8 && signs[2] == 9) << corner;
        Vector point = MarkedVector();
        EXPECT_EQ(MakeBox().GetCorner(As<tagE3DBBOXCORNER>(corner), point), E_INVALIDARG) << corner;
        EXPECT_TRUE(HasBits(point, MarkedVector()));
    }
}

TEST(BoundingBoxCorners, GetCorners_writes_all_eight_in_order)
{
    Vector points[9];
    std::fill_n(points, 9, MarkedVector());
    EXPECT_EQ(MakeBox().GetCorners(points), S_OK);
    for (int corner = 0; corner < 8; ++corner)
    {
        EXPECT_TRUE(HasBits(points[corner], CornerOf(corner))) << corner;
    }
    EXPECT_TRUE(HasBits(points[8], MarkedVector()));
}

TEST(BoundingBoxCorners, Corners_of_an_inverted_box_take_the_bounds_as_they_stand)
{
    C3DBBox const box(Vector(1, 1, k_Nan), Vector(-1, -0.0, 5));
    Vector point;
    box.GetCorner(E3DBBOXCORNER_MPM, point);
    EXPECT_TRUE(HasBits(point, Vector(1, -0.0, k_Nan)));
}

TEST(BoundingBoxOpposites, Tables_row_by_row)
{
    int opposite = 0;
    for (int corner = 0; corner < 8; ++corner)
    {
        EXPECT_EQ(Oppose(&C3DBBox::GetOppositeCorner, corner, opposite), S_OK);
        EXPECT_EQ(opposite, k_Corners[corner].opposite) << corner;
    }
    for (int edge = 0; edge < 12; ++edge)
    {
        EXPECT_EQ(Oppose(&C3DBBox::GetOppositeEdge, edge, opposite), S_OK);
        EXPECT_EQ(opposite, k_Edges[edge].opposite) << edge;
    }
    for (int face = 0; face < 6; ++face)
    {
        EXPECT_EQ(Oppose(&C3DBBox::GetOppositeFace, face, opposite), S_OK);
        EXPECT_EQ(opposite, k_Faces[face].opposite) << face;
    }
}

TEST(BoundingBoxOpposites, Lie_opposite_through_the_middle)
{
    C3DBBox const box = MakeBox();
    Vector twice = Vector().Add(box.GetMin(), box.GetMax());
    for (int i = 0; i < 8; ++i)
    {
        int opposite = 0;
        Oppose(&C3DBBox::GetOppositeCorner, i, opposite);
        EXPECT_TRUE(HasBits(Vector().Add(CornerOf(i), CornerOf(opposite)), twice)) << i;
    }
    for (int i = 0; i < 12; ++i)
    {
        int opposite = 0;
        Oppose(&C3DBBox::GetOppositeEdge, i, opposite);
        Vector sum(0, 0, 0);
        for (int const edge : {i, opposite})
        {
            Vector point1;
            Vector point2;
            box.GetEdgePoints(As<tagE3DBBOXEDGE>(edge), point1, point2);
            sum.Add(point1).Add(point2);
        }
        EXPECT_TRUE(HasBits(sum, Vector().Mul(twice, 2))) << i;
    }
    for (int i = 0; i < 6; ++i)
    {
        int opposite = 0;
        Oppose(&C3DBBox::GetOppositeFace, i, opposite);
        EXPECT_NE(i, opposite);
        EXPECT_EQ(C3DBBox::m_FaceInfo[i].axis, C3DBBox::m_FaceInfo[opposite].axis);
    }
}

TEST(BoundingBoxOpposites, Null_output_comes_before_a_value_out_of_range)
{
    ExpectCodes(&C3DBBox::GetOppositeCorner, 8);
    ExpectCodes(&C3DBBox::GetOppositeEdge, 12);
    ExpectCodes(&C3DBBox::GetOppositeFace, 6);
}

TEST(BoundingBoxEdges, Table_row_by_row)
{
    for (int i = 0; i < 12; ++i)
    {
        S3DBBoxEdgeInfo const & row = C3DBBox::m_EdgeInfo[i];
        EXPECT_EQ(row.corner1, k_Edges[i].corners[0]) << i;
        EXPECT_EQ(row.corner2, k_Edges[i].corners[1]) << i;
        EXPECT_EQ(row.axis, k_Edges[i].axis) << i;
    }
}

TEST(BoundingBoxEdges, Points_and_line_run_from_first_to_second_corner_along_the_axis)
{
    for (int i = 0; i < 12; ++i)
    {
        Vector point1 = MarkedVector();
        Vector point2 = MarkedVector();
        EXPECT_EQ(MakeBox().GetEdgePoints(As<tagE3DBBOXEDGE>(i), point1, point2), S_OK);
        EXPECT_TRUE(HasBits(point1, CornerOf(k_Edges[i].corners[0]))) << i;
        EXPECT_TRUE(HasBits(point2, CornerOf(k_Edges[i].corners[1]))) << i;
        C3DLine line(Vector(9, 9, 9), Vector(9, 9, 9));
        EXPECT_EQ(MakeBox().GetEdgeLine(As<tagE3DBBOXEDGE>(i), line), S_OK);
        Vector tangent;
        line.GetTangent(0, tangent);
        double const sides[3] = {5, 8, 11};
        EXPECT_TRUE(HasBits(tangent, Vector(k_Edges[i].axis, sides[k_Edges[i].axis]))) << "not normalised, and upwards";
        Vector end;
        line.GetPos(0, end);
        EXPECT_TRUE(HasBits(end, point1)) << i;
        line.GetPos(1, end);
        EXPECT_TRUE(HasBits(end, point2)) << i;
    }
}

TEST(BoundingBoxFaces, Table_row_by_row)
{
    for (int i = 0; i < 6; ++i)
    {
        S3DBBoxFaceInfo const & row = C3DBBox::m_FaceInfo[i];
        int const corners[4] = {row.corner1, row.corner2, row.corner3, row.corner4};
        EXPECT_TRUE(std::equal(corners, corners + 4, k_Faces[i].corners)) << i;
        EXPECT_EQ(row.axis, k_Faces[i].axis) << i;
    }
}

TEST(BoundingBoxFaces, Points_go_around_counter_clockwise_seen_from_outside)
{
    for (int i = 0; i < 6; ++i)
    {
        Vector points[4];
        EXPECT_EQ(MakeBox().GetFacePoints(As<tagE3DBBOXFACE>(i), points[0], points[1], points[2], points[3]), S_OK);
        for (int k = 0; k < 4; ++k)
        {
            EXPECT_TRUE(HasBits(points[k], CornerOf(k_Faces[i].corners[k]))) << i << ' ' << k;
            // The turn at each of the four corners, which the order of the third one decides too.
            Vector const before = Vector().Sub(points[k], points[(k + 3) % 4]);
            Vector const after = Vector().Sub(points[(k + 1) % 4], points[k]);
            Vector normal = Vector().SetCross(before, after);
            normal.Normalize();
            EXPECT_TRUE(IsNear(normal, Vector(k_Faces[i].axis, k_Faces[i].side), 0)) << i << ' ' << k;
        }
    }
}

TEST(BoundingBoxFaces, Plane_has_the_first_corner_the_first_edge_and_the_outward_normal)
{
    for (int i = 0; i < 6; ++i)
    {
        C3DPlane plane;
        EXPECT_EQ(MakeBox().GetFacePlane(As<tagE3DBBOXFACE>(i), plane), S_OK);
        Vector normal;
        plane.GetNormal(0, 0, normal);
        EXPECT_TRUE(IsNear(normal, Vector(k_Faces[i].axis, k_Faces[i].side), 0)) << i;
        Vector point;
        for (int k : {0, 1, 2, 3})
        {
            plane.GetPos(k == 1 || k == 2 ? 1 : 0, k >= 2 ? 1 : 0, point);
            EXPECT_TRUE(IsNear(point, CornerOf(k_Faces[i].corners[k]), 0)) << i << ' ' << k;
        }
    }
}

TEST(BoundingBoxMeasures, Diagonal_and_middle)
{
    C3DBBox const box(Vector(1, -2, 3), Vector(3, 1, 9));
    Vector out = MarkedVector();
    EXPECT_EQ(&box.GetDiagonal(out), &out);
    EXPECT_TRUE(HasBits(out, Vector(2, 3, 6)));
    EXPECT_EQ(box.GetDiagonalLength(), 7);
    EXPECT_EQ(&box.GetMidPoint(out), &out);
    EXPECT_TRUE(HasBits(out, Vector(2, -0.5, 6)));
    EXPECT_EQ(C3DBBox(Vector(3, 1, 9), Vector(1, -2, 3)).GetDiagonalLength(), 7);
}

TEST(BoundingBoxMeasures, IsEmpty_is_a_matter_of_the_diagonal_alone)
{
    auto const isEmpty = [](Vector const & min, Vector const & max) { return C3DBBox(min, max).IsEmpty(); };
    Vector const zero(0, 0, 0);
    EXPECT_EQ(C3DBBox().IsEmpty(), 1);
    EXPECT_EQ(isEmpty(Vector(1, 1, 1), Vector(1, 1, 1)), 1);
    EXPECT_EQ(isEmpty(zero, Vector(1, 0, 0)), 0);
    EXPECT_EQ(isEmpty(Vector(1, 1, 1), Vector(-1, -1, -1)), 0) << "inverted";
    EXPECT_EQ(isEmpty(zero, Vector(0, 1e-12, 0)), 0) << "the limit is not empty";
    EXPECT_EQ(isEmpty(zero, Vector(0, Below(1e-12), 0)), 1);
    EXPECT_EQ(isEmpty(Vector(0, 0, 1e-12), zero), 0);
    EXPECT_EQ(isEmpty(zero, Vector(8e-13, 8e-13, 0)), 0) << "each side is below the limit, the diagonal is not";
    for (int axis = 0; axis < 3; ++axis)
    {
        Vector bound(5, 5, 5);
        bound.Set(axis, k_Nan);
        EXPECT_EQ(isEmpty(zero, bound), 1) << axis;
        EXPECT_EQ(isEmpty(bound, Vector(9, 9, 9)), 1) << axis;
    }
    EXPECT_EQ(isEmpty(zero, Vector(k_Infinity, 0, 0)), 0);
}

TEST(BoundingBoxMerge, Default_box_keeps_the_origin)
{
    C3DBBox box;
    EXPECT_EQ(&box.MergeVector(1, 2, 3), &box);
    EXPECT_TRUE(HasBounds(box, Vector(0, 0, 0), Vector(1, 2, 3)));
    EXPECT_EQ(box.IsEmpty(), 0);
}

TEST(BoundingBoxMerge, Points_and_boxes_component_by_component)
{
    C3DBBox byVector = MakeBox();
    EXPECT_EQ(&byVector.MergeVector(Vector(9, 0, -7)), &byVector);
    EXPECT_TRUE(HasBounds(byVector, Vector(-1, -2, -7), Vector(9, 6, 8)));
    C3DBBox byNumbers = MakeBox();
    byNumbers.MergeVector(-5, 7, 0);
    EXPECT_TRUE(HasBounds(byNumbers, Vector(-5, -2, -3), Vector(4, 7, 8)));
    C3DBBox byBox = MakeBox();
    EXPECT_EQ(&byBox.MergeBBox(C3DBBox(Vector(-7, 0, 1), Vector(1, 9, 2))), &byBox);
    EXPECT_TRUE(HasBounds(byBox, Vector(-7, -2, -3), Vector(4, 9, 8)));
    byBox.MergeBBox(byBox);
    EXPECT_TRUE(HasBounds(byBox, Vector(-7, -2, -3), Vector(4, 9, 8)));
    byBox.MergeVector(byBox.GetMin());
    EXPECT_TRUE(HasBounds(byBox, Vector(-7, -2, -3), Vector(4, 9, 8)));
}

TEST(BoundingBoxMerge, Inverted_box_gives_both_its_bounds_as_they_stand)
{
    C3DBBox box = MakeBox();
    box.MergeBBox(C3DBBox(Vector(20, 20, 20), Vector(-20, -20, -20)));
    EXPECT_TRUE(HasBounds(box, Vector(-1, -2, -3), Vector(4, 6, 8))) << "its minimum is no candidate for the maximum";
    C3DBBox inverted(Vector(5, 5, 5), Vector(-5, -5, -5));
    inverted.MergeBBox(MakeBox());
    EXPECT_TRUE(HasBounds(inverted, Vector(-1, -2, -3), Vector(4, 6, 8)));
    C3DBBox both(Vector(5, 5, 5), Vector(-5, -5, -5));
    both.MergeVector(1, 7, -7);
    EXPECT_TRUE(HasBounds(both, Vector(1, 5, -7), Vector(1, 7, -5)));
}

TEST(BoundingBoxMerge, NaN_gets_into_a_minimum_and_never_into_a_maximum)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        Vector point(0, 0, 0);
        point.Set(axis, k_Nan);
        Vector minimum(-1, -2, -3);
        minimum.Set(axis, k_Nan);
        C3DBBox byVector = MakeBox();
        byVector.MergeVector(point);
        EXPECT_TRUE(HasBounds(byVector, minimum, Vector(4, 6, 8))) << axis;
        C3DBBox byBox = MakeBox();
        byBox.MergeBBox(C3DBBox(point, point));
        EXPECT_TRUE(HasBounds(byBox, minimum, Vector(4, 6, 8))) << axis;
    }
}

TEST(BoundingBoxMerge, NaN_of_the_box_goes_from_a_minimum_and_stays_in_a_maximum)
{
    C3DBBox box(Vector(k_Nan, 0, 0), Vector(k_Nan, 0, 0));
    box.MergeVector(5, 0, 0);
    EXPECT_TRUE(HasBounds(box, Vector(5, 0, 0), Vector(k_Nan, 0, 0)));
}

TEST(BoundingBoxMerge, Equal_zeros_keep_the_sign_that_is_there)
{
    C3DBBox box(Vector(0.0, -0.0, 0.0), Vector(-0.0, 0.0, -0.0));
    box.MergeVector(-0.0, 0.0, -0.0);
    EXPECT_TRUE(HasBounds(box, Vector(0.0, -0.0, 0.0), Vector(-0.0, 0.0, -0.0)));
    box.MergeBBox(C3DBBox(Vector(-0.0, 0.0, -0.0), Vector(0.0, -0.0, 0.0)));
    EXPECT_TRUE(HasBounds(box, Vector(0.0, -0.0, 0.0), Vector(-0.0, 0.0, -0.0)));
}

TEST(BoundingBoxMerge, Infinities_are_bounds_like_others)
{
    C3DBBox box = MakeBox();
    box.MergeVector(k_Infinity, -k_Infinity, 0);
    EXPECT_TRUE(HasBounds(box, Vector(-1, -k_Infinity, -3), Vector(k_Infinity, 6, 8)));
}
