#include "math/platform/result.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <type_traits>

namespace
{

struct NamedCode
{
    long code;
    std::uint32_t bits;
};

constexpr std::array<NamedCode, 7> failures{{{E_NOTIMPL, 0x80004001U},
                                             {E_NOINTERFACE, 0x80004002U},
                                             {E_POINTER, 0x80004003U},
                                             {E_FAIL, 0x80004005U},
                                             {E_UNEXPECTED, 0x8000FFFFU},
                                             {E_OUTOFMEMORY, 0x8007000EU},
                                             {E_INVALIDARG, 0x80070057U}}};

TEST(Result, Success_codes_are_0_and_1)
{
    EXPECT_EQ(S_OK, 0);
    EXPECT_EQ(S_FALSE, 1);
}

TEST(Result, Failure_codes_are_negative_and_keep_their_low_32_bits)
{
    for (NamedCode const & failure : failures)
    {
        EXPECT_LT(failure.code, 0);
        EXPECT_EQ(static_cast<std::uint32_t>(failure.code), failure.bits);
    }
}

TEST(Result, Failure_codes_are_sign_extended)
{
    for (NamedCode const & failure : failures)
    {
        EXPECT_EQ(static_cast<long long>(failure.code), static_cast<long long>(failure.bits) - 0x100000000LL);
    }
}

TEST(Result, Codes_are_of_type_long)
{
    EXPECT_TRUE((std::is_same_v<decltype(E_FAIL), long const>));
    EXPECT_TRUE((std::is_same_v<decltype(S_OK), long const>));
}

} // namespace
