// The first calls of the page on persistence. The program fails where they do not give what the page says.

//! [first call]
#include <math/platform/memory_stream.h>
#include <math/platform/result.h>
#include <math/rotation.h>

int main()
{
    CMemoryStream * const stream = CMemoryStream::Create();
    if (stream == nullptr)
    {
        return 1;
    }
    C3DRotation saved(0.1, 7, 0.3, E3DROTORDER_ZXY);
    C3DRotation loaded;
    bool isDone = saved.Save(stream, 0) >= 0; // a chunk: tag, version, length, then the angles
    isDone = isDone && stream->Seek(0, STREAM_SEEK_SET, nullptr) >= 0;
    isDone = isDone && loaded.Load(stream) >= 0;
    loaded.Set(E3DROTORDER_ZXY, 0); // the order is not in the chunk: the same angles, read in it

    bool const isAtEnd = loaded.Load(stream) < 0; // nothing is left to read: a failure, told by the sign
    stream->Release();                            // the creator gives its reference back
    double x = 0;
    double y = 0;
    double z = 0;
    loaded.GetXYZAngles(x, y, z);
    return isDone && isAtEnd && y == 7 ? 0 : 1;
}
//! [first call]
