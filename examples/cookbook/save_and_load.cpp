// A tool keeps poses in its scene file. Objects write chunks and refuse what is cut short. A chunk holds the angles of
// a rotation but not their order, so the tool writes that in front; and it loads into a fresh object, so that a bad
// file leaves the scene as it was.

#include <math/platform/memory_stream.h>
#include <math/platform/stream_helper.h>
#include <math/transformation.h>

#include <cstddef>
#include <cstdio>
#include <memory>

// Create gives one reference, to be given back.
using MemoryStream = std::unique_ptr<CMemoryStream, decltype([](CMemoryStream * stream) { stream->Release(); })>;

// Leaves the pose as it was where anything fails.
bool Load(C3DTransfo & pose, IStream * stream)
{
    unsigned char order = 0;
    C3DTransfo loaded;
    if (CKVStreamHelper(stream).GetUInt8(&order) < 0 || order > E3DROTORDER_ZYX || loaded.Load(stream) < 0)
    {
        return false;
    }
    loaded.SetRotation(static_cast<tagE3DROTORDER>(order), 0); // the same angles, read in the order they were keyed in
    pose.Set(loaded);
    return true;
}

int main()
{
    C3DTransfo pose;
    pose.SetRotation(E3DROTORDER_XZY, 0);
    pose.SetRotation(0.5, 7, 0.25); // more than a whole turn about Y
    MemoryStream const file(CMemoryStream::Create());
    if (file == nullptr || CKVStreamHelper(file.get()).PutUInt8(E3DROTORDER_XZY) < 0 || pose.Save(file.get(), 0) < 0 ||
        file->Seek(0, STREAM_SEEK_SET, nullptr) < 0)
    {
        return 1;
    }
    C3DTransfo loaded;
    bool const isLoaded = Load(loaded, file.get());
    C3DVector3Tpl<double> angles;
    loaded.GetRotation(angles);
    std::printf("loaded: %s, angles %.2f %.2f %.2f\n", isLoaded ? "yes" : "no", angles.X, angles.Y, angles.Z);
    std::printf("the same rotation: %s\n", AreAlmostEqual(*loaded.GetRotation(), *pose.GetRotation()) ? "yes" : "no");
    loaded.SetRotation(E3DROTORDER_XYZ, 0); // what the chunk alone would give
    std::printf("without the order: %s\n", AreAlmostEqual(*loaded.GetRotation(), *pose.GetRotation()) ? "yes" : "no");

    std::size_t refused = 0;
    std::size_t const size = file->GetBytes().size();
    for (std::size_t count = 0; count < size; ++count)
    {
        MemoryStream const cut(CMemoryStream::Create(file->GetBytes().data(), count));
        refused += cut != nullptr && !Load(pose, cut.get()) ? 1 : 0;
    }
    pose.GetRotation(angles);
    std::printf("cut after 0 to %zu bytes: refused %zu times, still %.2f %.2f %.2f\n", size - 1, refused, angles.X,
                angles.Y, angles.Z);
}
