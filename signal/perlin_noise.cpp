#include "math/perlin_noise.h"

#include "math/random.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <mutex>
#include <utility>

namespace
{

constexpr int k_CellCount = 256;
/// Tables are stored twice over, so that the hash of a cell needs no wrap.
constexpr int k_TableSize = 2 * k_CellCount;
constexpr int k_GradientCount = 32;

/// A coordinate in the lattice: its cell modulo 256, and where it lies in it.
struct LatticePlace
{
    explicit LatticePlace(double x)
    {
        bool const isBelowZero = !(x >= 0);
        double const magnitude = isBelowZero ? -x : x;
        if (magnitude < 0x1p31) [[likely]]
        {
            // A conversion to int and back truncates faster than a call of the standard library.
            int const whole = static_cast<int>(magnitude);
            cell = whole & (k_CellCount - 1);
            fraction = magnitude - whole;
        }
        else
        {
            cell = std::isfinite(magnitude) ? static_cast<int>(std::fmod(magnitude, k_CellCount)) : 0;
            fraction = magnitude - std::trunc(magnitude);
        }
        if (isBelowZero)
        {
            // From 1 rather than from the next whole number below x, which a double need not have far out.
            cell = k_CellCount - 1 - cell;
            fraction = 1 - fraction;
        }
    }

    int cell;
    double fraction;
};

} // namespace

C3DPerlinNoise::HashHashTable C3DPerlinNoise::grad4hashhash;
bool C3DPerlinNoise::grad4hashhashinited = false;

C3DPerlinNoise::C3DPerlinNoise()
{
    InitHashHash();
}

C3DPerlinNoise::C3DPerlinNoise(unsigned long seed) : C3DPerlinNoise()
{
    GenerateP(0, seed);
}

C3DPerlinNoise::C3DPerlinNoise(C3DPerlinNoise const & other) = default;

C3DPerlinNoise & C3DPerlinNoise::operator=(C3DPerlinNoise const & other)
{
    // By way of a copy: where memory is short, the four arrays stay as they are and of one length.
    C3DPerlinNoise copy(other);
    m_Seeds.swap(copy.m_Seeds);
    m_PTables.swap(copy.m_PTables);
    m_HashHashTables.swap(copy.m_HashHashTables);
    m_P31Tables.swap(copy.m_P31Tables);
    return *this;
}

C3DPerlinNoise::~C3DPerlinNoise() = default;

void C3DPerlinNoise::Dispose()
{
    for (auto * const tables : {&m_PTables, &m_P31Tables, &m_HashHashTables})
    {
        for (int * const table : *tables)
        {
            delete[] table;
        }
    }
}

void C3DPerlinNoise::Init(unsigned long slot, unsigned long seed)
{
    GenerateP(slot, seed);
}

void C3DPerlinNoise::InitHashHash()
{
    static std::mutex building;
    std::lock_guard const lock(building);
    if (grad4hashhashinited)
    {
        return;
    }
    for (int i = 0; i < k_GradientCount; ++i)
    {
        for (int j = 0; j < k_GradientCount; ++j)
        {
            double const(&a)[4] = grad4[i];
            double const(&b)[4] = grad4[j];
            int(&row)[5] = grad4hashhash[i * k_GradientCount + j];
            for (int k = 0; k < 4; ++k)
            {
                row[k] = 3 * (static_cast<int>(a[k]) + 1) + (static_cast<int>(b[k]) + 1);
            }
            // What t - 1 in the second corner adds: the code of (0, 1), (0, 0) or (0, -1).
            row[4] = 4 - static_cast<int>(b[3]);
        }
    }
    grad4hashhashinited = true;
}

void C3DPerlinNoise::GenerateP(unsigned long slot, unsigned long seed)
{
    seed &= 0xFFFFFFFF;
    if (m_Seeds.size() <= slot)
    {
        // The successor of the last number is 0; no array has so many slots. The seeds grow last, as it is they that
        // tell how many slots there are.
        std::size_t const slotCount = std::size_t{slot} + 1;
        m_PTables.resize(slotCount != 0 ? slotCount : slot);
        m_HashHashTables.resize(slotCount);
        m_P31Tables.resize(slotCount);
        m_Seeds.resize(slotCount);
    }
    if (m_PTables[slot] == nullptr)
    {
        auto table = std::make_unique<int[]>(k_TableSize);
        auto p31Table = std::make_unique<int[]>(k_TableSize);
        auto hashHashTable = std::make_unique<int[]>(k_TableSize);
        m_PTables[slot] = table.release();
        m_P31Tables[slot] = p31Table.release();
        m_HashHashTables[slot] = hashHashTable.release();
    }
    else if (m_Seeds[slot] == seed)
    {
        return;
    }
    m_Seeds[slot] = seed;
    int * const p = m_PTables[slot];
    int * const p31 = m_P31Tables[slot];
    int * const hashHash = m_HashHashTables[slot];
    for (int i = 0; i < k_CellCount; ++i)
    {
        p[i] = i;
    }
    unsigned long state = seed;
    for (int i = 0; i < k_CellCount; ++i)
    {
        constexpr double cellsPerStep = 5.960464478926841e-8; // 256 / (2^32 - 1)
        std::swap(p[i], p[static_cast<int>(static_cast<double>(F3DQuickRand(state)) * cellsPerStep)]);
    }
    for (int i = 0; i < k_TableSize; ++i)
    {
        p[i] = p[i % k_CellCount];
        p31[i] = p[i] % k_GradientCount;
    }
    for (int i = 0; i < k_TableSize; ++i)
    {
        hashHash[i] = p31[i] * k_GradientCount + p31[(i + 1) % k_CellCount];
    }
}

int C3DPerlinNoise::FastFloor(double x)
{
    constexpr double most = std::numeric_limits<int>::max();
    constexpr double least = std::numeric_limits<int>::min() + 1;
    if (!(x > 0))
    {
        return static_cast<int>(x >= least ? x : (x < least ? least : 0)) - 1;
    }
    return static_cast<int>(x < most ? x : most);
}

double C3DPerlinNoise::fade(double t)
{
    return ((t * 6 - 15) * t + 10) * t * t * t;
}

double C3DPerlinNoise::lerp(double t, double a, double b)
{
    return (b - a) * t + a;
}

double C3DPerlinNoise::Dot(double const * g, double x, double y)
{
    return g[0] * x + g[1] * y;
}

double C3DPerlinNoise::Dot(double const * g, double x, double y, double z)
{
    return g[0] * x + g[1] * y + g[2] * z;
}

double C3DPerlinNoise::Dot(double const * g, double x, double y, double z, double t)
{
    return g[0] * x + g[1] * y + g[2] * z + g[3] * t;
}

double C3DPerlinNoise::grad(int h, double x)
{
    return (h & 1) != 0 ? x : -x;
}

double C3DPerlinNoise::grad(int h, double x, double y)
{
    switch (h & 3)
    {
    case 0:
        return x + y;
    case 1:
        return y - x;
    case 2:
        return -x - y;
    default:
        return x - y;
    }
}

double C3DPerlinNoise::grad(int h, double x, double y, double z)
{
    int const g = h & 15;
    bool const isXY = g == 12 || g == 13;
    double const u = g >= 8 && !isXY ? y : x;
    double const v = g >= 4 && !isXY ? z : y;
    return ((h & 1) != 0 ? -u : u) + ((h & 2) != 0 ? -v : v);
}

double C3DPerlinNoise::grad(int h, double x, double y, double z, double t)
{
    return Dot(grad4[h], x, y, z, t);
}

void C3DPerlinNoise::split(double x, double & frac, int & cell, double & fadeOut) const
{
    LatticePlace const place(x);
    frac = place.fraction;
    cell = place.cell;
    fadeOut = fade(place.fraction);
}

void C3DPerlinNoise::calculate3D(double x, double y, double z, double & u, double & v, double & w, int & AA, int & AB,
                                 int & BA, int & BB) const
{
    double fraction = 0;
    int cellX = 0;
    int cellY = 0;
    int cellZ = 0;
    split(x, fraction, cellX, u);
    split(y, fraction, cellY, v);
    split(z, fraction, cellZ, w);
    int const * const p = m_PTables[0];
    int const a = p[cellX] + cellY;
    int const b = p[cellX + 1] + cellY;
    AA = p[a] + cellZ;
    AB = p[a + 1] + cellZ;
    BA = p[b] + cellZ;
    BB = p[b + 1] + cellZ;
}

void C3DPerlinNoise::DNoise(double x, double y, double z, double & a, double & b, double & c) const
{
    double u = 0;
    double v = 0;
    double w = 0;
    int aa = 0;
    int ab = 0;
    int ba = 0;
    int bb = 0;
    calculate3D(x, y, z, u, v, w, aa, ab, ba, bb);
    int const * const p = m_PTables[0];
    auto const gradient = [p](int n, double px, double py, double pz) { return grad(p[n] & 15, px, py, pz); };
    // The corners of the cell, named by what is added to x, y and z.
    double const g000 = gradient(aa, x, y, z);
    double const g100 = gradient(ba, x - 1, y, z);
    double const g010 = gradient(ab, x, y - 1, z);
    double const g110 = gradient(bb, x - 1, y - 1, z);
    double const g001 = gradient(aa + 1, x, y, z - 1);
    double const g101 = gradient(ba + 1, x - 1, y, z - 1);
    double const g011 = gradient(ab + 1, x, y - 1, z - 1);
    double const alongX = lerp(u, g000, g100);
    c = lerp(v, alongX, lerp(u, g010, g110));
    b = lerp(w, alongX, lerp(u, g001, g101));
    a = lerp(v, lerp(w, g000, g001), lerp(w, g010, g011));
}

double C3DPerlinNoise::lerpgradt(double const * w, int const * p31, int i, double x, double y, double z, double t) const
{
    int const(&row)[5] = grad4hashhash[p31[i] * k_GradientCount + p31[i + 1]];
    return x * w[row[0]] + y * w[row[1]] + z * w[row[2]] + t * w[row[3]] + w[row[4]];
}

double C3DPerlinNoise::lerpgradxt(double const * w, double f, int const * p31, int i, int j, double x, double y,
                                  double z, double t) const
{
    return lerp(f, lerpgradt(w, p31, i, x, y, z, t), lerpgradt(w, p31, j, x - 1, y, z, t));
}

int * C3DPerlinNoise::GetPTable(unsigned long slot) const
{
    return m_PTables[slot];
}

int * C3DPerlinNoise::GetP31Table(unsigned long slot) const
{
    return m_P31Tables[slot];
}

int * C3DPerlinNoise::GetHashHashTable(unsigned long slot) const
{
    return m_HashHashTables[slot];
}
