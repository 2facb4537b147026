/// The bytes and the text of the dual quaternion.

#include "support/streams.h"
#include "transform/dual_quaternion_checks.h"

#include <iomanip>
#include <sstream>
#include <string>

using namespace dual_quaternion_test;
using namespace test_support;

namespace
{

template <typename T>
class DualQuaternionStream : public testing::Test
{
};
TYPED_TEST_SUITE(DualQuaternionStream, Scalars);

/// Numbers as the little-endian machine of the tests has them in memory.
template <typename T>
Bytes BytesOf(std::array<T, 8> const & numbers)
{
    Bytes bytes(sizeof numbers);
    std::memcpy(bytes.data(), numbers.data(), sizeof numbers);
    return bytes;
}

/// First, as it is saved: W comes last.
template <typename T>
constexpr std::array<T, 8> k_Saved = {2, -3, 4, 1, -6, 7, 8, 5};

template <typename T>
std::string TextOf(C3DDualQuatTpl<T> const & q)
{
    std::ostringstream stream;
    EXPECT_EQ(&(stream << q), &stream);
    return stream.str();
}

} // namespace

TEST(DualQuaternionStreamBytes, The_bytes_of_a_float_written_out)
{
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(Make<float>({1, -2, 0, 0, 0, 0, 0, -0.0F}).Save(stream.get(), 3), 0);
    EXPECT_EQ(GetBytes(*stream), (Bytes{0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0, 0,    0, 0, 0x80, 0x3F, // X, Y, Z, W of P
                                        0, 0, 0, 0,    0, 0, 0, 0, 0, 0, 0, 0x80, 0, 0, 0,    0}));
}

TYPED_TEST(DualQuaternionStream, Save_writes_both_quaternions_with_W_last)
{
    using T = TypeParam;
    for (int const format : {0, 1, -7})
    {
        auto const stream = MakeMemoryStream();
        EXPECT_EQ(First<T>().Save(stream.get(), format), 0);
        EXPECT_EQ(GetBytes(*stream), BytesOf(k_Saved<T>));
        EXPECT_EQ(CountReferences(*stream), 1UL);
    }
}

TYPED_TEST(DualQuaternionStream, Load_reads_what_Save_writes)
{
    using T = TypeParam;
    Bytes bytes = BytesOf(k_Saved<T>);
    bytes.push_back(0xDD);
    auto const stream = MakeMemoryStream(bytes);
    C3DDualQuatTpl<T> q = Second<T>();
    EXPECT_EQ(q.Load(stream.get()), 0);
    EXPECT_TRUE(Same(q, First<T>()));
    EXPECT_EQ(GetPosition(*stream), 8 * sizeof(T));
    EXPECT_EQ(CountReferences(*stream), 1UL);
    std::array<T, 8> const odd = {k_Nan<T>, T(-0.0), k_Infinity<T>, std::numeric_limits<T>::denorm_min()};
    auto const again = MakeMemoryStream();
    EXPECT_EQ(q.Load(MakeMemoryStream(BytesOf(odd)).get()), 0);
    EXPECT_EQ(q.Save(again.get(), 0), 0);
    EXPECT_EQ(GetBytes(*again), BytesOf(odd));
}

TYPED_TEST(DualQuaternionStream, Failures_are_not_told)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> q = Second<T>();
    EXPECT_EQ(q.Save(nullptr, 0), 0);
    EXPECT_EQ(q.Load(nullptr), 0);
    EXPECT_TRUE(Same(q, Second<T>()));
    Bytes const whole = BytesOf(k_Saved<T>);
    for (std::size_t count = 0; count < whole.size(); ++count)
    {
        auto const full = MakeStreamFailingOnWrite(count);
        EXPECT_EQ(First<T>().Save(full.get(), 0), 0);
        EXPECT_EQ(GetBytes(full->GetMemory()),
                  Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count)));
        EXPECT_EQ(CountReferences(*full), 1UL);

        // The numbers that are there are read, and the others keep their values.
        std::array<T, 8> const order = {1, 2, 3, 0, 5, 6, 7, 4};
        std::array<T, 8> expected = Elements(Second<T>());
        for (std::size_t i = 0; i < count / sizeof(T); ++i)
        {
            expected[static_cast<std::size_t>(order[i])] = k_Saved<T>[i];
        }
        auto const cut = MakeMemoryStream(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count)));
        q = Second<T>();
        EXPECT_EQ(q.Load(cut.get()), 0);
        EXPECT_EQ(Elements(q), expected) << count;
    }
}

TYPED_TEST(DualQuaternionStream, The_text_is_that_of_both_quaternions_back_to_back)
{
    using T = TypeParam;
    EXPECT_EQ(TextOf(First<T>()), "( W:1  X:2  Y:-3  Z:4 )( W:5  X:-6  Y:7  Z:8 )");
    std::ostringstream stream;
    First<T>().Dump(L"hip", stream);
    First<T>().Dump(nullptr, stream);
    EXPECT_EQ(stream.str(), "hip\n( W:1  X:2  Y:-3  Z:4 )( W:5  X:-6  Y:7  Z:8 )\n"
                            "( W:1  X:2  Y:-3  Z:4 )( W:5  X:-6  Y:7  Z:8 )\n");
    std::ostringstream fixed;
    fixed << std::fixed << std::setprecision(1) << C3DDualQuatTpl<T>();
    EXPECT_EQ(fixed.str(), "( W:1.0  X:0.0  Y:0.0  Z:0.0 )( W:0.0  X:0.0  Y:0.0  Z:0.0 )");
}

TYPED_TEST(DualQuaternionStream, Eight_bare_numbers_are_read)
{
    using T = TypeParam;
    std::istringstream stream(" 1 2\n-3 4\t5 -6 7e0 8 9");
    C3DDualQuatTpl<T> q = Second<T>();
    EXPECT_EQ(&(stream >> q), &stream);
    EXPECT_TRUE(Same(q, First<T>()));
    int next = 0;
    stream >> next;
    EXPECT_EQ(next, 9);
}

TYPED_TEST(DualQuaternionStream, A_stream_that_has_failed_gives_one_in_both_scalars)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> q = Second<T>();
    std::istringstream failed("1 2 3 4 5 6 7 8");
    failed.setstate(std::ios::failbit);
    failed >> q;
    EXPECT_TRUE(Same(q, Make<T>({1, 0, 0, 0, 1, 0, 0, 0})));
    // Where the text ends after P, D is what it was preset to.
    std::istringstream half("1 2 -3 4");
    half >> q;
    EXPECT_TRUE(half.fail());
    EXPECT_TRUE(Same(q, Make<T>({1, 2, -3, 4, 1, 0, 0, 0})));
    std::istringstream parenthesis(TextOf(First<T>()));
    parenthesis >> q;
    EXPECT_TRUE(parenthesis.fail()) << "what was written cannot be read back";
}
