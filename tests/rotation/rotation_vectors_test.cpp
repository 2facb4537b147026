/// Rotating one vector and many.

#include "rotation/rotation_states.h"
#include "support/same_bits.h"

#include <limits>
#include <vector>

using namespace rotation_test;
using test_support::SameBits;

namespace
{

using Rotate = void (C3DRotation::*)(Vector const *, long, Vector *);

/// What one vector gives, written out: sums of three products, from the left.
Vector Expected(Matrix const & m, Vector const & v, bool inverse)
{
    auto const element = [&](int r, int c) { return inverse ? m.Get(c, r) : m.Get(r, c); };
    return {v.X * element(0, 0) + v.Y * element(1, 0) + v.Z * element(2, 0),
            v.X * element(0, 1) + v.Y * element(1, 1) + v.Z * element(2, 1),
            v.X * element(0, 2) + v.Y * element(1, 2) + v.Z * element(2, 2)};
}

std::vector<Vector> Vectors(test_support::Random & random, std::size_t count)
{
    std::vector<Vector> vectors(count);
    for (Vector & v : vectors)
    {
        v.Set(random.NumberOrSpecial(), random.NumberOrSpecial(), random.NumberOrSpecial());
    }
    return vectors;
}

constexpr std::size_t k_Guard = 5;
Vector const k_GuardVector(77, 77, 77);

} // namespace

// --- One vector ------------------------------------------------------------------------------------------------------

TEST(RotationVectors, A_vector_is_a_row_times_the_matrix_and_by_the_inverse_times_the_transpose)
{
    test_support::Random random(501);
    for (int i = 0; i < 300; ++i)
    {
        unsigned const flags = k_States[i % 12];
        C3DRotation rotation = MakeState(flags);
        Vector const v(random.NumberOrSpecial(), random.NumberOrSpecial(), random.NumberOrSpecial());
        Vector out(77, 77, 77);
        rotation.RotateVct(v, out);
        EXPECT_EQ(Inside(rotation).Flags(), flags & ~k_MatDirty);
        Matrix const & m = Inside(rotation).Matrix();
        EXPECT_TRUE(SameBits(out, Expected(m, v, false)));
        Vector same = v;
        rotation.RotateVct(same, same);
        EXPECT_TRUE(SameBits(same, out));

        rotation = MakeState(flags);
        rotation.InvRotateVct(v, out);
        EXPECT_EQ(Inside(rotation).Flags(), flags & ~k_MatDirty);
        EXPECT_TRUE(SameBits(out, Expected(m, v, true)));
        same = v;
        rotation.InvRotateVct(same, same);
        EXPECT_TRUE(SameBits(same, out));
    }
}

TEST(RotationVectors, They_turn_as_the_judge_does_and_back)
{
    Judge const judge = JudgeOf(Vector(0.3, -0.5, 0.7), E3DROTORDER_ZXY);
    Eigen::Vector3d const turned = judge * Eigen::Vector3d(1, 2, 3);
    for (unsigned const flags : k_States)
    {
        C3DRotation rotation = MakeState(flags);
        Vector v(1, 2, 3);
        rotation.RotateVct(v, v);
        EXPECT_LT(MaxDifference(v, Vector(turned.x(), turned.y(), turned.z())), 1e-14);
        rotation.InvRotateVct(v, v);
        EXPECT_LT(MaxDifference(v, Vector(1, 2, 3)), 1e-14);
    }
}

TEST(RotationVectors, The_inverse_is_the_transpose_of_any_nine_numbers)
{
    C3DRotation rotation(Matrix(1, 2, 3, 4, 5, 6, 7, 8, 9));
    Vector out;
    rotation.RotateVct(Vector(1, 10, 100), out);
    EXPECT_TRUE(Same(out, Vector(741, 852, 963)));
    rotation.InvRotateVct(Vector(1, 10, 100), out);
    EXPECT_TRUE(Same(out, Vector(321, 654, 987)));
}

TEST(RotationVectors, The_marked_identity_copies_and_needs_no_matrix)
{
    test_support::Random random(502);
    for (unsigned const state : k_States)
    {
        C3DRotation rotation = MakeState(state | k_Marked);
        Inside(rotation).FillMatrix(k_Nan);
        std::vector<Vector> const in = Vectors(random, 9);
        std::vector<Vector> out(9);
        for (Rotate const rotate : {Rotate{&C3DRotation::RotateVct}, Rotate{&C3DRotation::InvRotateVct}})
        {
            (rotation.*rotate)(in.data(), 9, out.data());
            for (std::size_t i = 0; i < 9; ++i)
            {
                EXPECT_TRUE(SameBits(out[i], in[i]));
            }
            out = in;
            (rotation.*rotate)(out.data(), 9, out.data());
            EXPECT_TRUE(SameBits(out[8], in[8]));
        }
        Vector one;
        rotation.RotateVct(in[3], one);
        EXPECT_TRUE(SameBits(one, in[3]));
        rotation.InvRotateVct(in[4], one);
        EXPECT_TRUE(SameBits(one, in[4]));
        EXPECT_EQ(Inside(rotation).Flags(), state | k_Marked);
    }
}

// --- Arrays ----------------------------------------------------------------------------------------------------------

TEST(RotationVectors, An_array_gives_the_bits_of_one_vector_at_a_time)
{
    test_support::Random random(503);
    for (std::size_t n = 1; n <= 33; ++n)
    {
        for (std::size_t offset = 0; offset < 4; ++offset) // every alignment that a vector of doubles can have
        {
            for (bool const inverse : {false, true})
            {
                C3DRotation rotation = MakeState(k_States[n % 12], Vector(0.3 * double(n), double(offset), -1));
                Rotate const rotate = inverse ? Rotate{&C3DRotation::InvRotateVct} : Rotate{&C3DRotation::RotateVct};
                std::vector<Vector> const in = Vectors(random, n + offset);
                std::vector<Vector> out(n + offset + 2 * k_Guard, k_GuardVector);
                (rotation.*rotate)(in.data() + offset, static_cast<long>(n), out.data() + k_Guard);
                EXPECT_EQ(Inside(rotation).IsMatDirty(), 0);
                std::vector<Vector> inPlace = in;
                (rotation.*rotate)(inPlace.data() + offset, static_cast<long>(n), inPlace.data() + offset);
                for (std::size_t i = 0; i < n; ++i)
                {
                    Vector one;
                    inverse ? rotation.InvRotateVct(in[offset + i], one) : rotation.RotateVct(in[offset + i], one);
                    EXPECT_TRUE(SameBits(out[k_Guard + i], one)) << n << ' ' << offset << ' ' << i;
                    EXPECT_TRUE(SameBits(inPlace[offset + i], one)) << n << ' ' << offset << ' ' << i;
                }
                for (std::size_t i = 0; i < offset; ++i)
                {
                    EXPECT_TRUE(SameBits(inPlace[i], in[i])) << "before the array";
                }
                for (std::size_t i = 0; i < k_Guard; ++i)
                {
                    EXPECT_TRUE(Same(out[i], k_GuardVector)) << "before the array";
                    EXPECT_TRUE(Same(out[out.size() - 1 - i], k_GuardVector)) << "behind the array";
                }
            }
        }
    }
}

TEST(RotationVectors, No_vectors_and_fewer_are_nothing_to_do)
{
    for (unsigned const state : k_States)
    {
        for (unsigned const flags : {state, state | k_Marked})
        {
            C3DRotation rotation = MakeState(flags);
            Vector v = k_GuardVector;
            for (long const n : {0L, -1L, -4L, std::numeric_limits<long>::min()})
            {
                rotation.RotateVct(&v, n, &v);
                rotation.InvRotateVct(&v, n, &v);
                rotation.RotateVct(nullptr, n, nullptr);
                rotation.InvRotateVct(nullptr, n, nullptr);
            }
            EXPECT_TRUE(Same(v, k_GuardVector));
            EXPECT_EQ(Inside(rotation).Flags(), flags) << "not even the matrix is made";
        }
    }
}
