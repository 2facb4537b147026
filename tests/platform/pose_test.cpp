#include "math/platform/pose.h"

#include "math/platform/result.h"

#include "support/virtual_slots.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

/// Notes which operation was called. The operands stay incomplete types: nothing here looks into them.
class NotingPose final : public I3DPose_QN
{
public:
    long GetGlobalTransfo(C3DTransfo &) override { return Note(1); }
    long GetGlobalMatrix(C3DXfoMatTpl<double> const ** out) override
    {
        *out = nullptr;
        return Note(2);
    }
    long GetRelativeTransfo(C3DTransfo &, I3DPose_QN * pose, unsigned char mask) override
    {
        other = pose;
        components = mask;
        return Note(3);
    }
    long GetGlobalPosition(C3DVector3Tpl<double> &) override { return Note(4); }
    long GetGlobalScaling(C3DVector3Tpl<double> &) override { return Note(5); }

    int called{0};
    I3DPose_QN * other{nullptr};
    unsigned char components{0};

private:
    long Note(int operation)
    {
        called = operation;
        return operation == 5 ? E_FAIL : S_OK;
    }
};

TEST(Pose, Operations_reach_the_application)
{
    NotingPose pose;
    NotingPose other;
    I3DPose_QN & interface = pose;
    double somewhere[64] = {};
    auto & transformation = reinterpret_cast<C3DTransfo &>(somewhere);
    auto & vector = reinterpret_cast<C3DVector3Tpl<double> &>(somewhere);
    auto const * matrix = reinterpret_cast<C3DXfoMatTpl<double> const *>(somewhere);

    EXPECT_EQ(interface.GetGlobalTransfo(transformation), S_OK);
    EXPECT_EQ(pose.called, 1);
    EXPECT_EQ(interface.GetGlobalMatrix(&matrix), S_OK);
    EXPECT_EQ(pose.called, 2);
    EXPECT_EQ(matrix, nullptr);
    EXPECT_EQ(interface.GetRelativeTransfo(transformation, &other, 0x3F), S_OK);
    EXPECT_EQ(pose.called, 3);
    EXPECT_EQ(pose.other, &other);
    EXPECT_EQ(pose.components, 0x3F);
    EXPECT_EQ(interface.GetGlobalPosition(vector), S_OK);
    EXPECT_EQ(pose.called, 4);
    EXPECT_EQ(interface.GetGlobalScaling(vector), E_FAIL);
    EXPECT_EQ(pose.called, 5);
}

TEST(Pose, Operations_stand_in_the_order_that_applications_implement)
{
    using test_support::SlotOf;
    EXPECT_EQ(SlotOf(&I3DPose_QN::GetGlobalTransfo), 0U);
    EXPECT_EQ(SlotOf(&I3DPose_QN::GetGlobalMatrix), 1U);
    EXPECT_EQ(SlotOf(&I3DPose_QN::GetRelativeTransfo), 2U);
    EXPECT_EQ(SlotOf(&I3DPose_QN::GetGlobalPosition), 3U);
    EXPECT_EQ(SlotOf(&I3DPose_QN::GetGlobalScaling), 4U);
}

} // namespace
