#include "signal/noise_inspector.h"
#include "support/random.h"
#include "support/same_bits.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <thread>
#include <vector>

namespace
{

using signal_test::NoiseInspector;
using signal_test::TableOwner;
using test_support::Random;
using test_support::SameBits;

constexpr double k_Infinity = std::numeric_limits<double>::infinity();
constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double k_Tiny = std::numeric_limits<double>::denorm_min();

struct Place
{
    int cell;
    double fraction;
    double fade;
};

Place Split(double x)
{
    static C3DPerlinNoise const noise;
    Place place{-77, -77, -77};
    (noise.*NoiseInspector::split)(x, place.fraction, place.cell, place.fade);
    return place;
}

/// The cell of a coordinate by the floor, one cell lower for negative whole numbers.
Place PlaceByFloor(double x)
{
    double const base = x < 0 && x == std::floor(x) ? x - 1 : std::floor(x);
    double const turns = std::floor(base / 256);
    double const fraction = x - base;
    return {static_cast<int>(base - turns * 256), fraction,
            ((fraction * 6 - 15) * fraction + 10) * std::pow(fraction, 3)};
}

void ExpectPlace(double x, int cell, double fraction)
{
    Place const place = Split(x);
    EXPECT_EQ(place.cell, cell) << x;
    EXPECT_TRUE(SameBits(place.fraction, fraction)) << x << ": " << place.fraction;
    EXPECT_TRUE(SameBits(place.fade, NoiseInspector::fade(fraction))) << x << ": " << place.fade;
}

struct Cell
{
    std::array<double, 3> fades;
    std::array<int, 4> hashes; // AA, AB, BA, BB

    bool operator==(Cell const &) const = default;
};

Cell CellOf(C3DPerlinNoise const & noise, double x, double y, double z)
{
    Cell cell{{-77, -77, -77}, {-77, -77, -77, -77}};
    auto & [fades, hashes] = cell;
    (noise.*NoiseInspector::calculate3D)(x, y, z, fades[0], fades[1], fades[2], hashes[0], hashes[1], hashes[2],
                                         hashes[3]);
    return cell;
}

/// The hash of the corner (x, y, z) of the lattice, without the doubled table.
int CornerHash(int const * p, int x, int y, int z)
{
    return p[(p[(p[x & 255] + y) & 255] + z) & 255];
}

/// A direction to an edge of a cube, by the low bits of a hash.
double EdgeProduct(int hash, double x, double y, double z)
{
    constexpr int edges[16][3] = {{1, 1, 0},  {-1, 1, 0},  {1, -1, 0}, {-1, -1, 0}, {1, 0, 1},  {-1, 0, 1},
                                  {1, 0, -1}, {-1, 0, -1}, {0, 1, 1},  {0, -1, 1},  {0, 1, -1}, {0, -1, -1},
                                  {1, 1, 0},  {-1, 1, 0},  {0, 1, -1}, {0, -1, -1}};
    auto const & edge = edges[hash & 15];
    double sum = 0;
    for (int k = 0; k < 3; ++k)
    {
        double const coordinate = k == 0 ? x : (k == 1 ? y : z);
        if (edge[k] != 0)
        {
            sum += edge[k] * coordinate;
        }
    }
    return sum;
}

using Faces = std::array<double, 3>;

Faces DNoise(C3DPerlinNoise const & noise, double x, double y, double z)
{
    Faces faces{-77, -77, -77};
    noise.DNoise(x, y, z, faces[0], faces[1], faces[2]);
    return faces;
}

/// The noise of the three faces of a cell that meet in its lower corner: for each axis the four corners with the lower
/// coordinate there, weighed bilinearly.
Faces FacesByCorners(int const * p, double const (&at)[3])
{
    int cell[3];
    double weight[3];
    for (int k = 0; k < 3; ++k)
    {
        Place const place = PlaceByFloor(at[k]);
        cell[k] = place.cell;
        weight[k] = NoiseInspector::fade(place.fraction);
    }
    auto const corner = [&](std::array<int, 3> const & step)
    {
        // The hash of a corner chains the cells of x, y and z; the sums of the chain do not wrap at a cell's far side.
        int const hash = CornerHash(p, cell[0] + step[0], cell[1] + step[1], cell[2] + step[2]);
        return EdgeProduct(hash, at[0] - step[0], at[1] - step[1], at[2] - step[2]);
    };
    auto const blend = [](double t, double a, double b) { return (b - a) * t + a; };
    // For the face across an axis: the axis whose lerps are the inner ones, and that of the outer.
    constexpr int inner[3] = {2, 0, 0};
    constexpr int outer[3] = {1, 2, 1};
    Faces faces{};
    for (std::size_t k = 0; k < 3; ++k)
    {
        auto const row = [&](int outerStep)
        {
            std::array<int, 3> step{};
            step[static_cast<std::size_t>(outer[k])] = outerStep;
            double const low = corner(step);
            step[static_cast<std::size_t>(inner[k])] = 1;
            return blend(weight[inner[k]], low, corner(step));
        };
        faces[k] = blend(weight[outer[k]], row(0), row(1));
    }
    return faces;
}

double Coordinate(Random & random)
{
    switch (random.Integer(0, 4))
    {
    case 0:
        return random.Integer(-600, 600);
    case 1:
        return random.OverDecades(-12, 9);
    case 2:
        return random.Integer(-4000, 4000) / 8.0;
    default:
        return random.Uniform(-300.0, 300.0);
    }
}

} // namespace

TEST(PerlinNoiseSplit, Gives_the_cell_and_where_a_coordinate_lies_in_it)
{
    ExpectPlace(0.25, 0, 0.25);
    ExpectPlace(1.5, 1, 0.5);
    ExpectPlace(255.75, 255, 0.75);
    ExpectPlace(256.5, 0, 0.5);
    ExpectPlace(300.25, 44, 0.25);
    ExpectPlace(-0.25, 255, 0.75);
    ExpectPlace(-1.25, 254, 0.75);
    ExpectPlace(-255.5, 0, 0.5);
    ExpectPlace(-256.5, 255, 0.5);
}

TEST(PerlinNoiseSplit, Puts_whole_numbers_at_the_start_of_a_cell_and_negative_ones_at_the_end_of_that_below)
{
    ExpectPlace(0.0, 0, 0);
    ExpectPlace(1.0, 1, 0);
    ExpectPlace(255.0, 255, 0);
    ExpectPlace(256.0, 0, 0);
    ExpectPlace(-1.0, 254, 1);
    ExpectPlace(-2.0, 253, 1);
    ExpectPlace(-255.0, 0, 1);
    ExpectPlace(-256.0, 255, 1);
    ExpectPlace(-257.0, 254, 1);
}

TEST(PerlinNoiseSplit, Takes_a_zero_of_either_sign_and_what_is_next_to_it)
{
    ExpectPlace(-0.0, 0, -0.0);
    ExpectPlace(k_Tiny, 0, k_Tiny);
    ExpectPlace(-k_Tiny, 255, 1);
    ExpectPlace(0x1p-1022, 0, 0x1p-1022);
    ExpectPlace(-0x1p-53, 255, 1 - 0x1p-53);
    ExpectPlace(std::nextafter(1.0, 0.0), 0, 1 - 0x1p-53);
    ExpectPlace(std::nextafter(-1.0, 0.0), 255, 0x1p-53);
    ExpectPlace(std::nextafter(-1.0, -2.0), 254, 1 - 0x1p-52);
}

TEST(PerlinNoiseSplit, Goes_on_where_an_int_ends)
{
    ExpectPlace(0x1p31 - 0.5, 255, 0.5);
    ExpectPlace(0x1p31, 0, 0);
    ExpectPlace(0x1p31 + 5.25, 5, 0.25);
    ExpectPlace(0x1p32 + 300.5, 44, 0.5);
    ExpectPlace(-0x1p31 + 0.5, 0, 0.5);
    ExpectPlace(-0x1p31, 255, 1);
    ExpectPlace(-0x1p31 - 0.5, 255, 0.5);
    ExpectPlace(-0x1p31 - 5.25, 250, 0.75);
    ExpectPlace(-0x1p32 - 300.5, 211, 0.5);
    ExpectPlace(0x1p63 + 0x1p11, 0, 0);
    ExpectPlace(1e18, 0, 0);
    ExpectPlace(-1e18, 255, 1);
    ExpectPlace(1e300, 0, 0);
    ExpectPlace(-1e300, 255, 1);
    ExpectPlace(std::numeric_limits<double>::max(), 0, 0);
    ExpectPlace(-std::numeric_limits<double>::max(), 255, 1);
}

TEST(PerlinNoiseSplit, Keeps_the_fraction_of_far_negative_numbers_at_1_where_their_lower_neighbour_is_no_double)
{
    ExpectPlace(-0x1p53 + 1, 0, 1);
    ExpectPlace(-0x1p53, 255, 1);
    ExpectPlace(-0x1p53 - 2, 253, 1);
    ExpectPlace(-0x1p53 - 4, 251, 1);
    ExpectPlace(-0x1p54 - 4, 251, 1);
    ExpectPlace(-0x1p54 - 12, 243, 1);
    ExpectPlace(0x1p53 + 2, 2, 0);
    ExpectPlace(0x1p60 + 0x1p8, 0, 0);
}

TEST(PerlinNoiseSplit, Takes_what_is_not_finite)
{
    ExpectPlace(k_Infinity, 0, k_NaN);
    ExpectPlace(-k_Infinity, 255, k_NaN);
    ExpectPlace(k_NaN, 255, k_NaN);
    ExpectPlace(-k_NaN, 255, k_NaN);
}

TEST(PerlinNoiseSplit, Agrees_with_the_floor)
{
    Random random(821);
    for (int i = 0; i < 20000; ++i)
    {
        double const x = Coordinate(random);
        Place const expected = PlaceByFloor(x);
        Place const place = Split(x);
        ASSERT_EQ(place.cell, expected.cell) << x;
        ASSERT_TRUE(SameBits(place.fraction, expected.fraction)) << x;
        ASSERT_NEAR(place.fade, expected.fade, 1e-15) << x;
    }
}

TEST(PerlinNoiseSplit, May_read_its_coordinate_from_where_it_writes)
{
    C3DPerlinNoise const noise;
    double x = -3.25;
    int cell = 0;
    double fade = 0;
    (noise.*NoiseInspector::split)(x, x, cell, fade);
    EXPECT_EQ(x, 0.75);
    EXPECT_EQ(cell, 252);
    EXPECT_EQ(fade, NoiseInspector::fade(0.75));
}

TEST(PerlinNoiseCell, Chains_the_cells_of_x_y_and_z_through_the_permutation_of_slot_0)
{
    C3DPerlinNoise noise(61);
    TableOwner const owner(noise);
    noise.Init(1, 62);
    int const * const p = (noise.*NoiseInspector::GetPTable)(0);
    Random random(822);
    for (int i = 0; i < 5000; ++i)
    {
        double const x = Coordinate(random);
        double const y = Coordinate(random);
        double const z = Coordinate(random);
        Place const px = Split(x);
        Place const py = Split(y);
        Place const pz = Split(z);
        int const a = p[px.cell] + py.cell;
        int const b = p[(px.cell + 1) % 256] + py.cell;
        Cell const expected{
            {px.fade, py.fade, pz.fade},
            {p[a % 256] + pz.cell, p[(a + 1) % 256] + pz.cell, p[b % 256] + pz.cell, p[(b + 1) % 256] + pz.cell}};
        ASSERT_EQ(CellOf(noise, x, y, z), expected) << x << ' ' << y << ' ' << z;
    }
}

TEST(PerlinNoiseCell, Reaches_the_last_place_of_the_doubled_table)
{
    C3DPerlinNoise noise(63);
    TableOwner const owner(noise);
    int const * const p = (noise.*NoiseInspector::GetPTable)(0);
    int at[2] = {};
    for (int i = 0; i < 256; ++i)
    {
        // The cells before and at the place of the greatest number lead to the place 511 of the chain.
        if (p[i] == 255)
        {
            at[0] = i;
            at[1] = (i + 255) % 256;
        }
    }
    EXPECT_EQ(CellOf(noise, at[0] + 0.5, 255.5, 0.5).hashes[1], p[255]);
    EXPECT_EQ(CellOf(noise, at[1] + 0.5, 255.5, 0.5).hashes[3], p[255]);
    // The last cell of x is followed by the first.
    EXPECT_EQ(CellOf(noise, 255.5, 3.5, 4.5).hashes[2], p[p[0] + 3] + 4);
}

TEST(PerlinNoiseCell, Repeats_every_256_and_differs_within)
{
    C3DPerlinNoise noise(64);
    TableOwner const owner(noise);
    Cell const cell = CellOf(noise, 10.25, 20.5, 30.75);
    EXPECT_EQ(CellOf(noise, 266.25, 20.5, 30.75), cell);
    EXPECT_EQ(CellOf(noise, 10.25, -235.5, 30.75), cell);
    EXPECT_EQ(CellOf(noise, 10.25, 20.5, 0x1p40 + 30.75), cell);
    EXPECT_NE(CellOf(noise, 11.25, 20.5, 30.75).hashes, cell.hashes);
    EXPECT_NE(CellOf(noise, 10.25, 21.5, 30.75).hashes, cell.hashes);
    EXPECT_NE(CellOf(noise, 10.25, 20.5, 31.75).hashes, cell.hashes);
}

TEST(PerlinNoiseCell, Takes_every_number)
{
    C3DPerlinNoise noise(65);
    TableOwner const owner(noise);
    Random random(823);
    for (int i = 0; i < 5000; ++i)
    {
        double const far = random.OverDecades(5, 308);
        Cell const cell =
            CellOf(noise, random.NumberOrSpecial(), random.NumberOrSpecial(), random.Integer(0, 1) != 0 ? far : k_NaN);
        for (int hash : cell.hashes)
        {
            ASSERT_GE(hash, 0);
            ASSERT_LE(hash, 510);
        }
    }
}

TEST(PerlinNoiseDNoise, Is_the_noise_of_the_three_faces_by_their_corners)
{
    C3DPerlinNoise noise(71);
    TableOwner const owner(noise);
    noise.Init(1, 72);
    int const * const p = (noise.*NoiseInspector::GetPTable)(0);
    Random random(824);
    for (int i = 0; i < 5000; ++i)
    {
        double const at[3] = {Coordinate(random), Coordinate(random), Coordinate(random)};
        Faces const expected = FacesByCorners(p, at);
        Faces const faces = DNoise(noise, at[0], at[1], at[2]);
        for (std::size_t k = 0; k < 3; ++k)
        {
            // A sum that cancels may be a zero of either sign.
            ASSERT_EQ(faces[k], expected[k]) << k << ": " << at[0] << ' ' << at[1] << ' ' << at[2];
        }
    }
}

TEST(PerlinNoiseDNoise, Takes_the_gradients_at_the_coordinates_not_at_their_fractions)
{
    C3DPerlinNoise noise(71);
    TableOwner const owner(noise);
    ASSERT_EQ(CellOf(noise, 300.25, 0.25, 0.25), CellOf(noise, 44.25, 0.25, 0.25));
    Faces const far = DNoise(noise, 300.25, 0.25, 0.25);
    Faces const near = DNoise(noise, 44.25, 0.25, 0.25);
    EXPECT_NE(far, near);
    // The values grow with the coordinates.
    double greatest = 0;
    for (int i = 0; i < 50; ++i)
    {
        for (double value : DNoise(noise, 1e6 + i + 0.5, 0.5, 0.5))
        {
            greatest = std::max(greatest, std::abs(value));
        }
    }
    EXPECT_GT(greatest, 5e5);
}

TEST(PerlinNoiseDNoise, At_the_origin_of_a_cell_is_the_product_of_its_corner)
{
    C3DPerlinNoise noise(73);
    TableOwner const owner(noise);
    int const * const p = (noise.*NoiseInspector::GetPTable)(0);
    EXPECT_EQ(DNoise(noise, 0, 0, 0), (Faces{0, 0, 0}));
    EXPECT_EQ(DNoise(noise, -0.0, -0.0, -0.0), (Faces{0, 0, 0}));
    double const value = EdgeProduct(CornerHash(p, 3, 5, 7), 3, 5, 7);
    EXPECT_EQ(DNoise(noise, 3, 5, 7), (Faces{value, value, value}));
}

TEST(PerlinNoiseDNoise, Faces_meet_in_the_edges_of_the_cell)
{
    C3DPerlinNoise noise(74);
    TableOwner const owner(noise);
    // On the lower z face c is the noise of the lower edge along x alone where v is 0, and b where w is 0.
    Faces const onEdge = DNoise(noise, 4.375, 9, 2);
    EXPECT_EQ(onEdge[1], onEdge[2]);
    Faces const alongY = DNoise(noise, 4, 9.375, 2);
    EXPECT_EQ(alongY[0], alongY[2]);
    Faces const alongZ = DNoise(noise, 4, 9, 2.375);
    EXPECT_EQ(alongZ[0], alongZ[1]);
    Faces const inside = DNoise(noise, 4.375, 9.25, 2.625);
    EXPECT_NE(inside[0], inside[1]);
    EXPECT_NE(inside[1], inside[2]);
    EXPECT_NE(inside[0], inside[2]);
}

TEST(PerlinNoiseDNoise, May_write_over_the_coordinates)
{
    C3DPerlinNoise noise(75);
    TableOwner const owner(noise);
    Faces const expected = DNoise(noise, 1.25, -7.5, 12.75);
    double x = 1.25;
    double y = -7.5;
    double z = 12.75;
    noise.DNoise(x, y, z, z, x, y);
    EXPECT_EQ(z, expected[0]);
    EXPECT_EQ(x, expected[1]);
    EXPECT_EQ(y, expected[2]);
}

TEST(PerlinNoiseDNoise, Takes_far_and_infinite_coordinates)
{
    C3DPerlinNoise noise(76);
    TableOwner const owner(noise);
    for (double x : {-1e18, 1e18, -0x1p53 - 2, -0x1p31, 0x1p31, -k_Tiny, 1e200, -1e200})
    {
        for (double value : DNoise(noise, x, 0.5, -0.5))
        {
            EXPECT_TRUE(std::isfinite(value)) << x;
            EXPECT_LE(std::abs(value), 2.000001 * (std::abs(x) + 2)) << x;
        }
    }
    Faces const ofNaN = DNoise(noise, 0.5, 0.5, k_NaN);
    EXPECT_TRUE(std::isnan(ofNaN[0]));
    EXPECT_TRUE(std::isnan(ofNaN[1]));
    Faces const ofInfinity = DNoise(noise, k_Infinity, -k_Infinity, 0.5);
    EXPECT_TRUE(std::isnan(ofInfinity[1]));
    EXPECT_TRUE(std::isnan(ofInfinity[2]));
}

TEST(PerlinNoiseDNoise, Gives_every_thread_the_same_values)
{
    C3DPerlinNoise noise(77);
    TableOwner const owner(noise);
    constexpr int valueCount = 500;
    std::array<std::vector<Faces>, 4> found;
    std::vector<std::thread> threads;
    for (std::vector<Faces> & values : found)
    {
        threads.emplace_back(
            [&noise, &values]
            {
                for (int i = 0; i < valueCount; ++i)
                {
                    values.push_back(DNoise(noise, i * 0.37, i * -0.73, i * 1.19));
                }
            });
    }
    for (std::thread & thread : threads)
    {
        thread.join();
    }
    ASSERT_EQ(found[0].size(), static_cast<std::size_t>(valueCount));
    for (std::vector<Faces> const & values : found)
    {
        EXPECT_EQ(values, found[0]);
    }
}
