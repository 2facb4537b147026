/// The products and the inverse of the transformation matrix.

#include "math/transformation_matrix.h"

#include "transform/transformation_matrices.h"

#include <Eigen/LU>

#include <cstring>
#include <optional>

using namespace transformation_matrix_test;

namespace
{

template <typename T>
class TransformationMatrixProduct : public testing::Test
{
protected:
    using Matrix = C3DXfoMatTpl<T>;
    using Rotation = C3DRotMatTpl<T>;

    /// Not symmetric, not affine, with a determinant of -20.
    static constexpr Numbers<T> k_Second = {1, 2, 0, -1, -3, 4, 5, 2, 6, -2, 1, 3, 2, 0, 1, 1};

    /// The sums of products of small integers, which are exact.
    static Numbers<T> Product(Numbers<T> const & a, Numbers<T> const & b)
    {
        Numbers<T> product{};
        for (std::size_t r = 0; r < 4; ++r)
        {
            for (std::size_t c = 0; c < 4; ++c)
            {
                for (std::size_t k = 0; k < 4; ++k)
                {
                    product[4 * r + c] += a[4 * r + k] * b[4 * k + c];
                }
            }
        }
        return product;
    }

    /// The rotation as the upper block of a matrix that is the identity elsewhere.
    static Numbers<T> Widened(Rotation const & r, bool transposed = false)
    {
        Numbers<T> numbers = k_Identity<T>;
        for (int i = 0; i < 9; ++i)
        {
            numbers[static_cast<std::size_t>(4 * (i / 3) + i % 3)] =
                transposed ? r.Get(i % 3, i / 3) : r.Get(i / 3, i % 3);
        }
        return numbers;
    }

    static Numbers<T> WithoutTranslationAndColumn3(Numbers<T> numbers)
    {
        for (std::size_t const i : {3U, 7U, 11U, 12U, 13U, 14U})
        {
            numbers[i] = 0;
        }
        numbers[15] = 1;
        return numbers;
    }

    /// The upper block of one matrix in another.
    static Numbers<T> Combine(Numbers<T> const & block, Numbers<T> rest)
    {
        for (std::size_t r = 0; r < 3; ++r)
        {
            std::copy_n(&block[4 * r], 3, &rest[4 * r]);
        }
        return rest;
    }

    /// A product with a rotation that writes the upper block alone, with the block that it should write.
    struct BlockProduct
    {
        char const * name;
        std::function<Matrix &(Matrix & target, Rotation const & r, Matrix const & m)> run;
        std::function<Numbers<T>(Rotation const & r, Numbers<T> const & m)> block;
    };

    static std::vector<BlockProduct> BlockProducts()
    {
        return {{"Mul(r, m)",
                 [](Matrix & target, Rotation const & r, Matrix const & m) -> Matrix & { return target.Mul(r, m); },
                 [](Rotation const & r, Numbers<T> const & m)
                 { return Product(Widened(r), WithoutTranslationAndColumn3(m)); }},
                {"Mul(m, r)",
                 [](Matrix & target, Rotation const & r, Matrix const & m) -> Matrix & { return target.Mul(m, r); },
                 [](Rotation const & r, Numbers<T> const & m)
                 { return Product(WithoutTranslationAndColumn3(m), Widened(r)); }},
                {"MulTransByReg(r, m)",
                 [](Matrix & target, Rotation const & r, Matrix const & m) -> Matrix &
                 { return target.MulTransByReg(r, m); },
                 [](Rotation const & r, Numbers<T> const & m)
                 { return Product(Widened(r, true), WithoutTranslationAndColumn3(m)); }}};
    }
};
TYPED_TEST_SUITE(TransformationMatrixProduct, Scalars);

// --- Of two transformation matrices ----------------------------------------------------------------------------------

TYPED_TEST(TransformationMatrixProduct, Mul_is_the_plain_product_in_which_the_first_operand_acts_first)
{
    using T = TypeParam;
    auto const a = Make<T>(k_Positive<T>, 0);
    auto const b = Make<T>(this->k_Second, 0);
    Numbers<T> const expected = this->Product(k_Positive<T>, this->k_Second);
    C3DXfoMatTpl<T> target;
    EXPECT_EQ(&target.Mul(a, b), &target);
    EXPECT_TRUE(Holds(target, expected, k_AllAxes));
    auto left = a;
    EXPECT_EQ(&left.Mul(b), &left);
    EXPECT_TRUE(Holds(left, expected, k_AllAxes));
    EXPECT_FALSE(Same(this->Product(this->k_Second, k_Positive<T>), expected));
}

TYPED_TEST(TransformationMatrixProduct, Mul_combines_all_bits_of_the_operands_and_repairs)
{
    using T = TypeParam;
    for (auto const & [name, numbers, isNegative] : DeterminantCases<T>())
    {
        Numbers<T> const expected = this->Product(numbers, k_Identity<T>);
        for (unsigned const aBits : k_SignBits)
        {
            for (unsigned const bBits : k_SignBits)
            {
                SCOPED_TRACE(testing::Message() << name << ", bits " << aBits << " and " << bBits);
                unsigned const bits = Repaired(aBits ^ bBits, isNegative);
                for (unsigned const others : {0xF1U, 0x00U})
                {
                    // The bits that are no one's stay those of the target.
                    auto const a = Make<T>(numbers, (0xF1 - others) | aBits);
                    auto const b = Make<T>(k_Identity<T>, (0xF1 - others) | bBits);
                    auto target = Make<T>(k_Positive<T>, others | 10);
                    target.Mul(a, b);
                    EXPECT_TRUE(Holds(target, expected, others | bits));

                    auto left = Make<T>(numbers, others | aBits);
                    left.Mul(b);
                    EXPECT_TRUE(Holds(left, expected, others | bits));
                }
            }
        }
    }
}

TYPED_TEST(TransformationMatrixProduct, Mul_may_write_into_any_operand)
{
    using T = TypeParam;
    for (unsigned const aBits : k_SignBits)
    {
        for (unsigned const bBits : k_SignBits)
        {
            auto const a = Make<T>(k_Negative<T>, 0xF1 | aBits);
            auto const b = Make<T>(this->k_Second, 0xF1 | bBits);
            auto first = a;
            first.Mul(first, b);
            Numbers<T> const product = this->Product(k_Negative<T>, this->k_Second);
            EXPECT_TRUE(Holds(first, product, 0xF1 | Repaired(aBits ^ bBits, false)));
            auto second = b;
            second.Mul(a, second);
            EXPECT_TRUE(Holds(second, product, 0xF1 | Repaired(aBits ^ bBits, false)));
        }
        auto const square = this->Product(k_Negative<T>, k_Negative<T>);
        auto both = Make<T>(k_Negative<T>, 0xF1 | aBits);
        both.Mul(both, both);
        EXPECT_TRUE(Holds(both, square, 0xF1));
        auto self = Make<T>(k_Negative<T>, 0xF1 | aBits);
        self.Mul(self);
        EXPECT_TRUE(Holds(self, square, 0xF1));
        auto const operand = Make<T>(k_Negative<T>, 0xF1 | aBits);
        C3DXfoMatTpl<T> other;
        other.Mul(operand, operand);
        EXPECT_TRUE(Holds(other, square, 0));
    }
}

// --- With a rotation -------------------------------------------------------------------------------------------------

TYPED_TEST(TransformationMatrixProduct, Block_products_write_the_upper_block_and_the_bits_of_the_matrix)
{
    using T = TypeParam;
    auto const r = NineNumbers<T>();
    for (auto const & product : this->BlockProducts())
    {
        Numbers<T> const expected = this->Combine(product.block(r, k_Positive<T>), this->k_Second);
        for (unsigned const bits : k_SignBits)
        {
            for (unsigned const old : k_SignBits)
            {
                for (unsigned const others : {0xF1U, 0x00U})
                {
                    auto const m = Make<T>(k_Positive<T>, (0xF1 - others) | bits);
                    auto target = Make<T>(this->k_Second, others | old);
                    EXPECT_EQ(&product.run(target, r, m), &target);
                    EXPECT_TRUE(Holds(target, expected, others | bits)) << product.name << ' ' << bits;
                }
            }
        }
    }
}

TYPED_TEST(TransformationMatrixProduct, Block_products_into_a_third_matrix_keep_its_own_translation)
{
    using T = TypeParam;
    auto const r = NineNumbers<T>();
    for (auto const & product : this->BlockProducts())
    {
        auto const m = C3DXfoMatTpl<T>().SetTranslation({1, 2, 3});
        auto target = C3DXfoMatTpl<T>().SetTranslation({7, 8, 9});
        product.run(target, r, m);
        C3DVector3Tpl<T> translation;
        EXPECT_TRUE(Same(NumbersOf(target.GetTranslation(translation)), {T(7), T(8), T(9)})) << product.name;
        EXPECT_EQ(target.Get(3, 3), T(1));
    }
}

TYPED_TEST(TransformationMatrixProduct, Block_products_may_write_into_the_matrix)
{
    using T = TypeParam;
    auto const r = NineNumbers<T>();
    for (auto const & product : this->BlockProducts())
    {
        for (unsigned const bits : k_SignBits)
        {
            auto m = Make<T>(k_Positive<T>, 0xF1 | bits);
            product.run(m, r, m);
            EXPECT_TRUE(Holds(m, this->Combine(product.block(r, k_Positive<T>), k_Positive<T>), 0xF1 | bits))
                << product.name;
        }
    }
}

TYPED_TEST(TransformationMatrixProduct, Block_products_read_nothing_outside_the_upper_block)
{
    using T = TypeParam;
    auto const r = NineNumbers<T>();
    Numbers<T> numbers = k_Positive<T>;
    for (std::size_t const i : {3U, 7U, 11U, 12U, 13U, 14U, 15U})
    {
        numbers[i] = k_Nan<T>;
    }
    for (auto const & product : this->BlockProducts())
    {
        auto target = Make<T>(this->k_Second, 0);
        product.run(target, r, Make<T>(numbers, 0));
        EXPECT_TRUE(Holds(target, this->Combine(product.block(r, k_Positive<T>), this->k_Second), 0)) << product.name;
    }
}

TYPED_TEST(TransformationMatrixProduct, Block_products_do_not_repair_the_bits_where_the_rotation_mirrors)
{
    using T = TypeParam;
    C3DRotMatTpl<T> const mirror(-1, 0, 0, 0, 1, 0, 0, 0, 1);
    for (auto const & product : this->BlockProducts())
    {
        auto const m = Make<T>(k_Identity<T>, 0);
        auto target = Make<T>(k_Identity<T>, 0xFF);
        product.run(target, mirror, m);
        EXPECT_EQ(target.GetMaskInfo(), 0xF1) << product.name;
        EXPECT_EQ(Inside::ValidateSclSignBits(target), 0) << product.name;
    }
}

TYPED_TEST(TransformationMatrixProduct, MulWithRotMat_rotates_all_rows_and_copies_column_3)
{
    using T = TypeParam;
    auto const r = NineNumbers<T>();
    Numbers<T> expected = this->Product(k_Positive<T>, this->Widened(r));
    for (unsigned const bits : k_SignBits)
    {
        for (unsigned const others : {0xF1U, 0x00U})
        {
            auto const m = Make<T>(k_Positive<T>, (0xF1 - others) | bits);
            auto target = Make<T>(this->k_Second, others | 10);
            EXPECT_EQ(&target.MulWithRotMat(m, r), &target);
            EXPECT_TRUE(Holds(target, expected, others | bits));
            auto inPlace = Make<T>(k_Positive<T>, others | bits);
            inPlace.MulWithRotMat(inPlace, r);
            EXPECT_TRUE(Holds(inPlace, expected, others | bits));
        }
    }
    for (std::size_t row = 0; row < 4; ++row)
    {
        EXPECT_EQ(expected[4 * row + 3], k_Positive<T>[4 * row + 3]) << "column 3 is copied";
    }
}

TYPED_TEST(TransformationMatrixProduct, MulWithRotMat_keeps_a_NaN_of_column_3_out_of_the_sums)
{
    using T = TypeParam;
    auto const m = Make<T>(k_WithNan<T>, 0);
    C3DXfoMatTpl<T> target;
    target.MulWithRotMat(m, C3DRotMatTpl<T>());
    EXPECT_TRUE(Holds(target, k_WithNan<T>, 0)) << "and the bits are not repaired";
}

TYPED_TEST(TransformationMatrixProduct, AddRotation_rotates_the_axes_and_not_the_translation)
{
    using T = TypeParam;
    auto const r = NineNumbers<T>();
    auto const block = this->Product(this->WithoutTranslationAndColumn3(k_Positive<T>), this->Widened(r));
    for (unsigned const bits : k_SignBits)
    {
        for (unsigned const others : k_OtherBits)
        {
            auto m = Make<T>(k_Positive<T>, others | bits);
            EXPECT_EQ(&m.AddRotation(r), &m);
            EXPECT_TRUE(Holds(m, this->Combine(block, k_Positive<T>), others | bits));
        }
    }
}

// --- Inverse ---------------------------------------------------------------------------------------------------------

TYPED_TEST(TransformationMatrixProduct, Invert_inverts_an_affine_matrix)
{
    using T = TypeParam;
    auto const m = Make<T>({0, 2, 0, 0, 0, 0, 4, 0, T(0.5), 0, 0, 0, 3, -6, 8, 1}, 0);
    C3DXfoMatTpl<T> inverse;
    EXPECT_EQ(inverse.Invert(m), 1);
    EXPECT_TRUE(Holds(inverse, {0, 0, 2, 0, T(0.5), 0, 0, 0, 0, T(0.25), 0, 0, 3, -2, -6, 1}, 0));
    static_assert(std::is_same_v<decltype(inverse.Invert(m)), int> && std::is_same_v<decltype(inverse.Invert()), int>);
}

TYPED_TEST(TransformationMatrixProduct, Invert_neither_reads_nor_keeps_column_3)
{
    using T = TypeParam;
    Numbers<T> const expected = {T(0.5), 0, 0, 0, 0, T(0.25), 0, 0, 0, 0, T(0.125), 0, T(-0.5), T(-0.5), T(-0.375), 1};
    for (T const garbage : {T(0), T(5), k_Nan<T>, k_Infinity<T>})
    {
        for (T const last : {T(1), T(0), T(-7), k_Nan<T>})
        {
            auto const m = Make<T>({2, 0, 0, garbage, 0, 4, 0, garbage, 0, 0, 8, garbage, 1, 2, 3, last}, 0);
            auto inverse = Make<T>(k_Positive<T>, 0xF1);
            EXPECT_EQ(inverse.Invert(m), 1);
            EXPECT_TRUE(Holds(inverse, expected, 0xF1)) << garbage << ' ' << last;
            auto inPlace = m;
            inPlace.SetMaskInfo(0xF1);
            EXPECT_EQ(inPlace.Invert(), 1);
            EXPECT_TRUE(Holds(inPlace, expected, 0xF1)) << garbage << ' ' << last;
        }
    }
}

TYPED_TEST(TransformationMatrixProduct, Invert_takes_the_bits_of_the_target_and_repairs_them)
{
    using T = TypeParam;
    for (T const sign : {T(1), T(-1)})
    {
        Numbers<T> const numbers = {2 * sign, 0, 0, 0, 0, 4, 0, 0, 0, 0, 8, 0, 0, 0, 0, 1};
        for (unsigned const mBits : k_SignBits)
        {
            auto const m = Make<T>(numbers, 0xF1 | mBits);
            for (unsigned const bits : k_SignBits)
            {
                for (unsigned const others : k_OtherBits)
                {
                    auto target = Make<T>(k_Positive<T>, others | bits);
                    ASSERT_EQ(target.Invert(m), 1);
                    EXPECT_EQ(target.GetMaskInfo(), others | Repaired(bits, sign < 0)) << mBits << ' ' << bits;
                }
            }
        }
    }
}

TYPED_TEST(TransformationMatrixProduct, Invert_in_place_keeps_the_matrix_own_bits)
{
    using T = TypeParam;
    auto const mirrored = Make<T>({2, 0, 0, 0, 0, -4, 0, 0, 0, 0, 8, 0, 1, 2, 3, 1}, 0xF1 | k_Y);
    Numbers<T> const expected = {T(0.5), 0, 0, 0, 0, T(-0.25), 0, 0, 0, 0, T(0.125), 0, T(-0.5), T(0.5), T(-0.375), 1};
    auto a = mirrored;
    EXPECT_EQ(a.Invert(), 1);
    EXPECT_TRUE(Holds(a, expected, 0xF1 | k_Y));
    auto b = mirrored;
    EXPECT_EQ(b.Invert(b), 1);
    EXPECT_TRUE(Holds(b, expected, 0xF1 | k_Y));
    C3DXfoMatTpl<T> fresh;
    EXPECT_EQ(fresh.Invert(mirrored), 1);
    EXPECT_TRUE(Holds(fresh, expected, k_AllAxes)) << "another target does not learn which axis is negative";
}

TYPED_TEST(TransformationMatrixProduct, Invert_of_a_singular_block_leaves_the_target)
{
    using T = TypeParam;
    Numbers<T> nan = k_Positive<T>;
    nan[5] = k_Nan<T>;
    // The second has a determinant that is not 0: the upper block alone decides.
    std::vector<Numbers<T>> const singular = {
        k_Singular<T>, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0}, Numbers<T>{}, nan};
    for (Numbers<T> const & numbers : singular)
    {
        for (unsigned const bits : k_SignBits)
        {
            auto const m = Make<T>(numbers, 0);
            auto target = Make<T>(k_Negative<T>, 0xF1 | bits);
            EXPECT_EQ(target.Invert(m), 0);
            EXPECT_TRUE(Holds(target, k_Negative<T>, 0xF1 | bits)) << "no repair either";
            auto inPlace = Make<T>(numbers, 0xF1 | bits);
            EXPECT_EQ(inPlace.Invert(), 0);
            EXPECT_TRUE(Holds(inPlace, numbers, 0xF1 | bits));
        }
    }
}

TYPED_TEST(TransformationMatrixProduct, Invert_tests_the_block_relative_to_its_size)
{
    using T = TypeParam;
    T const small = std::is_same_v<T, double> ? T(1e-20) : T(1e-10);
    auto const m = Make<T>({small, 0, 0, 0, 0, small, 0, 0, 0, 0, small, 0, 0, 0, 0, 1}, 0);
    C3DXfoMatTpl<T> inverse;
    ASSERT_EQ(inverse.Invert(m), 1) << "where the inverse of a general matrix misses a pivot";
    EXPECT_NEAR(inverse.Get(1, 1) * small, 1.0, 1e-6);
    C3DMatrix44Tpl<T> general;
    EXPECT_EQ(general.Invert(m.GetMatrix44()), 0);
    // Two rows that are parallel but for so much, on each side of the relative tolerance.
    T const tolerance = std::is_same_v<T, double> ? T(1e-12) : T(1e-6);
    auto const almost = [&](T factor) {
        return Make<T>({1, 1, 0, 0, 1, 1 + factor * tolerance, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, 0);
    };
    EXPECT_EQ(inverse.Invert(almost(4)), 1);
    EXPECT_EQ(inverse.Invert(almost(1)), 0);
}

TYPED_TEST(TransformationMatrixProduct, Invert_of_the_identity_takes_no_shortcut)
{
    using T = TypeParam;
    for (unsigned const bits : k_SignBits)
    {
        auto target = Make<T>(k_Negative<T>, 0xF1 | bits);
        EXPECT_EQ(target.Invert(Make<T>(k_Identity<T>, k_X)), 1);
        EXPECT_TRUE(Holds(target, k_Identity<T>, 0xF1 | Repaired(bits, false)));
    }
}

TYPED_TEST(TransformationMatrixProduct, Invert_has_the_bits_of_the_inverse_of_the_block)
{
    using T = TypeParam;
    Random random(43);
    for (int i = 0; i < 300; ++i)
    {
        auto m = RandomMatrix<C3DXfoMatTpl<T>>(random, T(2));
        if (i % 2 == 0)
        {
            // The transpose would be the inverse too, but with other last bits.
            m.Set(RandomRotationMatrix<T>(random)).SetTranslation({1, 2, 3});
        }
        C3DMatrix33Tpl<T> block(3, 3, m);
        C3DVector3Tpl<T> translation;
        translation.Negate(m.GetTranslation(translation));
        ASSERT_EQ(block.Invert(), 1);
        translation.Mul(block);
        C3DXfoMatTpl<T> expected;
        expected.Set(block).SetTranslation(translation);
        C3DXfoMatTpl<T> inverse;
        ASSERT_EQ(inverse.Invert(m), 1);
        EXPECT_TRUE(SameBits(inverse, expected));
    }
}

TYPED_TEST(TransformationMatrixProduct, Invert_of_a_NaN_translation_counts_as_mirrored)
{
    using T = TypeParam;
    auto const m = Make<T>({2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 8, 0, k_Nan<T>, 2, 3, 1}, 0);
    auto inverse = Make<T>(k_Identity<T>, 0xF1 | k_X | k_Y);
    EXPECT_EQ(inverse.Invert(m), 1);
    EXPECT_EQ(inverse.Get(0, 0), T(0.5));
    EXPECT_TRUE(std::isnan(inverse.Get(3, 0)));
    EXPECT_EQ(inverse.GetMaskInfo(), 0xF1 | k_Z) << "two negative axes are the complement of one";
}

TYPED_TEST(TransformationMatrixProduct, Random_inverses_agree_with_Eigen)
{
    using T = TypeParam;
    Random random(41);
    double const limit = std::is_same_v<T, double> ? 1e-12 : 1e-4;
    for (int i = 0; i < 300; ++i)
    {
        auto m = RandomMatrix<C3DXfoMatTpl<T>>(random, T(2));
        m.SetCol(3, 0, 0, 0, 1);
        auto const judge = ToEigen(m);
        if (std::abs(judge.determinant()) < 0.1)
        {
            continue;
        }
        C3DXfoMatTpl<T> inverse;
        ASSERT_EQ(inverse.Invert(m), 1);
        EXPECT_TRUE(AreClose(ToEigen(inverse), judge.inverse(), limit * judge.inverse().norm()));
        EXPECT_EQ(inverse.GetSclSignBits(), judge.determinant() < 0 ? k_AllAxes : 0);
        C3DXfoMatTpl<T> product;
        EXPECT_TRUE(AreClose(ToEigen(product.Mul(m, inverse)), Eigen::Matrix4d::Identity(), 100 * limit));
        EXPECT_EQ(product.GetSclSignBits(), 0) << "the product of two with the same bits";
    }
}

TYPED_TEST(TransformationMatrixProduct, Random_products_are_associative_in_elements_and_bits)
{
    using T = TypeParam;
    Random random(42);
    double const limit = std::is_same_v<T, double> ? 1e-12 : 1e-4;
    for (int i = 0; i < 300; ++i)
    {
        std::optional<C3DXfoMatTpl<T>> factors[3];
        double determinant = 1;
        unsigned bits = 0;
        for (auto & factor : factors)
        {
            C3DVector3Tpl<T> const scaling(random.OverDecades<T>(-0.3, 0.3), random.OverDecades<T>(-0.3, 0.3),
                                           random.OverDecades<T>(-0.3, 0.3));
            factor.emplace().Set(RandomRotationMatrix<T>(random)).AddScaling(scaling, 1);
            bits ^= factor->GetSclSignBits();
            determinant *= static_cast<double>(scaling.X * scaling.Y * scaling.Z);
        }
        C3DXfoMatTpl<T> left;
        left.Mul(*factors[0], *factors[1]).Mul(*factors[2]);
        C3DXfoMatTpl<T> right;
        right.Mul(*factors[0], C3DXfoMatTpl<T>(*factors[1]).Mul(*factors[2]));
        EXPECT_TRUE(AreClose(ToEigen(left), ToEigen(right), limit));
        EXPECT_EQ(left.GetSclSignBits(), right.GetSclSignBits());
        EXPECT_EQ(left.GetSclSignBits(), bits) << "consistent factors give a consistent product";
        EXPECT_EQ(CountOf(bits) % 2 == 1, determinant < 0);
    }
}

} // namespace
