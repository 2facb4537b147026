/// The transformation matrix: construction, setters and readers.

#include "math/transformation_matrix.h"

#include "support/streams.h"
#include "transform/transformation_matrices.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <type_traits>

using namespace transformation_matrix_test;

namespace
{

template <typename T>
class TransformationMatrix : public testing::Test
{
protected:
    using Matrix = C3DXfoMatTpl<T>;
    using Vector = C3DVector3Tpl<T>;

    /// What a setter does to bits that were these before.
    using BitsRule = std::function<unsigned(unsigned)>;

    static inline BitsRule const Kept = [](unsigned bits) { return bits; };
    static BitsRule Always(unsigned bits)
    {
        return [bits](unsigned) { return bits; };
    }

    struct Setter
    {
        char const * name;
        std::function<Matrix &(Matrix &)> run;
        Numbers<T> expected;
        BitsRule bits;
    };

    /// Every setter acts on a matrix with every triple of bits, and with the other bits of the byte set or not.
    static void Expect(std::vector<Setter> const & setters, Numbers<T> const & before = k_Positive<T>)
    {
        for (Setter const & setter : setters)
        {
            for (unsigned const bits : k_SignBits)
            {
                for (unsigned const others : k_OtherBits)
                {
                    Matrix m = Make<T>(before, others | bits);
                    EXPECT_EQ(&setter.run(m), &m) << setter.name;
                    EXPECT_TRUE(Holds(m, setter.expected, others | setter.bits(bits)))
                        << setter.name << ", bits " << bits << ", others " << others;
                }
            }
        }
    }

    static Numbers<T> With(Numbers<T> numbers, std::initializer_list<std::pair<std::size_t, T>> changes)
    {
        for (auto const & [index, value] : changes)
        {
            numbers[index] = value;
        }
        return numbers;
    }
};
TYPED_TEST_SUITE(TransformationMatrix, Scalars);

// --- Layout and construction -----------------------------------------------------------------------------------------

TYPED_TEST(TransformationMatrix, Is_sixteen_elements_and_the_byte_behind_them)
{
    using X = C3DXfoMatTpl<TypeParam>;
    static_assert(sizeof(X) == 17 * sizeof(TypeParam));
    static_assert(std::is_base_of_v<C3DMatrix44Tpl<TypeParam>, X>);
    static_assert(std::is_trivially_copyable_v<X> && std::is_standard_layout_v<X>);
    X const m = Make<TypeParam>(k_Positive<TypeParam>, 0xB7);
    unsigned char bytes[sizeof(X)];
    std::memcpy(bytes, &m, sizeof m);
    EXPECT_EQ(std::memcmp(bytes, k_Positive<TypeParam>.data(), 16 * sizeof(TypeParam)), 0);
    EXPECT_EQ(bytes[16 * sizeof(TypeParam)], 0xB7);
    EXPECT_EQ(m.GetDynamicMemSize(), 0U);
    EXPECT_TRUE((std::is_same_v<decltype(m.GetDynamicMemSize()), std::uint64_t>));
}

TYPED_TEST(TransformationMatrix, Default_constructor_gives_the_identity_without_a_negative_axis)
{
    ConstructedOver<C3DXfoMatTpl<TypeParam>> made(0xFF);
    EXPECT_TRUE(Same(NumbersOf(made.Get()), k_Identity<TypeParam>));
    EXPECT_EQ(made.Get().GetSclSignBits(), 0);
}

TYPED_TEST(TransformationMatrix, Constructor_without_initialisation_writes_nothing)
{
    using X = C3DXfoMatTpl<TypeParam>;
    ConstructedOver<X> made(0xAB, C3DInitRequest_DoNotInitialize{});
    for (std::size_t i = 0; i < sizeof(X); ++i)
    {
        EXPECT_EQ(made.GetByte(i), 0xAB) << i;
    }
}

TYPED_TEST(TransformationMatrix, Constructor_of_scalars_takes_rows_and_recomputes)
{
    using X = C3DXfoMatTpl<TypeParam>;
    for (auto const & [name, n, isNegative] : DeterminantCases<TypeParam>())
    {
        for (unsigned char const memory : {std::uint8_t{0x00}, std::uint8_t{0xFF}})
        {
            ConstructedOver<X> made(memory, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], n[8], n[9], n[10], n[11],
                                    n[12], n[13], n[14], n[15]);
            EXPECT_TRUE(Same(NumbersOf(made.Get()), n)) << name;
            EXPECT_EQ(made.Get().GetSclSignBits(), isNegative ? k_AllAxes : 0) << name;
        }
    }
}

TYPED_TEST(TransformationMatrix, Constructor_of_vectors_takes_rows_or_columns_and_recomputes)
{
    using X = C3DXfoMatTpl<TypeParam>;
    using V4 = C3DVector4Tpl<TypeParam>;
    for (auto const & [name, n, isNegative] : DeterminantCases<TypeParam>())
    {
        V4 const a(n[0], n[1], n[2], n[3]);
        V4 const b(n[4], n[5], n[6], n[7]);
        V4 const c(n[8], n[9], n[10], n[11]);
        V4 const d(n[12], n[13], n[14], n[15]);
        for (unsigned char const memory : {std::uint8_t{0x00}, std::uint8_t{0xFF}})
        {
            for (int const rows : {1, 2, -1})
            {
                ConstructedOver<X> made(memory, a, b, c, d, rows);
                EXPECT_TRUE(Same(NumbersOf(made.Get()), n)) << name;
                EXPECT_EQ(made.Get().GetSclSignBits(), isNegative ? k_AllAxes : 0) << name;
            }
            ConstructedOver<X> made(memory, a, b, c, d, 0);
            EXPECT_TRUE(
                Same(NumbersOf(made.Get()), Numbers<TypeParam>{n[0], n[4], n[8], n[12], n[1], n[5], n[9], n[13], n[2],
                                                               n[6], n[10], n[14], n[3], n[7], n[11], n[15]}))
                << name;
            EXPECT_EQ(made.Get().GetSclSignBits(), isNegative ? k_AllAxes : 0) << name;
        }
    }
}

TYPED_TEST(TransformationMatrix, Copies_take_the_whole_byte)
{
    using X = C3DXfoMatTpl<TypeParam>;
    for (unsigned byte = 0; byte < 256; ++byte)
    {
        X const source = Make<TypeParam>(k_Negative<TypeParam>, byte);
        EXPECT_TRUE(Holds(X(source), k_Negative<TypeParam>, byte));
        X target = Make<TypeParam>(k_Positive<TypeParam>, ~byte & 0xFF);
        EXPECT_EQ(&(target = source), &target);
        EXPECT_TRUE(Holds(target, k_Negative<TypeParam>, byte));
    }
}

// --- Setters ---------------------------------------------------------------------------------------------------------

TYPED_TEST(TransformationMatrix, SetIdentity_clears_the_bits)
{
    using X = C3DXfoMatTpl<TypeParam>;
    this->Expect(
        {{"SetIdentity", [](X & m) -> X & { return m.SetIdentity(); }, k_Identity<TypeParam>, this->Always(0)}},
        k_Negative<TypeParam>);
}

TYPED_TEST(TransformationMatrix, Set_of_an_upper_block_wipes_the_rest_and_recomputes)
{
    using T = TypeParam;
    using X = C3DXfoMatTpl<T>;
    C3DMatrix33Tpl<T> const positive(2, -1, 3, 7, 11, -2, 1, 6, 8);
    C3DMatrix33Tpl<T> const negative(-2, 1, -3, 7, 11, -2, 1, 6, 8);
    C3DMatrix33Tpl<T> const zero;
    C3DMatrix33Tpl<T> const nan(2, -1, 3, 7, k_Nan<T>, -2, 1, 6, 8);
    this->Expect({{"positive",
                   [=](X & m) -> X & { return m.Set(positive); },
                   {2, -1, 3, 0, 7, 11, -2, 0, 1, 6, 8, 0, 0, 0, 0, 1},
                   this->Always(0)},
                  {"negative",
                   [=](X & m) -> X & { return m.Set(negative); },
                   {-2, 1, -3, 0, 7, 11, -2, 0, 1, 6, 8, 0, 0, 0, 0, 1},
                   this->Always(k_AllAxes)},
                  {"zero",
                   [=](X & m) -> X & { return m.Set(zero); },
                   {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
                   this->Always(0)},
                  {"a NaN",
                   [=](X & m) -> X & { return m.Set(nan); },
                   {2, -1, 3, 0, 7, k_Nan<T>, -2, 0, 1, 6, 8, 0, 0, 0, 0, 1},
                   this->Always(k_AllAxes)}});
}

TYPED_TEST(TransformationMatrix, Set_of_a_rotation_wipes_the_rest_and_recomputes)
{
    using T = TypeParam;
    using X = C3DXfoMatTpl<T>;
    C3DRotMatTpl<T> const positive(2, -1, 3, 7, 11, -2, 1, 6, 8);
    C3DRotMatTpl<T> const negative(-2, 1, -3, 7, 11, -2, 1, 6, 8);
    this->Expect({{"Set, positive",
                   [=](X & m) -> X & { return m.Set(positive); },
                   {2, -1, 3, 0, 7, 11, -2, 0, 1, 6, 8, 0, 0, 0, 0, 1},
                   this->Always(0)},
                  {"Set, negative",
                   [=](X & m) -> X & { return m.Set(negative); },
                   {-2, 1, -3, 0, 7, 11, -2, 0, 1, 6, 8, 0, 0, 0, 0, 1},
                   this->Always(k_AllAxes)},
                  {"SetWithTranspose, positive",
                   [=](X & m) -> X & { return m.SetWithTranspose(positive); },
                   {2, 7, 1, 0, -1, 11, 6, 0, 3, -2, 8, 0, 0, 0, 0, 1},
                   this->Always(0)},
                  {"SetWithTranspose, negative",
                   [=](X & m) -> X & { return m.SetWithTranspose(negative); },
                   {-2, 7, 1, 0, 1, 11, 6, 0, -3, -2, 8, 0, 0, 0, 0, 1},
                   this->Always(k_AllAxes)}});
}

TYPED_TEST(TransformationMatrix, Set_of_sixteen_elements_recomputes)
{
    using T = TypeParam;
    using X = C3DXfoMatTpl<T>;
    for (auto const & [name, numbers, isNegative] : DeterminantCases<T>())
    {
        SCOPED_TRACE(name);
        // The bits of the source do not come along, those of another transformation matrix neither.
        X const matrix = Make<T>(numbers, 0xF1 | k_Y);
        T rows[4][4];
        std::memcpy(rows, numbers.data(), sizeof rows);
        T const(*const constant)[4] = rows;
        unsigned const bits = isNegative ? k_AllAxes : 0;
        this->Expect(
            {{"a matrix", [&](X & m) -> X & { return m.Set(matrix.GetMatrix44()); }, numbers, this->Always(bits)},
             {"a transformation matrix", [&](X & m) -> X & { return m.Set(matrix); }, numbers, this->Always(bits)},
             {"an array", [&](X & m) -> X & { return m.Set(rows); }, numbers, this->Always(bits)},
             {"a constant array", [&](X & m) -> X & { return m.Set(constant); }, numbers, this->Always(bits)}});
    }
}

TYPED_TEST(TransformationMatrix, Set_of_itself_recomputes)
{
    using T = TypeParam;
    auto m = Make<T>(k_Negative<T>, 0xF1 | k_X);
    m.Set(m.GetMatrix44());
    EXPECT_TRUE(Holds(m, k_Negative<T>, 0xF1 | k_AllAxes));
}

TYPED_TEST(TransformationMatrix, Set_of_a_block_array_keeps_row_and_column_3_and_recomputes)
{
    using T = TypeParam;
    using X = C3DXfoMatTpl<T>;
    T positive[3][3] = {{1, 0, 0}, {0, 2, 0}, {0, 0, 3}};
    T negative[3][3] = {{1, 0, 0}, {0, -2, 0}, {0, 0, 3}};
    T const constant[3][3] = {{1, 0, 0}, {0, -2, 0}, {0, 0, 3}};
    Numbers<T> const before = {2, -1, 3, 0, 7, 11, -2, 0, 1, 6, 8, 0, 9, 10, -4, 12};
    this->Expect({{"positive",
                   [&](X & m) -> X & { return m.Set(positive); },
                   {1, 0, 0, 0, 0, 2, 0, 0, 0, 0, 3, 0, 9, 10, -4, 12},
                   this->Always(0)},
                  {"negative",
                   [&](X & m) -> X & { return m.Set(negative); },
                   {1, 0, 0, 0, 0, -2, 0, 0, 0, 0, 3, 0, 9, 10, -4, 12},
                   this->Always(k_AllAxes)},
                  {"constant",
                   [&](X & m) -> X & { return m.Set(constant); },
                   {1, 0, 0, 0, 0, -2, 0, 0, 0, 0, 3, 0, 9, 10, -4, 12},
                   this->Always(k_AllAxes)}},
                 before);
    // Column 3 stays, and with it its part in the determinant, here 6 - 6 (5 9) and negative.
    Numbers<T> const sheared = {2, -1, 3, 5, 7, 11, -2, 0, 1, 6, 8, 0, 9, 10, -4, 1};
    this->Expect({{"with column 3",
                   [&](X & m) -> X & { return m.Set(positive); },
                   {1, 0, 0, 5, 0, 2, 0, 0, 0, 0, 3, 0, 9, 10, -4, 1},
                   this->Always(k_AllAxes)}},
                 sheared);
}

TYPED_TEST(TransformationMatrix, Set_of_an_element_leaves_the_bits)
{
    using T = TypeParam;
    using X = C3DXfoMatTpl<T>;
    this->Expect({{"a sign turned", [](X & m) -> X & { return m.Set(0, 1, T(1000)); },
                   this->With(k_Positive<T>, {{1, T(1000)}}), this->Kept},
                  {"below the diagonal", [](X & m) -> X & { return m.Set(2, 0, k_Nan<T>); },
                   this->With(k_Positive<T>, {{8, k_Nan<T>}}), this->Kept},
                  {"the last", [](X & m) -> X & { return m.Set(3, 3, T(-12)); },
                   this->With(k_Positive<T>, {{15, T(-12)}}), this->Kept}});
}

TYPED_TEST(TransformationMatrix, SetRow_recomputes_for_the_axes_and_leaves_the_bits_for_the_translation)
{
    using T = TypeParam;
    using X = C3DXfoMatTpl<T>;
    using V4 = C3DVector4Tpl<T>;
    Numbers<T> const & p = k_Positive<T>;
    for (int r = 0; r < 4; ++r)
    {
        auto const row = static_cast<std::size_t>(4 * r);
        V4 const old(p[row], p[row + 1], p[row + 2], p[row + 3]);
        for (T const factor : {T(2), T(-2), T(0), k_Nan<T>})
        {
            SCOPED_TRACE(testing::Message() << "row " << r << ", factor " << factor);
            V4 const v(factor * old.X, factor * old.Y, factor * old.Z, factor * old.W);
            Numbers<T> const expected = this->With(p, {{row, v.X}, {row + 1, v.Y}, {row + 2, v.Z}, {row + 3, v.W}});
            std::function<unsigned(unsigned)> const bits =
                r == 3 ? this->Kept : this->Always(factor >= 0 ? 0 : k_AllAxes);
            this->Expect({{"a vector", [&](X & m) -> X & { return m.SetRow(r, v); }, expected, bits},
                          {"scalars", [&](X & m) -> X & { return m.SetRow(r, v.X, v.Y, v.Z, v.W); }, expected, bits}});
        }
    }
}

TYPED_TEST(TransformationMatrix, SetCol_clears_the_bits_whatever_the_determinant)
{
    using T = TypeParam;
    using X = C3DXfoMatTpl<T>;
    using V4 = C3DVector4Tpl<T>;
    Numbers<T> const & p = k_Positive<T>;
    for (int c = 0; c < 4; ++c)
    {
        auto const column = static_cast<std::size_t>(c);
        V4 const old(p[column], p[column + 4], p[column + 8], p[column + 12]);
        for (T const factor : {T(2), T(-2), T(0), k_Nan<T>})
        {
            SCOPED_TRACE(testing::Message() << "column " << c << ", factor " << factor);
            V4 const v(factor * old.X, factor * old.Y, factor * old.Z, factor * old.W);
            Numbers<T> const expected =
                this->With(p, {{column, v.X}, {column + 4, v.Y}, {column + 8, v.Z}, {column + 12, v.W}});
            this->Expect({{"a vector", [&](X & m) -> X & { return m.SetCol(c, v); }, expected, this->Always(0)},
                          {"scalars", [&](X & m) -> X & { return m.SetCol(c, v.X, v.Y, v.Z, v.W); }, expected,
                           this->Always(0)}});
        }
    }
}

TYPED_TEST(TransformationMatrix, SetCol_of_a_mirrored_matrix_leaves_no_bit_and_readers_see_all_axes_negative)
{
    using T = TypeParam;
    C3DXfoMatTpl<T> m(-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    ASSERT_EQ(m.GetSclSignBits(), k_AllAxes);
    m.SetCol(3, 0, 0, 0, 1);
    EXPECT_EQ(m.GetSclSignBits(), 0);
    EXPECT_EQ(Inside::ValidateSclSignBits(m), 0);
    for (int axis = 0; axis < 3; ++axis)
    {
        EXPECT_EQ(Inside::IsSclAxisNegative(m, axis), 1) << axis;
    }
    EXPECT_EQ(m.GetSclSignBits(), 0);
}

TYPED_TEST(TransformationMatrix, SetTranslation_and_AddTranslation_keep_the_last_element_and_the_bits)
{
    using T = TypeParam;
    using X = C3DXfoMatTpl<T>;
    C3DVector3Tpl<T> const t(20, -30, 40);
    for (Numbers<T> const & before : {k_Positive<T>, k_Negative<T>})
    {
        this->Expect({{"SetTranslation", [&](X & m) -> X & { return m.SetTranslation(t); },
                       this->With(before, {{12, T(20)}, {13, T(-30)}, {14, T(40)}}), this->Kept},
                      {"AddTranslation", [&](X & m) -> X & { return m.AddTranslation(t); },
                       this->With(before, {{12, T(29)}, {13, T(-20)}, {14, T(36)}}), this->Kept}},
                     before);
    }
}

TYPED_TEST(TransformationMatrix, Transpose_leaves_the_bits)
{
    using T = TypeParam;
    using X = C3DXfoMatTpl<T>;
    this->Expect({{"in place",
                   [](X & m) -> X & { return m.Transpose(); },
                   {2, 7, 1, 9, -1, 11, 6, 10, 3, -2, 8, -4, 5, 4, -3, 12},
                   this->Kept},
                  {"of itself",
                   [](X & m) -> X & { return m.Transpose(m); },
                   {2, 7, 1, 9, -1, 11, 6, 10, 3, -2, 8, -4, 5, 4, -3, 12},
                   this->Kept}});
}

TYPED_TEST(TransformationMatrix, Transpose_of_another_copies_its_three_bits)
{
    using T = TypeParam;
    using X = C3DXfoMatTpl<T>;
    for (unsigned const bits : k_SignBits)
    {
        for (unsigned const others : {0x00U, 0xF1U})
        {
            X const source = Make<T>(k_Positive<T>, others | bits);
            this->Expect({{"of another",
                           [&](X & m) -> X & { return m.Transpose(source); },
                           {2, 7, 1, 9, -1, 11, 6, 10, 3, -2, 8, -4, 5, 4, -3, 12},
                           this->Always(bits)}},
                         k_Negative<T>);
        }
    }
}

// --- Readers ---------------------------------------------------------------------------------------------------------

TYPED_TEST(TransformationMatrix, Readers_of_the_base_ignore_the_bits)
{
    using T = TypeParam;
    C3DXfoMatTpl<T> const clean = Make<T>(k_Positive<T>, 0);
    std::ostringstream text;
    clean.GetMatrix44().Dump(L"label", text);
    for (unsigned byte = 0; byte < 256; ++byte)
    {
        auto m = Make<T>(k_Positive<T>, byte);
        EXPECT_EQ(m.GetDet(), T(1133));
        EXPECT_EQ(m.GetDet33(), T(351));
        EXPECT_EQ(m.GetTrace(), T(33));
        EXPECT_EQ(m.Get(1, 2), T(-2));
        EXPECT_EQ(m.Get(2, 1), T(6));
        EXPECT_EQ(m.GetArray()[6], T(-2));
        EXPECT_EQ(std::as_const(m).GetArray()[9], T(6));
        EXPECT_EQ(&m.GetMatrix44(), static_cast<C3DMatrix44Tpl<T> const *>(&m));
        EXPECT_TRUE(m == clean);
        EXPECT_FALSE(m != clean);
        EXPECT_FALSE(m == Make<T>(k_Negative<T>, byte));
        EXPECT_TRUE(m != Make<T>(k_Negative<T>, byte));
        EXPECT_FALSE(m.IsIdentity(T(0.5)));
        EXPECT_FALSE(m.IsExactlyIdentity());
        EXPECT_EQ(m.IsNull(T(11.5)), 0);
        EXPECT_EQ(m.IsNull(T(12.5)), 1);
        std::ostringstream dump;
        m.Dump(L"label", dump);
        EXPECT_EQ(dump.str(), text.str());

        auto const identity = Make<T>(k_Identity<T>, byte);
        EXPECT_TRUE(identity.IsIdentity(0));
        EXPECT_TRUE(identity.IsIdentity(T(0.5)));
        EXPECT_TRUE(identity.IsExactlyIdentity());
    }
}

TYPED_TEST(TransformationMatrix, GetTranslation_reads_row_3)
{
    using T = TypeParam;
    C3DVector3Tpl<T> t(1, 2, 3);
    auto const m = Make<T>(k_Positive<T>, 0xFF);
    EXPECT_EQ(&m.GetTranslation(t), &t);
    EXPECT_TRUE(Same(NumbersOf(t), {T(9), T(10), T(-4)}));
}

TYPED_TEST(TransformationMatrix, GetQNMatrix_writes_the_rows_as_float)
{
    using T = TypeParam;
    auto m = Make<T>(k_Positive<T>, 0xFF);
    T const tenth = T(1) / T(10);
    m.Set(0, 3, tenth);
    m.Set(3, 0, T(1) / T(3));
    m.Set(2, 1, k_Nan<T>);
    m.Set(1, 2, -k_Infinity<T>);
    float out[4][4] = {};
    m.GetQNMatrix(out);
    for (int i = 0; i < 16; ++i)
    {
        auto const expected = static_cast<float>(m.Get(i / 4, i % 4));
        EXPECT_TRUE(out[i / 4][i % 4] == expected || i == 9) << i;
    }
    EXPECT_TRUE(std::isnan(out[2][1]));
    EXPECT_EQ(out[0][3], 0.1F);
    EXPECT_EQ(out[3][0], 1.0F / 3.0F);
}

TEST(TransformationMatrixOfDoubles, GetQNMatrix_narrows)
{
    C3DXfoMatTpl<double> m;
    m.Set(3, 0, 16777217.0).Set(3, 1, 1e-60).Set(3, 2, -0.0);
    float out[4][4];
    m.GetQNMatrix(out);
    EXPECT_EQ(out[3][0], 16777216.0F);
    EXPECT_EQ(out[3][1], 0.0F);
    EXPECT_TRUE(std::signbit(out[3][2]));
}

TYPED_TEST(TransformationMatrix, AreAlmostEqual_compares_the_elements_and_the_three_bits)
{
    using T = TypeParam;
    auto const same = [](C3DXfoMatTpl<T> const & a, C3DXfoMatTpl<T> const & b, T epsilon)
    {
        static_assert(std::is_same_v<decltype(AreAlmostEqual(a, b, epsilon)), int>);
        return AreAlmostEqual(a, b, epsilon);
    };
    for (unsigned const first : k_SignBits)
    {
        for (unsigned const second : k_SignBits)
        {
            for (unsigned const others : k_OtherBits)
            {
                // The five other bits do not count.
                auto const a = Make<T>(k_Positive<T>, 0xF1 | first);
                auto const b = Make<T>(k_Positive<T>, others | second);
                EXPECT_EQ(same(a, b, T(0.5)), first == second ? 1 : 0) << first << ' ' << second;
                auto const far = Make<T>(k_Negative<T>, others | second);
                EXPECT_EQ(same(a, far, T(0.5)), 0) << first << ' ' << second;
            }
        }
    }
}

TYPED_TEST(TransformationMatrix, AreAlmostEqual_rejects_a_difference_of_the_tolerance_in_every_element)
{
    using T = TypeParam;
    auto const a = Make<T>(k_Positive<T>, 0);
    EXPECT_EQ(AreAlmostEqual(a, a, T(0)), 0);
    for (int i = 0; i < 16; ++i)
    {
        auto b = a;
        b.Set(i / 4, i % 4, a.Get(i / 4, i % 4) + T(0.25));
        EXPECT_EQ(AreAlmostEqual(a, b, T(0.25)), 0) << i;
        EXPECT_EQ(AreAlmostEqual(b, a, T(0.25)), 0) << i;
        EXPECT_EQ(AreAlmostEqual(a, b, T(0.26)), 1) << i;
        b.Set(i / 4, i % 4, k_Nan<T>);
        EXPECT_EQ(AreAlmostEqual(a, b, T(0.25)), 1) << i;
    }
    // The standard tolerance, where none is given.
    auto b = a;
    b.Set(3, 2, a.Get(3, 2) + 100 * std::numeric_limits<T>::epsilon());
    EXPECT_EQ(AreAlmostEqual(a, b), (std::is_same_v<T, double> ? 1 : 0));
    EXPECT_EQ(AreAlmostEqual(a, a), 1);
}

// --- The operations of the base --------------------------------------------------------------------------------------

TYPED_TEST(TransformationMatrix, Operations_of_the_base_leave_the_byte)
{
    using T = TypeParam;
    using X = C3DXfoMatTpl<T>;
    using M = C3DMatrix44Tpl<T>;
    // Affine, and with a negative determinant, which asks for other bits than those that stay.
    Numbers<T> const before = {-2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 8, 0, 1, 2, 3, 1};
    M const operand(k_Positive<T>[0], 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 17);
    T const numbers[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 17};
    T const half = T(0.5);
    struct Operation
    {
        char const * name;
        std::function<void(X &)> run;
        std::function<void(M &)> runOnBase;
    };
    std::vector<Operation> const operations = {
        {"SetNull", [](X & m) { m.SetNull(); }, [](M & m) { m.SetNull(); }},
        {"Set of scalars", [](X & m) { m.Set(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 17); },
         [](M & m) { m.Set(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 17); }},
        {"Set of consecutive scalars", [&](X & m) { m.Set(numbers); }, [&](M & m) { m.Set(numbers); }},
        {"Add", [&](X & m) { m.Add(operand); }, [&](M & m) { m.Add(operand); }},
        {"Add of two", [&](X & m) { m.Add(m, operand); }, [&](M & m) { m.Add(m, operand); }},
        {"Sub", [&](X & m) { m.Sub(operand); }, [&](M & m) { m.Sub(operand); }},
        {"Sub of two", [&](X & m) { m.Sub(operand, m); }, [&](M & m) { m.Sub(operand, m); }},
        {"Mul by a scalar", [&](X & m) { m.Mul(half); }, [&](M & m) { m.Mul(half); }},
        {"Mul of a scalar and a matrix", [&](X & m) { m.Mul(half, operand); }, [&](M & m) { m.Mul(half, operand); }},
        {"Mul of a matrix and a scalar", [&](X & m) { m.Mul(operand, half); }, [&](M & m) { m.Mul(operand, half); }},
        {"Mul by a general matrix", [&](X & m) { m.Mul(operand); }, [&](M & m) { m.Mul(operand); }},
        {"Mul of general matrices", [&](X & m) { m.Mul(operand, operand); }, [&](M & m) { m.Mul(operand, operand); }},
        {"MulTransByReg", [&](X & m) { m.MulTransByReg(operand, m); }, [&](M & m) { m.MulTransByReg(operand, m); }},
        {"MulRegByTrans", [&](X & m) { m.MulRegByTrans(operand, m); }, [&](M & m) { m.MulRegByTrans(operand, m); }},
        {"Div", [&](X & m) { m.Div(half); }, [&](M & m) { m.Div(half); }},
        {"Div of a matrix", [&](X & m) { m.Div(operand, half); }, [&](M & m) { m.Div(operand, half); }},
        {"Negate", [](X & m) { m.Negate(); }, [](M & m) { m.Negate(); }},
        {"Negate of a matrix", [&](X & m) { m.Negate(operand); }, [&](M & m) { m.Negate(operand); }},
        {"TransposeInverse", [](X & m) { EXPECT_EQ(m.TransposeInverse(), 1); },
         [](M & m) { EXPECT_EQ(m.TransposeInverse(), 1); }},
        {"reading text",
         [](X & m)
         {
             std::istringstream text("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 17");
             text >> m;
         },
         [](M & m) { m.Set(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 17); }},
    };
    for (Operation const & operation : operations)
    {
        for (unsigned const bits : k_SignBits)
        {
            auto m = Make<T>(before, 0xF1 | bits);
            M base = m.GetMatrix44();
            operation.run(m);
            operation.runOnBase(base);
            EXPECT_TRUE(Holds(m, NumbersOf(base), 0xF1 | bits)) << operation.name << ' ' << bits;
        }
    }
}

TYPED_TEST(TransformationMatrix, Is_saved_and_loaded_without_the_byte)
{
    using T = TypeParam;
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(Make<T>(k_Negative<T>, 0xFF).Save(stream.get(), 0), 0);
    EXPECT_EQ(GetBytes(*stream).size(), 16 * sizeof(T));
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    auto loaded = Make<T>(k_Positive<T>, 0xF1 | k_Y);
    EXPECT_EQ(loaded.Load(stream.get()), 0);
    EXPECT_TRUE(Holds(loaded, k_Negative<T>, 0xF1 | k_Y));
}

TYPED_TEST(TransformationMatrix, Conversions_of_the_base_copy_the_byte)
{
    using T = TypeParam;
    auto m = Make<T>(k_Positive<T>, 0x00);
    m.SetFromFloat(Make<float>(k_Negative<float>, 0xF1 | k_X));
    EXPECT_TRUE(Holds(m, k_Negative<T>, 0xF1 | k_X));
    m.SetFromDouble(Make<double>(k_Positive<double>, k_Y));
    EXPECT_TRUE(Holds(m, k_Positive<T>, k_Y));
}

} // namespace
