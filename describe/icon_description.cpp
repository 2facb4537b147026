#include "math/icon_description.h"

#include "math/platform/stream_helper.h"

#include <cstdint>
#include <type_traits>

static_assert(sizeof(C3DIconDescription) == 4 && std::is_standard_layout_v<C3DIconDescription>);

C3DIconDescription::C3DIconDescription() = default;

C3DIconDescription::C3DIconDescription(C3DIconDescription const & other) = default;

C3DIconDescription & C3DIconDescription::operator=(C3DIconDescription const & other) = default;

void C3DIconDescription::Set(C3DIconDescription const & other)
{
    m_Type = other.m_Type;
}

bool C3DIconDescription::operator==(C3DIconDescription const & other) const
{
    return m_Type == other.m_Type;
}

bool C3DIconDescription::IsAlmostEqual(C3DIconDescription const & other, float /*epsilon*/) const
{
    return *this == other;
}

C3DIconDescription::E3DIconType C3DIconDescription::GetIconType() const
{
    return m_Type;
}

void C3DIconDescription::SetIconType(E3DIconType type)
{
    m_Type = type;
}

CQNString C3DIconDescription::GetIconTypeName(E3DIconType type)
{
    switch (type)
    {
    case E3DICONTYPE_NONE:
        return L"None";
    case E3DICONTYPE_NULL:
        return L"Null";
    case E3DICONTYPE_BOX:
        return L"Box";
    case E3DICONTYPE_SPHERE:
        return L"Sphere";
    case E3DICONTYPE_SQUARE:
        return L"Square";
    case E3DICONTYPE_CIRCLE:
        return L"Circle";
    case E3DICONTYPE_BONE:
        return L"Bone";
    case E3DICONTYPE_CUSTOM:
        return L"Custom";
    }
    return L"";
}

CQNString C3DIconDescription::GetIconTypeName() const
{
    return GetIconTypeName(m_Type);
}

long C3DIconDescription::Save(IStream * stream, int /*format*/) const
{
    CKVStreamHelper helper(stream);
    static_cast<void>(helper.PutUInt8(static_cast<unsigned char>(m_Type & 0xFF)));
    return 0;
}

long C3DIconDescription::Load(IStream * stream)
{
    CKVStreamHelper helper(stream);
    auto const bits = static_cast<std::uint32_t>(m_Type);
    auto low = static_cast<unsigned char>(bits & 0xFF);
    static_cast<void>(helper.GetUInt8(&low));
    m_Type = static_cast<E3DIconType>((bits & 0xFFFFFF00U) | low);
    return 0;
}
