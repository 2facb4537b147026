#include "exports/exported.h"
#include "signal/noise_inspector.h"

using exported::Constructor;
using exported::Data;
using exported::Function;
using exported::Member;
using math::detail::NoiseInspector;

TEST(Exports, Gradient_noise)
{
    Constructor<C3DPerlinNoise>();
    C3DPerlinNoise seeded(1UL);
    Constructor<C3DPerlinNoise>(seeded);
    seeded.Dispose();
    Member<C3DPerlinNoise &(C3DPerlinNoise const &)>(&C3DPerlinNoise::operator=);
    Member(&C3DPerlinNoise::Dispose);
    Member(&C3DPerlinNoise::Init);
    Member(&C3DPerlinNoise::DNoise);
    Data(C3DPerlinNoise::grad3);
    Data(C3DPerlinNoise::grad4);
    Data(C3DPerlinNoise::simplex);
}

TEST(Exports, Pieces_of_gradient_noise_that_evaluators_of_clients_are_built_from)
{
    Function(NoiseInspector::InitHashHash);
    Function(NoiseInspector::fade);
    Function(NoiseInspector::lerp);
    Function(NoiseInspector::FastFloor);
    Function(NoiseInspector::grad1D);
    Function(NoiseInspector::grad2D);
    Function(NoiseInspector::grad3D);
    Function(NoiseInspector::grad4D);
    Function(NoiseInspector::Dot2D);
    Function(NoiseInspector::Dot3D);
    Function(NoiseInspector::Dot4D);
    Member(NoiseInspector::GenerateP);
    Member(NoiseInspector::split);
    Member(NoiseInspector::calculate3D);
    Member(NoiseInspector::lerpgradt);
    Member(NoiseInspector::lerpgradxt);
    Member(NoiseInspector::GetPTable);
    Member(NoiseInspector::GetP31Table);
    Member(NoiseInspector::GetHashHashTable);
    Data(NoiseInspector::grad4hashhash);
    Data(NoiseInspector::grad4hashhashinited);
}

namespace
{

/// Whether the library has a symbol of this name, whatever the program itself holds.
bool IsInLibrary(char const * mangledName)
{
    Dl_info info{};
    if (dladdr(C3DPerlinNoise::grad3, &info) == 0)
    {
        return false;
    }
    void * const library = dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    bool const isThere = library != nullptr && dlsym(library, mangledName) != nullptr;
    if (library != nullptr)
    {
        dlclose(library);
    }
    return isThere;
}

} // namespace

TEST(Exports, Special_members_of_gradient_noise_are_in_the_library)
{
    // They have no address that a program could take.
    EXPECT_TRUE(IsInLibrary("_ZN14C3DPerlinNoiseC1Ev"));
    EXPECT_TRUE(IsInLibrary("_ZN14C3DPerlinNoiseC1Em"));
    EXPECT_TRUE(IsInLibrary("_ZN14C3DPerlinNoiseC1ERKS_"));
    EXPECT_TRUE(IsInLibrary("_ZN14C3DPerlinNoiseD1Ev"));
    EXPECT_FALSE(IsInLibrary("_ZN14C3DPerlinNoiseC1Eb"));
}
