/// The plain records of the fixed matrices.

#include "matrix/fixed_matrices.h"
#include "support/streams.h"

using namespace test_support;

namespace
{

template <typename Matrix>
class MatrixPersistence : public testing::Test
{
protected:
    using Scalar = decltype(std::declval<Matrix>().Get(0, 0));
    static constexpr int count = k_Size<Matrix> * k_Size<Matrix>;

    /// The bytes of 1, 2, 3, ... as scalars in order.
    static Bytes Record()
    {
        Bytes bytes;
        for (int i = 0; i < count; ++i)
        {
            auto const element = static_cast<Scalar>(i + 1);
            unsigned char scalar[sizeof element];
            std::memcpy(scalar, &element, sizeof element);
            bytes.insert(bytes.end(), scalar, scalar + sizeof element);
        }
        return bytes;
    }
};
using Matrices =
    testing::Types<C3DMatrix33Tpl<float>, C3DMatrix33Tpl<double>, C3DMatrix44Tpl<float>, C3DMatrix44Tpl<double>>;
TYPED_TEST_SUITE(MatrixPersistence, Matrices);

TYPED_TEST(MatrixPersistence, A_record_is_the_elements_row_by_row)
{
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(CountingMatrix<TypeParam>().Save(stream.get(), 0), 0);
    EXPECT_EQ(CountingMatrix<TypeParam>().Save(stream.get(), 7), 0);
    Bytes twice = this->Record();
    Bytes const once = twice;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_EQ(GetBytes(*stream), twice);
}

TYPED_TEST(MatrixPersistence, A_record_is_read_back_bit_by_bit)
{
    using T = typename TestFixture::Scalar;
    auto source = CountingMatrix<TypeParam>();
    source.Set(0, 1, -T(0))
        .Set(1, 1, k_Nan<T>)
        .Set(2, 0, -k_Infinity<T>)
        .Set(2, 2, std::numeric_limits<T>::denorm_min());
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(source.Save(stream.get(), 0), 0);
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    TypeParam target;
    EXPECT_EQ(target.Load(stream.get()), 0);
    EXPECT_TRUE(SameBits(target, source));
    EXPECT_EQ(GetPosition(*stream), GetBytes(*stream).size());
}

TYPED_TEST(MatrixPersistence, A_null_stream_is_no_error)
{
    auto m = CountingMatrix<TypeParam>();
    EXPECT_EQ(m.Save(nullptr, 0), 0);
    EXPECT_EQ(m.Load(nullptr), 0);
    EXPECT_TRUE(SameBits(m, CountingMatrix<TypeParam>()));
}

TYPED_TEST(MatrixPersistence, A_full_disk_is_no_error)
{
    auto const stream = MakeStreamFailingOnWrite(2 * sizeof(typename TestFixture::Scalar));
    EXPECT_EQ(CountingMatrix<TypeParam>().Save(stream.get(), 0), 0);
    EXPECT_EQ(GetBytes(stream->GetMemory()).size(), 2 * sizeof(typename TestFixture::Scalar));
}

TYPED_TEST(MatrixPersistence, A_stream_that_ends_early_is_no_error_and_the_rest_of_the_elements_stay)
{
    using T = typename TestFixture::Scalar;
    Bytes bytes = this->Record();
    bytes.resize(5 * sizeof(T) + 1);
    auto const stream = MakeMemoryStream(bytes);
    TypeParam target;
    for (int i = 0; i < TestFixture::count; ++i)
    {
        target.GetArray()[i] = T(-1);
    }
    EXPECT_EQ(target.Load(stream.get()), 0);
    for (int i = 0; i < TestFixture::count; ++i)
    {
        EXPECT_EQ(target.GetArray()[i], i < 5 ? T(i + 1) : T(-1)) << i;
    }
}

} // namespace
