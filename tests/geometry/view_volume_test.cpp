#include "math/view_volume.h"

#include "support/allocation_faults.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <string>

using test_support::AllocationFaults;

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;

constexpr int k_World = 0;
constexpr int k_View = 1;

Matrix Moved(double x, double y, double z)
{
    return Matrix().SetTranslation(Vector(x, y, z));
}

tagE3DVIEWINTERSECTION ClassifyCube(C3DViewVolume const & volume, Vector const & centre, double half,
                                    Matrix const * matrix = nullptr)
{
    Vector const box[2] = {Vector(centre.X - half, centre.Y - half, centre.Z - half),
                           Vector(centre.X + half, centre.Y + half, centre.Z + half)};
    return volume.Classify(box, matrix);
}

void SetSmallBox(C3DViewVolume & volume)
{
    volume.SetOrtho(-1, 1, -1, 1, 1, 3, Matrix());
}

/// The object's fields, read from its memory.
struct Fields
{
    int flag;
    void * view;
    void * world;

    bool operator==(Fields const &) const = default;
};

Fields FieldsOf(C3DViewVolume const & volume)
{
    static_assert(sizeof(Fields) == sizeof volume);
    Fields fields{};
    std::memcpy(&fields, static_cast<void const *>(&volume), sizeof fields);
    return fields;
}

/// In both strategies.
class ViewVolume : public testing::TestWithParam<int>
{
protected:
    ViewVolume() { volume.SetViewSpace(GetParam()); }

    void ExpectSides(double halfWidth, double halfHeight, double depth) const
    {
        double const inner = 0.999;
        double const outer = 1.001;
        double const half = 1e-9;
        for (double const sign : {-1.0, 1.0})
        {
            EXPECT_EQ(ClassifyCube(volume, Vector(sign * inner * halfWidth, 0, -depth), half),
                      E3DVIEWINTERSECTION_INSIDE);
            EXPECT_EQ(ClassifyCube(volume, Vector(sign * outer * halfWidth, 0, -depth), half),
                      E3DVIEWINTERSECTION_OUTSIDE);
            EXPECT_EQ(ClassifyCube(volume, Vector(0, sign * inner * halfHeight, -depth), half),
                      E3DVIEWINTERSECTION_INSIDE);
            EXPECT_EQ(ClassifyCube(volume, Vector(0, sign * outer * halfHeight, -depth), half),
                      E3DVIEWINTERSECTION_OUTSIDE);
        }
    }

    C3DViewVolume volume;
};

std::string NameOfStrategy(testing::TestParamInfo<int> const & info)
{
    return info.param == k_World ? "World" : "View";
}

INSTANTIATE_TEST_SUITE_P(Strategies, ViewVolume, testing::Values(k_World, k_View), NameOfStrategy);

} // namespace

TEST_P(ViewVolume, Near_and_far_are_distances_down_the_negative_Z_axis)
{
    SetSmallBox(volume);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -2), 0.5), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, 2), 0.5), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -0.4), 0.5), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -1), 0.5), E3DVIEWINTERSECTION_CROSSING);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -3), 0.5), E3DVIEWINTERSECTION_CROSSING);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -3.6), 0.5), E3DVIEWINTERSECTION_OUTSIDE);
}

TEST_P(ViewVolume, The_matrix_takes_view_space_to_world_space)
{
    volume.SetOrtho(-1, 1, -1, 1, 1, 3, Moved(100, 20, 3));
    EXPECT_EQ(ClassifyCube(volume, Vector(100, 20, 1), 0.5), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -2), 0.5), E3DVIEWINTERSECTION_OUTSIDE);
}

TEST_P(ViewVolume, A_box_is_taken_to_world_space_by_its_matrix)
{
    SetSmallBox(volume);
    Matrix const toVolume = Moved(0, 0, -52);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, 50), 0.5, &toVolume), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -2), 0.5, &toVolume), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, 51), 0.5, &toVolume), E3DVIEWINTERSECTION_CROSSING);
}

TEST_P(ViewVolume, The_box_goes_through_its_own_matrix_before_the_cameras)
{
    Matrix const camera(0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 10, 0, 0, 1);
    Matrix const toWorld(2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 3, 0, 1);
    volume.SetOrtho(-4, 4, -1, 1, 1, 3, camera);
    // At x = 10 the volume spans y from -4 to 4 and x from 9 to 11.
    EXPECT_EQ(ClassifyCube(volume, Vector(5, 0, -2), 0.4, &toWorld), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(ClassifyCube(volume, Vector(5, 0.8, -2), 0.4, &toWorld), E3DVIEWINTERSECTION_CROSSING);
    EXPECT_EQ(ClassifyCube(volume, Vector(6, 0, -2), 0.4, &toWorld), E3DVIEWINTERSECTION_OUTSIDE);
}

TEST_P(ViewVolume, A_frustum_is_given_by_its_window_on_the_near_plane_and_widens_with_depth)
{
    volume.SetFrustum(-1, 1, -0.5, 0.5, 1, 10, Matrix());
    ExpectSides(1.001, 0.501, 1.001);
    ExpectSides(4, 2, 4);
    ExpectSides(9.9, 4.95, 9.9);
}

TEST_P(ViewVolume, An_orthographic_volume_does_not_widen)
{
    volume.SetOrtho(-1, 1, -0.5, 0.5, 1, 10, Matrix());
    ExpectSides(1, 0.5, 1.001);
    ExpectSides(1, 0.5, 9.9);
}

TEST_P(ViewVolume, An_off_centre_frustum_has_each_side_where_it_was_set)
{
    volume.SetFrustum(1, 3, 2, 5, 1, 10, Matrix());
    struct Row
    {
        double x;
        double y;
        tagE3DVIEWINTERSECTION answer;
    };
    for (Row const & row : {Row{4.01, 14, E3DVIEWINTERSECTION_INSIDE}, Row{3.99, 14, E3DVIEWINTERSECTION_OUTSIDE},
                            Row{11.99, 14, E3DVIEWINTERSECTION_INSIDE}, Row{12.01, 14, E3DVIEWINTERSECTION_OUTSIDE},
                            Row{8, 8.01, E3DVIEWINTERSECTION_INSIDE}, Row{8, 7.99, E3DVIEWINTERSECTION_OUTSIDE},
                            Row{8, 19.99, E3DVIEWINTERSECTION_INSIDE}, Row{8, 20.01, E3DVIEWINTERSECTION_OUTSIDE}})
    {
        EXPECT_EQ(ClassifyCube(volume, Vector(row.x, row.y, -4), 1e-6), row.answer) << row.x << ' ' << row.y;
    }
}

TEST_P(ViewVolume, The_field_of_view_is_horizontal_and_the_aspect_is_width_over_height)
{
    double const fieldOfView = 1.2;
    volume.SetPersp(fieldOfView, 2, 0.5, 10, Matrix());
    double const halfWidth = 8 * std::tan(0.6);
    ExpectSides(halfWidth, halfWidth / 2, 8);
}

TEST_P(ViewVolume, Set_chooses_the_projection_by_its_flag)
{
    for (int const flag : {1, 2, -1})
    {
        volume.Set(-1, 1, -1, 1, 1, 10, Matrix(), flag);
        ExpectSides(1, 1, 8);
    }
    volume.Set(-1, 1, -1, 1, 1, 10, Matrix(), 0);
    ExpectSides(8, 8, 8);
}

TEST_P(ViewVolume, A_second_Set_replaces_the_volume)
{
    volume.SetFrustum(-1, 1, -1, 1, 1, 10, Moved(50, 0, 0));
    SetSmallBox(volume);
    ExpectSides(1, 1, 2);
    volume.SetFrustum(-1, 1, -1, 1, 1, 10, Matrix());
    ExpectSides(8, 8, 8);
}

TEST_P(ViewVolume, A_box_that_contains_the_volume_is_crossing)
{
    volume.SetPersp(1, 1, 1, 10, Matrix());
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, 0), 100), E3DVIEWINTERSECTION_CROSSING);
    SetSmallBox(volume);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, 0), 100), E3DVIEWINTERSECTION_CROSSING);
}

TEST_P(ViewVolume, A_box_that_fills_the_volume_exactly_is_inside)
{
    SetSmallBox(volume);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -2), 1), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -2), std::nextafter(1.0, 2)), E3DVIEWINTERSECTION_CROSSING);
}

TEST_P(ViewVolume, Behind_the_camera_is_outside)
{
    volume.SetPersp(1, 1, 1, 10, Matrix());
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, 5), 1), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, 5), 4.5), E3DVIEWINTERSECTION_OUTSIDE);
}

TEST_P(ViewVolume, A_box_of_NaNs_is_never_outside)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    Vector const box[2] = {Vector(nan, nan, nan), Vector(nan, nan, nan)};
    volume.SetPersp(1, 1, 1, 10, Moved(0, 0, 5));
    // In view space the components are left out of the transformation, so that the box is the world's origin.
    EXPECT_EQ(volume.Classify(box, nullptr), E3DVIEWINTERSECTION_INSIDE);
    Matrix const turn(0.6, 0.8, 0, 0, -0.8, 0.6, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    EXPECT_EQ(volume.Classify(box, &turn), E3DVIEWINTERSECTION_INSIDE);
    volume.SetOrtho(-1, 1, -1, 1, 1, 10, Moved(0, 0, 5));
    EXPECT_EQ(volume.Classify(box, nullptr),
              GetParam() == k_World ? E3DVIEWINTERSECTION_CROSSING : E3DVIEWINTERSECTION_INSIDE);
}

TEST_P(ViewVolume, An_unbounded_box_is_crossing)
{
    double const infinity = std::numeric_limits<double>::infinity();
    Vector const box[2] = {Vector(-infinity, -infinity, -infinity), Vector(infinity, infinity, infinity)};
    SetSmallBox(volume);
    if (GetParam() == k_World)
    {
        EXPECT_EQ(volume.Classify(box, nullptr), E3DVIEWINTERSECTION_CROSSING);
        volume.SetPersp(1, 1, 1, 10, Matrix());
        EXPECT_EQ(volume.Classify(box, nullptr), E3DVIEWINTERSECTION_CROSSING);
    }
    else
    {
        // Off the axes of a matrix an infinity meets zeros, and the corners are NaNs.
        EXPECT_EQ(volume.Classify(box, nullptr), E3DVIEWINTERSECTION_INSIDE);
    }
}

TEST_P(ViewVolume, Set_allocates_one_record_and_the_destructor_frees_it)
{
    AllocationFaults const memory;
    {
        C3DViewVolume other;
        other.SetViewSpace(GetParam());
        EXPECT_EQ(memory.GetRequests(), 0);
        SetSmallBox(other);
        SetSmallBox(other);
        other.SetPersp(1, 1, 1, 10, Matrix());
        ClassifyCube(other, Vector(0, 0, 0), 1);
    }
    EXPECT_EQ(memory.GetRequests(), 1);
    EXPECT_EQ(memory.GetOutstanding(), 0);
}

TEST_P(ViewVolume, An_allocation_failure_leaves_no_record_and_the_next_Set_makes_one)
{
    {
        AllocationFaults const memory = AllocationFaults::RefuseOne(0);
        SetSmallBox(volume);
        EXPECT_EQ(memory.GetRequests(), 1);
        EXPECT_EQ(memory.GetOutstanding(), 0);
    }
    {
        AllocationFaults const memory;
        SetSmallBox(volume);
        EXPECT_EQ(memory.GetOutstanding(), 1);
    }
    ExpectSides(1, 1, 2);
}

TEST_P(ViewVolume, A_copy_is_independent)
{
    SetSmallBox(volume);
    std::optional<C3DViewVolume> source(volume);
    C3DViewVolume const copy(*source);
    source->SetOrtho(-1, 1, -1, 1, 1, 3, Moved(50, 0, 0));
    EXPECT_EQ(ClassifyCube(copy, Vector(0, 0, -2), 0.5), E3DVIEWINTERSECTION_INSIDE);
    source.reset();
    EXPECT_EQ(ClassifyCube(copy, Vector(0, 0, -2), 0.5), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(ClassifyCube(copy, Vector(5, 0, -2), 0.5), E3DVIEWINTERSECTION_OUTSIDE);
}

TEST_P(ViewVolume, A_copy_has_the_strategy_of_its_source_and_can_be_set)
{
    C3DViewVolume copy(volume);
    AllocationFaults const memory;
    copy.SetViewSpace(GetParam());
    SetSmallBox(copy);
    SetSmallBox(volume);
    EXPECT_EQ(memory.GetRequests(), 2);
}

TEST_P(ViewVolume, A_copy_that_finds_no_memory_lacks_the_record)
{
    SetSmallBox(volume);
    std::optional<C3DViewVolume> copy;
    {
        AllocationFaults const memory = AllocationFaults::RefuseOne(0);
        copy.emplace(volume);
        EXPECT_EQ(memory.GetOutstanding(), 0);
    }
    AllocationFaults const memory;
    SetSmallBox(*copy);
    EXPECT_EQ(memory.GetOutstanding(), 1);
    copy.reset();
    EXPECT_EQ(memory.GetOutstanding(), 0);
}

TEST_P(ViewVolume, Assignment_shares_the_record_of_an_object_that_is_not_destroyed)
{
    alignas(C3DViewVolume) unsigned char storage[sizeof(C3DViewVolume)];
    auto * const source = new (storage) C3DViewVolume();
    source->SetViewSpace(GetParam());
    SetSmallBox(*source);
    C3DViewVolume target;
    AllocationFaults const memory;
    EXPECT_EQ(&(target = *source), &target);
    EXPECT_EQ(memory.GetRequests(), 0);
    EXPECT_EQ(ClassifyCube(target, Vector(0, 0, -2), 0.5), E3DVIEWINTERSECTION_INSIDE);
    // One record, seen through both.
    source->SetOrtho(-1, 1, -1, 1, 1, 3, Moved(50, 0, 0));
    EXPECT_EQ(ClassifyCube(target, Vector(0, 0, -2), 0.5), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(ClassifyCube(target, Vector(50, 0, -2), 0.5), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(FieldsOf(*source), FieldsOf(target));
}

TEST_P(ViewVolume, The_fields_are_the_flag_the_view_record_and_the_world_record)
{
    Fields const before = FieldsOf(volume);
    EXPECT_EQ(before.flag, GetParam());
    EXPECT_EQ(before.view, nullptr);
    EXPECT_EQ(before.world, nullptr);
    SetSmallBox(volume);
    Fields const after = FieldsOf(volume);
    EXPECT_EQ(after.view != nullptr, GetParam() == k_View);
    EXPECT_EQ(after.world != nullptr, GetParam() == k_World);
}

TEST_P(ViewVolume, Self_assignment_changes_nothing)
{
    SetSmallBox(volume);
    C3DViewVolume const & same = volume;
    volume = same;
    ExpectSides(1, 1, 2);
}

TEST(ViewVolumeMode, World_space_is_the_first_strategy)
{
    // Only the world strategy sees that a box is beside the volume where none of the volume's planes separates them.
    C3DViewVolume first;
    C3DViewVolume world;
    world.SetViewSpace(k_View);
    world.SetViewSpace(k_World);
    C3DViewVolume view;
    view.SetViewSpace(k_View);
    double const c = std::sqrt(0.5);
    Matrix const askew(c, 0, -c, 0, 0, 1, 0, 0, c, 0, c, 0, 0, 0, 0, 1);
    for (C3DViewVolume * const volume : {&first, &world, &view})
    {
        volume->SetOrtho(-1, 1, -1, 1, 1, 3, askew);
    }
    // The volume has no point at an X below -4 c.
    Vector const box[2] = {Vector(-20, -0.5, -20), Vector(-4.5 * c, 0.5, 20)};
    EXPECT_EQ(first.Classify(box, nullptr), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(world.Classify(box, nullptr), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(view.Classify(box, nullptr), E3DVIEWINTERSECTION_CROSSING);
}

TEST(ViewVolumeMode, A_change_frees_the_record_of_the_old_mode_and_no_other_call_does)
{
    AllocationFaults const memory;
    C3DViewVolume volume;
    SetSmallBox(volume);
    volume.SetViewSpace(0);
    EXPECT_EQ(memory.GetOutstanding(), 1);
    volume.SetViewSpace(1);
    EXPECT_EQ(memory.GetOutstanding(), 0);
    SetSmallBox(volume);
    EXPECT_EQ(memory.GetOutstanding(), 1);
    EXPECT_EQ(memory.GetRequests(), 2);
    volume.SetViewSpace(1);
    EXPECT_EQ(memory.GetOutstanding(), 1);
    volume.SetViewSpace(0);
    EXPECT_EQ(memory.GetOutstanding(), 0);
    SetSmallBox(volume);
    EXPECT_EQ(memory.GetRequests(), 3);
}

TEST(ViewVolumeMode, Values_that_are_not_0_choose_view_space_and_differ_from_each_other)
{
    for (int const mode : {2, -1, 256, std::numeric_limits<int>::min()})
    {
        C3DViewVolume volume;
        volume.SetViewSpace(mode);
        // A singular camera: view space keeps the identity as its inverse, world space shrinks the volume.
        volume.SetOrtho(-1, 1, -1, 1, 1, 3, Matrix(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1));
        EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -2), 0.5), E3DVIEWINTERSECTION_INSIDE) << mode;
        AllocationFaults const memory;
        volume.SetViewSpace(mode);
        EXPECT_EQ(memory.GetOutstanding(), 0) << mode;
        volume.SetViewSpace(1);
        EXPECT_EQ(memory.GetOutstanding(), -1) << mode;
        SetSmallBox(volume);
        EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -2), 0.5), E3DVIEWINTERSECTION_INSIDE) << mode;
    }
}

TEST(ViewVolumeMode, Classify_is_const_and_writes_neither_box_nor_matrix)
{
    C3DViewVolume volume;
    SetSmallBox(volume);
    C3DViewVolume const & constant = volume;
    Vector box[2] = {Vector(-1, -2, -3), Vector(1, 2, 3)};
    Matrix const matrix = Moved(1, 2, 3);
    Matrix const before = matrix;
    constant.Classify(box, &matrix);
    EXPECT_EQ(box[0], Vector(-1, -2, -3));
    EXPECT_EQ(box[1], Vector(1, 2, 3));
    EXPECT_EQ(matrix, before);
}

static_assert(sizeof(C3DViewVolume) == 3 * sizeof(void *));
static_assert(sizeof(tagE3DVIEWINTERSECTION) == sizeof(int));

TEST(ViewVolumeAnswers, Have_their_numbers)
{
    EXPECT_EQ(E3DVIEWINTERSECTION_OUTSIDE, 0);
    EXPECT_EQ(E3DVIEWINTERSECTION_INSIDE, 1);
    EXPECT_EQ(E3DVIEWINTERSECTION_CROSSING, 2);
}
