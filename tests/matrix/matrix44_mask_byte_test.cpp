/// The byte of flags behind the sixteen elements: which operations carry it.

#include "matrix/fixed_matrices.h"
#include "support/streams.h"

#include <functional>
#include <sstream>
#include <vector>

using namespace test_support;

namespace
{

constexpr unsigned char k_TargetMask = 0x5A;
constexpr unsigned char k_OperandMask = 0xC3;

template <typename T>
class Matrix44MaskByte : public testing::Test
{
protected:
    using Matrix = C3DMatrix44Tpl<T>;

    /// An invertible operand with a mask of its own.
    static Matrix Operand()
    {
        return Matrix(2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 8, 0, 1, 2, 3, 1).SetMaskInfo(k_OperandMask);
    }
    static Matrix Target() { return Matrix(4, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1, 0, 3, 2, 1, 1).SetMaskInfo(k_TargetMask); }

    struct Operation
    {
        char const * name;
        std::function<void(Matrix & target, Matrix const & operand)> run;
    };

    /// Each operation must change the elements, so that it has done something, and nothing else.
    static void ExpectUntouchedBy(std::vector<Operation> const & operations)
    {
        for (Operation const & operation : operations)
        {
            SCOPED_TRACE(operation.name);
            Matrix target = Target();
            operation.run(target, Operand());
            EXPECT_EQ(target.GetMaskInfo(), k_TargetMask);
            EXPECT_TRUE(target != Target());
        }
    }
};
TYPED_TEST_SUITE(Matrix44MaskByte, Scalars);

TYPED_TEST(Matrix44MaskByte, Is_read_and_written_by_its_accessors)
{
    C3DMatrix44Tpl<TypeParam> m;
    for (unsigned int mask = 0; mask < 256; ++mask)
    {
        EXPECT_EQ(&m.SetMaskInfo(static_cast<unsigned char>(mask)), &m);
        EXPECT_EQ(std::as_const(m).GetMaskInfo(), mask);
    }
    EXPECT_TRUE(m == C3DMatrix44Tpl<TypeParam>());
}

TYPED_TEST(Matrix44MaskByte, Is_not_written_by_constructors)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    TypeParam const x = 1;
    C3DVector4Tpl<TypeParam> const v(1, 2, 3, 4);
    float array[4][4] = {};
    EXPECT_EQ(ConstructedOver<M>(0xAB).Get().GetMaskInfo(), 0xAB);
    EXPECT_EQ(ConstructedOver<M>(0xAB, C3DInitRequest_DoNotInitialize{}).Get().GetMaskInfo(), 0xAB);
    EXPECT_EQ(ConstructedOver<M>(0xAB, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x, x).Get().GetMaskInfo(), 0xAB);
    EXPECT_EQ(ConstructedOver<M>(0xAB, v, v, v, v, 0).Get().GetMaskInfo(), 0xAB);
    EXPECT_EQ(ConstructedOver<M>(0xAB, v, v, v, v, 1).Get().GetMaskInfo(), 0xAB);
    EXPECT_EQ(ConstructedOver<M>(0xAB, array).Get().GetMaskInfo(), 0xAB);
}

TYPED_TEST(Matrix44MaskByte, Is_untouched_by_setting_elements)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    this->ExpectUntouchedBy({
        {"SetNull", [](M & m, M const &) { m.SetNull(); }},
        {"SetIdentity", [](M & m, M const &) { m.SetIdentity(); }},
        {"Set of scalars", [](M & m, M const &) { m.Set(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16); }},
        {"Set of an array", [](M & m, M const & a) { m.Set(a.GetArray()); }},
        {"Set of rows",
         [](M & m, M const &)
         {
             TypeParam const rows[4][4] = {};
             m.Set(rows);
         }},
        {"assignment of a float array",
         [](M & m, M const &)
         {
             float rows[4][4] = {};
             m = rows;
         }},
        {"Set of an element", [](M & m, M const &) { m.Set(1, 2, TypeParam(9)); }},
        {"SetRow of scalars", [](M & m, M const &) { m.SetRow(3, 9, 9, 9, 9); }},
        {"SetRow of a vector", [](M & m, M const &) { m.SetRow(3, C3DVector4Tpl<TypeParam>(9, 9, 9, 9)); }},
        {"SetCol of scalars", [](M & m, M const &) { m.SetCol(3, 9, 9, 9, 9); }},
        {"SetCol of a vector", [](M & m, M const &) { m.SetCol(3, C3DVector4Tpl<TypeParam>(9, 9, 9, 9)); }},
    });
}

TYPED_TEST(Matrix44MaskByte, Is_untouched_by_sums_and_scalings)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    TypeParam const two = 2;
    this->ExpectUntouchedBy({
        {"Add one", [](M & m, M const & a) { m.Add(a); }},
        {"Add two", [](M & m, M const & a) { m.Add(a, a); }},
        {"Sub one", [](M & m, M const & a) { m.Sub(a); }},
        {"Sub two", [](M & m, M const & a) { m.Sub(a, a); }},
        {"Mul by a scalar", [=](M & m, M const &) { m.Mul(two); }},
        {"Mul of a scalar and a matrix", [=](M & m, M const & a) { m.Mul(two, a); }},
        {"Mul of a matrix and a scalar", [=](M & m, M const & a) { m.Mul(a, two); }},
        {"Div", [=](M & m, M const &) { m.Div(two); }},
        {"Div of a matrix", [=](M & m, M const & a) { m.Div(a, two); }},
        {"Negate", [](M & m, M const &) { m.Negate(); }},
        {"Negate of a matrix", [](M & m, M const & a) { m.Negate(a); }},
    });
}

TYPED_TEST(Matrix44MaskByte, Is_untouched_by_products_transposes_and_inverses)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    this->ExpectUntouchedBy({
        {"Mul one", [](M & m, M const & a) { m.Mul(a); }},
        {"Mul two", [](M & m, M const & a) { m.Mul(a, a); }},
        {"MulTransByReg", [](M & m, M const & a) { m.MulTransByReg(a, a); }},
        {"MulRegByTrans", [](M & m, M const & a) { m.MulRegByTrans(a, a); }},
        {"Transpose", [](M & m, M const &) { m.Transpose(); }},
        {"Transpose of a matrix", [](M & m, M const & a) { m.Transpose(a); }},
        {"Invert", [](M & m, M const &) { EXPECT_EQ(m.Invert(), 1); }},
        {"Invert of a matrix", [](M & m, M const & a) { EXPECT_EQ(m.Invert(a), 1); }},
        {"TransposeInverse", [](M & m, M const &) { EXPECT_EQ(m.TransposeInverse(), 1); }},
        {"TransposeInverse of a matrix", [](M & m, M const & a) { EXPECT_EQ(m.TransposeInverse(a), 1); }},
    });
}

TYPED_TEST(Matrix44MaskByte, Is_copied_from_a_matrix)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const source = this->Operand();
    M target = this->Target();
    target = source;
    EXPECT_EQ(target.GetMaskInfo(), k_OperandMask);
    target = this->Target();
    target.Set(source);
    EXPECT_EQ(target.GetMaskInfo(), k_OperandMask);
    EXPECT_EQ(M(source).GetMaskInfo(), k_OperandMask);
}

TYPED_TEST(Matrix44MaskByte, Is_copied_across_the_instantiations)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M target = this->Target();
    target.SetFromFloat(C3DMatrix44Tpl<float>().SetMaskInfo(0x11));
    EXPECT_EQ(target.GetMaskInfo(), 0x11);
    target.SetFromDouble(C3DMatrix44Tpl<double>().SetMaskInfo(0x22));
    EXPECT_EQ(target.GetMaskInfo(), 0x22);
}

TYPED_TEST(Matrix44MaskByte, Is_neither_saved_nor_loaded)
{
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(this->Operand().Save(stream.get(), 0), 0);
    EXPECT_EQ(GetBytes(*stream).size(), 16 * sizeof(TypeParam));
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    auto target = this->Target();
    EXPECT_EQ(target.Load(stream.get()), 0);
    EXPECT_EQ(target.GetMaskInfo(), k_TargetMask);
    EXPECT_TRUE(SameBits(target, this->Operand()));
}

TYPED_TEST(Matrix44MaskByte, Is_untouched_by_reading_text)
{
    std::istringstream text("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16");
    auto target = this->Target();
    text >> target;
    EXPECT_EQ(target.GetMaskInfo(), k_TargetMask);
}

TYPED_TEST(Matrix44MaskByte, Is_ignored_by_comparisons_and_tests)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const a = this->Target();
    M const b = M(a).SetMaskInfo(k_OperandMask);
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    EXPECT_EQ(AreAlmostEqual(a, b, TypeParam(0.5)), 1);
    EXPECT_TRUE(IdentityMatrix<M>().SetMaskInfo(255).IsIdentity(0));
    EXPECT_TRUE(IdentityMatrix<M>().SetMaskInfo(255).IsExactlyIdentity());
    EXPECT_TRUE(IdentityMatrix<M>().SetMaskInfo(255).IsDiagonal());
    EXPECT_EQ(M().SetMaskInfo(255).IsNull(), 1);
}

} // namespace
