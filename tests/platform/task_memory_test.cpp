#include "math/platform/task_memory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace
{

TEST(TaskMemory, Gives_aligned_writable_blocks)
{
    for (std::size_t const size : {1U, 3U, 24U, 1000U})
    {
        void * const block = CoTaskMemAlloc(size);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U);
        std::memset(block, 0x5A, size);
        CoTaskMemFree(block);
    }
}

TEST(TaskMemory, Gives_a_block_of_its_own_for_no_bytes)
{
    void * const first = CoTaskMemAlloc(0);
    void * const second = CoTaskMemAlloc(0);
    EXPECT_NE(first, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_NE(first, second);
    CoTaskMemFree(first);
    CoTaskMemFree(second);
}

TEST(TaskMemory, Gives_null_for_more_than_any_object_has)
{
    EXPECT_EQ(CoTaskMemAlloc(static_cast<std::size_t>(PTRDIFF_MAX) + 1), nullptr);
    EXPECT_EQ(CoTaskMemAlloc(SIZE_MAX), nullptr);
}

TEST(TaskMemory, Frees_null)
{
    CoTaskMemFree(nullptr);
}

} // namespace
