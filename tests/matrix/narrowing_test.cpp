/// A `double` that passes through a `float` has to come back rounded. g++ 12 at -O2 and above forgets the rounding of
/// neighbouring values where it sees both conversions at once. The library therefore keeps its conversions out of the
/// headers; the functions here that are not inlined leave the compiler every freedom to forget, if one moves there.

#include "math/platform/qn_vector.h"
#include "matrix/fixed_matrices.h"

using namespace test_support;

namespace
{

/// What the conversion has to give. The store to a volatile is the rounding that no optimisation removes.
double Rounded(double value)
{
    auto const volatile narrow = static_cast<float>(value);
    return static_cast<double>(narrow);
}

using Vector = C3DVector3Tpl<double>;
using Wide = C3DMatrix44Tpl<double>;
using Narrow = C3DMatrix44Tpl<float>;

[[gnu::noinline]] Vector ThroughConstructor(Vector const & v)
{
    QN_Vector const narrow = v;
    return Vector(narrow);
}

[[gnu::noinline]] Vector ThroughAssignment(Vector const & v)
{
    QN_Vector const narrow = v;
    Vector result;
    result = narrow;
    return result;
}

[[gnu::noinline]] Wide ThroughFloatMatrix(Wide const & m)
{
    Narrow narrow;
    narrow.SetFromDouble(m);
    Wide result;
    result.SetFromFloat(narrow);
    return result;
}

/// The inverse of the float matrix, widened.
[[gnu::noinline]] Wide ThroughFloatInverse(Narrow const & m)
{
    Narrow inverse;
    EXPECT_EQ(inverse.Invert(m), 1);
    Wide result;
    result.SetFromFloat(inverse);
    return result;
}

/// Numbers that no float holds.
class Narrowing : public testing::Test
{
protected:
    double Next()
    {
        double const value = random.Uniform(-1000.0, 1000.0);
        EXPECT_NE(value, Rounded(value));
        return value;
    }

    Random random{251};
};

TEST_F(Narrowing, A_vector_comes_back_rounded_from_the_package_s_vector)
{
    for (int i = 0; i < 100; ++i)
    {
        Vector const v(Next(), Next(), Next());
        Vector const constructed = ThroughConstructor(v);
        Vector const assigned = ThroughAssignment(v);
        for (int k = 0; k < 3; ++k)
        {
            EXPECT_EQ(constructed.Get(k), Rounded(v.Get(k)));
            EXPECT_EQ(assigned.Get(k), Rounded(v.Get(k)));
        }
    }
}

TEST_F(Narrowing, A_matrix_comes_back_rounded_from_the_float_matrix)
{
    for (int i = 0; i < 100; ++i)
    {
        Wide m;
        for (int k = 0; k < 16; ++k)
        {
            m.GetArray()[k] = Next();
        }
        Wide const back = ThroughFloatMatrix(m);
        for (int k = 0; k < 16; ++k)
        {
            EXPECT_EQ(back.GetArray()[k], Rounded(m.GetArray()[k]));
        }
    }
}

TEST_F(Narrowing, An_inverse_of_the_float_matrices_holds_floats)
{
    for (int i = 0; i < 100; ++i)
    {
        auto const m = RandomMatrix<Narrow>(random);
        Wide const widened = ThroughFloatInverse(m);
        Wide wideInverse;
        ASSERT_EQ(wideInverse.Invert(Wide().SetFromFloat(m)), 1);
        for (int k = 0; k < 16; ++k)
        {
            EXPECT_EQ(widened.GetArray()[k], Rounded(wideInverse.GetArray()[k]));
        }

        C3DMatrix33Tpl<float> const block(3, 3, m);
        C3DMatrix33Tpl<float> inverseOfBlock;
        ASSERT_EQ(inverseOfBlock.Invert(block), 1);
        C3DMatrix33Tpl<double> wideBlock(3, 3, Wide().SetFromFloat(m));
        ASSERT_EQ(wideBlock.Invert(), 1);
        for (int k = 0; k < 9; ++k)
        {
            EXPECT_EQ(static_cast<double>(inverseOfBlock.GetArray()[k]), Rounded(wideBlock.GetArray()[k]));
        }
    }
}

TEST_F(Narrowing, Eigenvalues_of_the_float_matrix_hold_floats)
{
    for (int i = 0; i < 100; ++i)
    {
        auto m = RandomMatrix<C3DMatrix33Tpl<float>>(random);
        m.Add(C3DMatrix33Tpl<float>().Transpose(m));
        C3DMatrix33Tpl<double> wide;
        for (int k = 0; k < 9; ++k)
        {
            wide.GetArray()[k] = static_cast<double>(m.GetArray()[k]);
        }
        C3DVector3Tpl<float> values(m.Get(0, 0), m.Get(1, 1), m.Get(2, 2));
        C3DVector3Tpl<double> wideValues(wide.Get(0, 0), wide.Get(1, 1), wide.Get(2, 2));
        C3DMatrix33Tpl<float> vectors;
        C3DMatrix33Tpl<double> wideVectors;
        ASSERT_EQ(m.GetEigenVectors(vectors, values, 1e-6F), 1);
        ASSERT_EQ(wide.GetEigenVectors(wideVectors, wideValues, static_cast<double>(1e-6F)), 1);
        for (int k = 0; k < 3; ++k)
        {
            EXPECT_EQ(static_cast<double>(values.Get(k)), Rounded(wideValues.Get(k)));
        }
    }
}

} // namespace
