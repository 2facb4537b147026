/// What the matrix of any size does when memory runs short.

#include "matrix/matrix_mn_fixtures.h"
#include "support/allocation_faults.h"

#include <climits>
#include <memory>

using namespace test_support;

namespace
{

/// What an operation returned while its allocation of one number was refused.
struct Refused
{
    int result;
    long requests;
    long outstanding;
};

template <typename Operation>
Refused RefuseOne(long number, Operation const & operation)
{
    AllocationFaults const faults = AllocationFaults::RefuseOne(number);
    int const result = operation();
    return {result, faults.GetRequests(), faults.GetOutstanding()};
}

void ExpectEmpty(C3DMatrixMN const & m)
{
    EXPECT_EQ(m.GetNbRow(), 0);
    EXPECT_EQ(m.GetNbCol(), 0);
}

TEST(MatrixMNAllocation, Each_row_is_an_allocation_of_its_own)
{
    C3DMatrixMN m;
    Refused const none = RefuseOne(-1, [&] { return m.SetDimensions(5, 3); });
    EXPECT_EQ(none.result, 1);
    EXPECT_EQ(none.requests, 6);
    EXPECT_EQ(none.outstanding, 6);
    Refused const same = RefuseOne(-1, [&] { return m.SetDimensions(5, 3); });
    EXPECT_EQ(same.requests, 0);
    Refused const freed = RefuseOne(-1, [&] { return m.SetDimensions(0, 0); });
    EXPECT_EQ(freed.requests, 0);
    EXPECT_EQ(freed.outstanding, -6);
}

TEST(MatrixMNAllocation, The_destructor_frees_everything)
{
    AllocationFaults const faults;
    {
        C3DMatrixMN m;
        m.SetDimensions(4, 4);
        C3DMatrixMN const copy(m);
        m.SetDimensions(3, 2);
    }
    EXPECT_EQ(faults.GetOutstanding(), 0);
}

TEST(MatrixMNAllocation, SetDimensions_without_memory_for_a_row_gives_0_and_an_empty_matrix)
{
    for (long failing = 1; failing <= 5; ++failing)
    {
        C3DMatrixMN fresh;
        Refused const refused = RefuseOne(failing, [&] { return fresh.SetDimensions(5, 3); });
        EXPECT_EQ(refused.result, 0);
        EXPECT_EQ(refused.requests, failing + 1);
        EXPECT_EQ(refused.outstanding, 0);
        ExpectEmpty(fresh);

        C3DMatrixMN sized = FilledMN(2, 2, 1);
        EXPECT_EQ(RefuseOne(failing, [&] { return sized.SetDimensions(5, 3); }).result, 0);
        ExpectEmpty(sized);
        EXPECT_EQ(sized.SetDimensions(2, 2), 1);
        sized.SetIdentity();
        EXPECT_EQ(sized.Get(1, 1), 1);
    }
}

/// A matrix whose array of row pointers could not be allocated.
std::unique_ptr<C3DMatrixMN> MatrixWithoutRows()
{
    auto m = std::make_unique<C3DMatrixMN>();
    Refused const refused = RefuseOne(0, [&] { return m->SetDimensions(5, 3); });
    EXPECT_EQ(refused.result, 1);
    EXPECT_EQ(refused.requests, 1);
    EXPECT_EQ(refused.outstanding, 0);
    return m;
}

TEST(MatrixMNAllocation, SetDimensions_without_memory_for_the_row_pointers_gives_1_with_the_sizes_set)
{
    auto const m = MatrixWithoutRows();
    EXPECT_EQ(m->GetNbRow(), 5);
    EXPECT_EQ(m->GetNbCol(), 3);
    EXPECT_EQ(m->SetDimensions(5, 3), 1);
    EXPECT_EQ(m->GetNbRow(), 5);
    // The destructor has no rows to free.
}

TEST(MatrixMNAllocation, A_matrix_without_rows_can_be_given_another_size)
{
    auto const resized = MatrixWithoutRows();
    EXPECT_EQ(resized->SetDimensions(2, 2), 1);
    resized->SetIdentity();
    EXPECT_TRUE(SameElements(*resized, MakeMN({{1, 0}, {0, 1}})));
    auto const emptied = MatrixWithoutRows();
    EXPECT_EQ(emptied->SetDimensions(0, 0), 1);
    ExpectEmpty(*emptied);
    auto const set = MatrixWithoutRows();
    EXPECT_EQ(set->Set(MakeMN({{1, 2}})), 1);
    EXPECT_TRUE(SameElements(*set, MakeMN({{1, 2}})));
}

TEST(MatrixMNAllocation, A_copy_of_a_matrix_without_rows_is_empty)
{
    auto const m = MatrixWithoutRows();
    C3DMatrixMN const copy(*m);
    ExpectEmpty(copy);
    C3DMatrixMN set = FilledMN(2, 2, 1);
    EXPECT_EQ(set.Set(*m), 0);
    ExpectEmpty(set);
    EXPECT_EQ(m->Mul(C3DMatrixMN()), 0);
    EXPECT_EQ(m->LeftMul(C3DMatrixMN()), 0);
}

TEST(MatrixMNAllocation, Set_without_memory_gives_0_and_an_empty_matrix)
{
    C3DMatrixMN const source = FilledMN(4, 3, 1);
    for (long failing = 0; failing <= 4; ++failing)
    {
        C3DMatrixMN target;
        Refused const refused = RefuseOne(failing, [&] { return target.Set(source); });
        EXPECT_EQ(refused.result, 0) << failing;
        EXPECT_EQ(refused.outstanding, 0);
        ExpectEmpty(target);
    }
    C3DMatrixMN target;
    EXPECT_EQ(RefuseOne(5, [&] { return target.Set(source); }).result, 1);
    EXPECT_TRUE(SameElements(target, source));
    // Of the same size already: nothing is allocated.
    EXPECT_EQ(RefuseOne(0, [&] { return target.Set(source); }).result, 1);
}

TEST(MatrixMNAllocation, The_copy_constructor_without_memory_makes_an_empty_matrix)
{
    C3DMatrixMN const source = FilledMN(4, 3, 1);
    for (long failing = 0; failing <= 4; ++failing)
    {
        int rows = -1;
        int cols = -1;
        Refused const refused = RefuseOne(failing,
                                          [&]
                                          {
                                              C3DMatrixMN const copy(source);
                                              rows = copy.GetNbRow();
                                              cols = copy.GetNbCol();
                                              return 0;
                                          });
        EXPECT_EQ(refused.outstanding, 0);
        EXPECT_EQ(rows, 0);
        EXPECT_EQ(cols, 0);
    }
}

TEST(MatrixMNAllocation, Products_in_place_without_memory_give_0_and_change_nothing)
{
    C3DMatrixMN const source = MakeMN({{1, 2}, {3, 4}, {5, 6}});
    C3DMatrixMN const right = MakeMN({{2, 0}, {0, 2}});
    C3DMatrixMN const left = MakeMN({{2, 0, 0}, {0, 2, 0}, {0, 0, 2}});
    C3DMatrixMN target(source);
    for (long failing = 0; failing <= 3; ++failing)
    {
        Refused const mul = RefuseOne(failing, [&] { return target.Mul(right); });
        EXPECT_EQ(mul.result, 0) << failing;
        EXPECT_EQ(mul.outstanding, 0);
        Refused const leftMul = RefuseOne(failing, [&] { return target.LeftMul(left); });
        EXPECT_EQ(leftMul.result, 0) << failing;
        EXPECT_EQ(leftMul.outstanding, 0);
        EXPECT_TRUE(SameElements(target, source));
    }
    Refused const mul = RefuseOne(4, [&] { return target.Mul(right); });
    EXPECT_EQ(mul.result, 1);
    EXPECT_EQ(mul.requests, 4);
    EXPECT_EQ(mul.outstanding, 0);
}

TEST(MatrixMNAllocation, The_product_of_two_operands_allocates_nothing)
{
    C3DMatrixMN const a = FilledMN(2, 2, 1);
    C3DMatrixMN target = FilledMN(2, 2, 0);
    EXPECT_EQ(RefuseOne(0, [&] { return target.Mul(a, a).Add(a).Sub(a).Transpose(a).GetNbRow(); }).requests, 0);
}

TEST(MatrixMNAllocation, GrevilleInverse_without_memory_gives_0_and_changes_nothing)
{
    C3DMatrixMN const a = MakeMN({{1, 2}, {3, 4}, {5, 6}});
    C3DMatrixMN target = FilledMN(2, 3, 9);
    for (long failing = 0; failing <= 3; ++failing)
    {
        Refused const whole = RefuseOne(failing, [&] { return target.GrevilleInverse(a); });
        EXPECT_EQ(whole.result, 0) << failing;
        EXPECT_EQ(whole.outstanding, 0);
        Refused const block = RefuseOne(failing, [&] { return target.GrevilleInverse(a, 3, 2); });
        EXPECT_EQ(block.result, 0) << failing;
        EXPECT_EQ(block.outstanding, 0);
        EXPECT_TRUE(SameElements(target, FilledMN(2, 3, 9)));
    }
    Refused const enough = RefuseOne(4, [&] { return target.GrevilleInverse(a); });
    EXPECT_EQ(enough.result, 1);
    EXPECT_EQ(enough.outstanding, 0);
    EXPECT_FALSE(SameElements(target, FilledMN(2, 3, 9)));
}

/// Asks for a size where no block above a megabyte is granted, and tells the largest request.
std::size_t LargestRequest(int rows, int cols)
{
    C3DMatrixMN m;
    AllocationFaults const faults = AllocationFaults::RefuseAbove(1U << 20U);
    m.SetDimensions(rows, cols);
    return faults.GetLargestRequest();
}

TEST(MatrixMNAllocation, Sizes_do_not_overflow)
{
    EXPECT_EQ(LargestRequest(2, INT_MAX), std::size_t{INT_MAX} * sizeof(double));
    EXPECT_EQ(LargestRequest(INT_MAX, 2), std::size_t{INT_MAX} * sizeof(double *));
    EXPECT_EQ(LargestRequest(2, (1 << 29) + 1), ((std::size_t{1} << 29U) + 1) * sizeof(double));

    C3DMatrixMN const a = FilledMN(1, 1, 1);
    C3DMatrixMN target = FilledMN(1, 1, 9);
    // The bytes of so many doubles have no representation: no request is made with what is left of them.
    EXPECT_EQ(target.GrevilleInverse(a, ULONG_MAX / sizeof(double) + 2, 1), 0);
    EXPECT_EQ(target.GrevilleInverse(a, 1, ULONG_MAX), 0);
    EXPECT_EQ(target.Get(0, 0), 9);
}

} // namespace
