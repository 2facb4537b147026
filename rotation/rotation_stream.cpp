#include "math/rotation.h"

#include "numeric/chunk_record.h"
#include "numeric/text_form.h"
#include "rotation/angle_constants.h"

#include <ostream>

using math::detail::k_DegreesPerRadian;

unsigned long const C3DRotation::k_dwRotation = 0x524F5441;
unsigned long const C3DRotation::k_dwVersion = 0x40;

long C3DRotation::Save(IStream * stream, int format)
{
    return math::detail::SaveChunk(stream, k_dwRotation, k_dwVersion,
                                   [this, stream, format](CKVStreamHelper & /*helper*/)
                                   {
                                       FreshenAngles();
                                       return m_XYZAngles.Save(stream, format);
                                   });
}

long C3DRotation::Load(IStream * stream)
{
    CKVStreamHelper helper(stream);
    if (stream == nullptr)
    {
        return E_INVALIDARG;
    }
    unsigned long version = 0;
    if (long const result = helper.ChunkReadOpen(k_dwRotation, &version); result < 0)
    {
        return result;
    }
    if (long const result = m_XYZAngles.Load(stream); result < 0)
    {
        return result;
    }
    Set(m_XYZAngles, E3DROTORDER_XYZ);
    return helper.ChunkReadClose();
}

void C3DRotation::DumpQuat(wchar_t const * name, std::ostream & stream)
{
    FreshenQuat();
    math::detail::WriteLabel(name, stream);
    stream << "(Quaternion representation)\n" << m_Quat << '\n';
}

void C3DRotation::DumpMatrix(wchar_t const * name, std::ostream & stream)
{
    FreshenMatrix();
    math::detail::WriteLabel(name, stream);
    stream << "(Rotation Matrix representation)\n" << m_Matrix << '\n';
}

void C3DRotation::DumpAxisAngle(wchar_t const * name, std::ostream & stream)
{
    C3DVector3Tpl<double> axis;
    double angle;
    GetAxisAngle(axis, angle);
    math::detail::WriteLabel(name, stream);
    stream << "(Axis-Angle representation)\n" << axis << ", " << angle * k_DegreesPerRadian << " degrees\n";
}

void C3DRotation::DumpXYZAngles(wchar_t const * name, std::ostream & stream)
{
    FreshenAngles();
    math::detail::WriteLabel(name, stream);
    stream << "(XYZ Euler Angles representation)\n"
           << m_XYZAngles.X * k_DegreesPerRadian << " deg," << m_XYZAngles.Y * k_DegreesPerRadian << " deg,"
           << m_XYZAngles.Z * k_DegreesPerRadian << " deg\n";
}
