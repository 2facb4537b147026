/// Four lines at once have the bits of each alone, and columns by fours those of columns one after the other.

#include "signal/lines_of_four.h"

#include "signal/column_pass.h"
#include "signal/fourier_kernel_cases.h"
#include "support/random.h"
#include "support/same_bits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

using namespace signal_test;
using math::detail::FourLines;
using math::detail::FourLinesKernel;
using math::detail::KernelMemory;
using math::detail::Rows;
using test_support::Random;

namespace
{

/// Rows of so many values, with a row and some values more that no transform may touch.
struct Plane
{
    Plane(Random & random, int rowCount, int width) : values(static_cast<std::size_t>(rowCount))
    {
        for (std::vector<double> & row : values)
        {
            row = RandomValues(random, static_cast<std::size_t>(width));
            row[static_cast<std::size_t>(random.Integer(0, width - 1))] = random.NumberOrSpecial();
        }
    }
    std::vector<double *> Pointers()
    {
        std::vector<double *> rows(values.size());
        std::transform(values.begin(), values.end(), rows.begin(), [](auto & row) { return row.data(); });
        return rows;
    }

    std::vector<std::vector<double>> values;
};

void ExpectSameBits(Plane const & one, Plane const & other)
{
    for (std::size_t i = 0; i < one.values.size(); ++i)
    {
        for (std::size_t j = 0; j < one.values[i].size(); ++j)
        {
            ASSERT_TRUE(test_support::SameBits(one.values[i][j], other.values[i][j]))
                << one.values[i][j] << " and " << other.values[i][j] << " in row " << i << " at " << j;
        }
    }
}

struct RowCase
{
    Transform transform;
    FourLinesKernel FourLines::*kernel;
};

constexpr RowCase k_RowCases[] = {{Transform::Complex, &FourLines::complexRows},
                                  {Transform::Real, &FourLines::realRows},
                                  {Transform::Cosine, &FourLines::cosineRows},
                                  {Transform::Sine, &FourLines::sineRows}};

/// Elements have two values but for the cosine and sine transforms.
struct ColumnCase
{
    Transform transform;
    FourLinesKernel FourLines::*kernel;
    int elementSize;
};

constexpr ColumnCase k_ColumnCases[] = {{Transform::Complex, &FourLines::complexColumns, 2},
                                        {Transform::Cosine, &FourLines::cosineColumns, 1},
                                        {Transform::Sine, &FourLines::sineColumns, 1}};

class LinesOfFour : public testing::Test
{
protected:
    void SetUp() override
    {
        if (m_Lines == nullptr)
        {
            GTEST_SKIP() << "no registers of four values";
        }
    }

    FourLines const * m_Lines = math::detail::FindFourLines();
};

TEST_F(LinesOfFour, Rows_have_the_bits_of_each_alone)
{
    Random random(121);
    for (int n = 4; n <= 4096; n *= 2)
    {
        for (RowCase const & kind : k_RowCases)
        {
            for (int const sign : {1, -1})
            {
                Kernel const kernel{kind.transform, sign};
                SCOPED_TRACE(testing::Message() << kernel << ' ' << n);
                Plane byFours(random, 6, n + 1);
                Plane byOne = byFours;
                Tables tables(kind.transform, n);
                for (std::size_t i = 1; i < 5; ++i)
                {
                    RunKernel(kernel, n, byOne.values[i].data(), tables);
                }
                Tables fresh(kind.transform, n);
                std::vector<double> t(4 * static_cast<std::size_t>(n));
                (m_Lines->*kind.kernel)(Rows(byFours.Pointers().data()), 1, n, sign,
                                        {t.data(), fresh.ip.data(), fresh.w.data()});
                ExpectSameBits(byOne, byFours);
            }
        }
    }
}

template <int ElementSize>
void TransformColumnsByOne(Kernel const & kernel, int n, Rows const & rows, int width, Tables & tables)
{
    std::vector<double> t(4 * static_cast<std::size_t>(n));
    math::detail::TransformColumns<ElementSize>(n / ElementSize, width, rows, t.data(),
                                                [&](double * column) { RunKernel(kernel, n, column, tables); });
}

TEST_F(LinesOfFour, Columns_have_the_bits_of_each_alone)
{
    Random random(122);
    for (int count = 1; count <= 512; count *= 2)
    {
        for (ColumnCase const & kind : k_ColumnCases)
        {
            if (count * kind.elementSize < 2)
            {
                continue;
            }
            for (int const sign : {1, -1})
            {
                Kernel const kernel{kind.transform, sign};
                int const n = count * kind.elementSize;
                int const width = 8 * kind.elementSize;
                SCOPED_TRACE(testing::Message() << kernel << ' ' << count);
                Plane byFours(random, count + 1, width + 1);
                Plane byOne = byFours;
                auto rowsByOne = byOne.Pointers();
                auto rowsByFours = byFours.Pointers();
                Tables tables(kind.transform, n);
                (kind.elementSize == 2 ? TransformColumnsByOne<2>
                                       : TransformColumnsByOne<1>)(kernel, n, Rows(rowsByOne.data()), width, tables);
                Tables fresh(kind.transform, n);
                std::vector<double> t(4 * static_cast<std::size_t>(n));
                for (int const place : {0, width / 2})
                {
                    (m_Lines->*kind.kernel)(Rows(rowsByFours.data()), place, n, sign,
                                            {t.data(), fresh.ip.data(), fresh.w.data()});
                }
                ExpectSameBits(byOne, byFours);
            }
        }
    }
}

TEST_F(LinesOfFour, Columns_go_through_the_planes)
{
    Random random(123);
    Plane first(random, 2, 8);
    Plane second(random, 2, 8);
    Plane const untouched = first;
    double * rowsOfFirst[] = {first.values[0].data(), first.values[1].data()};
    double * rowsOfSecond[] = {second.values[0].data(), second.values[1].data()};
    double ** planes[] = {rowsOfFirst, rowsOfSecond};
    Plane plane = first;
    plane.values = {first.values[1], second.values[1]};
    Tables tables(Transform::Complex, 4);
    std::vector<double> t(16);
    KernelMemory const memory{t.data(), tables.ip.data(), tables.w.data()};
    m_Lines->complexColumns(Rows(plane.Pointers().data()), 0, 4, 1, memory);
    m_Lines->complexColumns(Rows(planes, 1), 0, 4, 1, memory);
    EXPECT_TRUE(std::equal(plane.values[0].begin(), plane.values[0].end(), first.values[1].begin(),
                           [](double a, double b) { return test_support::SameBits(a, b); }));
    EXPECT_TRUE(std::equal(plane.values[1].begin(), plane.values[1].end(), second.values[1].begin(),
                           [](double a, double b) { return test_support::SameBits(a, b); }));
    EXPECT_TRUE(std::equal(untouched.values[0].begin(), untouched.values[0].end(), first.values[0].begin(),
                           [](double a, double b) { return test_support::SameBits(a, b); }));
}

} // namespace
