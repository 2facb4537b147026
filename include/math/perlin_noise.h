#pragma once

/// \file
/// Seeded tables and building blocks of gradient noise.

#include "math/api.h"

#include <vector>

namespace math::detail
{

class NoiseInspector;

} // namespace math::detail

/// Permutation tables for gradient noise, in numbered slots, each with its own seed; and the pieces from which noise of
/// one to four dimensions is put together. (K. Perlin, "Improving noise", SIGGRAPH 2002; for the four-dimensional
/// gradients and the traversal of the simplex K. Perlin, "Noise hardware", 2001.)
///
/// **Copies share their tables**, and the destructor leaves them allocated: of an object and all its copies exactly one
/// calls Dispose, when none of them is used any more.
///
/// Any number of threads may evaluate through a seeded object. Init is not safe beside them.
class MATH_API C3DPerlinNoise
{
public:
    /// The twelve gradients of three-dimensional simplex noise: the edges of a cube.
    static double const grad3[12][3];

    /// The thirty-two gradients of four-dimensional noise: all (0, +-1, +-1, +-1), by the place of the zero.
    static double const grad4[32][4];

    /// The order in which a four-dimensional simplex is traversed: the rank of each coordinate, 0 smallest. The index
    /// has the bits 32, 16, 8, 4, 2, 1 for x > y, x > z, y > z, x > w, y > w, z > w; rows that cannot occur are 0.
    static int const simplex[64][4];

    /// No slot.
    C3DPerlinNoise();
    /// Slot 0 with this seed.
    explicit C3DPerlinNoise(unsigned long seed);
    /// Copies share the tables that are there; slots seeded later are each object's own. Reseeding a shared slot
    /// changes it for all, while the others go on to hold their old seed: Init with that one leaves the tables as they
    /// are. What the left side of an assignment held is not freed. Where memory is short, the allocator's exception is
    /// thrown and the left side is as it was.
    ///@{
    C3DPerlinNoise(C3DPerlinNoise const & other);
    C3DPerlinNoise & operator=(C3DPerlinNoise const & other);
    ///@}

    /// Leaves the tables allocated.
    ~C3DPerlinNoise();

    /// Frees the tables of all slots, for all copies. To be called once: the pointers stay.
    void Dispose();

    /// Seeds a slot. Slots below it that were not seeded stay empty. The same seed again costs nothing. A seed has 32
    /// bits, and 0 is as 0xFFFFFFEF. Memory that cannot be had throws the allocator's exception.
    void Init(unsigned long slot, unsigned long seed);

    /// The noise of three faces of the cell that holds a point, from slot 0, which must be seeded: `a` on the face at
    /// the cell's lower x, `b` at its lower y, `c` at its lower z.
    ///
    /// **The gradients are taken at the coordinates themselves**, not at their fractions in the cell, so that the
    /// values grow with them and do not repeat with the cells.
    void DNoise(double x, double y, double z, double & a, double & b, double & c) const;

private:
    friend class math::detail::NoiseInspector;

    /// The blend of two gradients of four dimensions, by the codes of their components: of a and b it is
    /// 3 (a + 1) + (b + 1).
    using HashHashTable = int[1024][5];

    /// Row 32 a + b is for the rows a and b of grad4: the codes of their four components, and the code that belongs to
    /// the last component of b with a 0 before it and its sign turned, which is what t - 1 in the second corner adds.
    static HashHashTable grad4hashhash;
    static bool grad4hashhashinited; ///< whether the rows of grad4hashhash are there

    /// Fills grad4hashhash, once for all objects, on whatever thread is the first to construct one.
    static void InitHashHash();

    /// What Init does. The permutation is 0 to 255, in which each place from the first on is exchanged with the one
    /// that a step of F3DQuickRand, begun at the seed, gives as a fraction of 256.
    void GenerateP(unsigned long slot, unsigned long seed);

    /// 6 t^5 - 15 t^4 + 10 t^3: from 0 to 1, with first and second derivatives 0 at both ends.
    static double fade(double t);
    /// From a at 0 to b at 1.
    static double lerp(double t, double a, double b);

    /// The integer below x, for an x that is not whole: whole numbers that are not above 0 give one less. Values beyond
    /// an `int` give the nearest one, a NaN gives -1.
    static int FastFloor(double x);

    /// \name The product of a gradient, chosen by a hash, with an offset
    ///@{

    /// -x for an even h, x for an odd one.
    static double grad(int h, double x);
    /// By the two low bits of h: x + y, y - x, -x - y, x - y.
    static double grad(int h, double x, double y);
    /// By the four low bits of h a sum of two coordinates, each with a sign: x and y for 0 to 3, 12 and 13, x and z for
    /// 4 to 7, y and z for the others. Bit 1 turns the sign of the first of them, bit 2 that of the second.
    static double grad(int h, double x, double y, double z);
    /// By row h of grad4, 0 to 31. Alone of the four it does not mask h.
    static double grad(int h, double x, double y, double z, double t);
    ///@}

    /// The product of the first two, three or four values of an array with an offset.
    ///@{
    static double Dot(double const * g, double x, double y);
    static double Dot(double const * g, double x, double y, double z);
    static double Dot(double const * g, double x, double y, double z, double t);
    ///@}

    /// The cell of a coordinate, 0 to 255, its fraction in it and the fade of that. A negative whole number has the
    /// fraction 1 in the cell below. What is not finite has the fraction NaN, in cell 0 if it is above 0, else in 255.
    void split(double x, double & frac, int & cell, double & fadeOut) const;

    /// The hashes of the four edges along z of a cell, from slot 0, and the fades.
    void calculate3D(double x, double y, double z, double & u, double & v, double & w, int & AA, int & AB, int & BA,
                     int & BB) const;

    /// The products of two gradients with (x, y, z, t) and (x, y, z, t - 1), blended along t. `w` holds nine values: at
    /// the code of (a, b) the blend of a and b at the caller's weight.
    double lerpgradt(double const * w, int const * p31, int i, double x, double y, double z, double t) const;
    /// The same at two neighbours along x, blended by f.
    double lerpgradxt(double const * w, double f, int const * p31, int i, int j, double x, double y, double z,
                      double t) const;

    /// The tables of a slot, which is not checked.
    ///@{
    int * GetPTable(unsigned long slot) const;
    int * GetP31Table(unsigned long slot) const;
    int * GetHashHashTable(unsigned long slot) const;
    ///@}

    std::vector<unsigned long> m_Seeds;  ///< by slot, as all four: the seed of the tables; 0 without tables
    std::vector<int *> m_PTables;        ///< P, a permutation of 0 to 255, twice over, as all tables; or null
    std::vector<int *> m_HashHashTables; ///< 32 P31[i] + P31[i + 1]
    std::vector<int *> m_P31Tables;      ///< the low five bits of P
};
