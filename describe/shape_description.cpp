#include "math/shape_description.h"

#include "math/platform/stream_helper.h"

#include <cwchar>
#include <type_traits>

static_assert(sizeof(C3DShapeDescription) == 12 && std::is_standard_layout_v<C3DShapeDescription>);

unsigned int const C3DShapeDescription::k_ShapeTypeNameMaxSize;

namespace
{

/// The parameters in a stream: four bytes of the identifier, the flag, and three that are not used.
constexpr unsigned long k_RecordSize = 8;
constexpr int k_FlagPlace = 4;

/// Null for a value that names no shape.
wchar_t const * FindName(C3DShapeDescription::E3DShapeType type)
{
    switch (type)
    {
    case C3DShapeDescription::E3DSHAPETYPE_POINT:
        return L"Point";
    case C3DShapeDescription::E3DSHAPETYPE_SEGMENT:
        return L"Segment";
    case C3DShapeDescription::E3DSHAPETYPE_DISC:
        return L"Disc";
    case C3DShapeDescription::E3DSHAPETYPE_RECTANGLE:
        return L"Rectangle";
    case C3DShapeDescription::E3DSHAPETYPE_SPHERE:
        return L"Sphere";
    case C3DShapeDescription::E3DSHAPETYPE_BOX:
        return L"Box";
    case C3DShapeDescription::E3DSHAPETYPE_CYLINDER:
        return L"Cylinder";
    case C3DShapeDescription::E3DSHAPETYPE_CAPSULE:
        return L"Capsule";
    case C3DShapeDescription::E3DSHAPETYPE_CONE:
        return L"Cone";
    case C3DShapeDescription::E3DSHAPETYPE_BLOB:
        return L"Blob";
    case C3DShapeDescription::E3DSHAPETYPE_INSTANCE:
        return L"Instance";
    case C3DShapeDescription::E3DSHAPETYPE_REFERENCE:
        return L"Reference";
    }
    return nullptr;
}

} // namespace

C3DShapeDescription::C3DShapeDescription(E3DShapeType type) : m_Type(type), m_Reference{0, false} {}

C3DShapeDescription::C3DShapeDescription(C3DShapeDescription const & other) : C3DShapeDescription()
{
    Set(other);
}

void C3DShapeDescription::Set(C3DShapeDescription const & other)
{
    m_Type = other.m_Type;
    if (m_Type == E3DSHAPETYPE_INSTANCE)
    {
        m_Reference.identifier = other.m_Reference.identifier;
    }
    else if (m_Type == E3DSHAPETYPE_REFERENCE)
    {
        m_Reference = other.m_Reference;
    }
}

C3DShapeDescription & C3DShapeDescription::operator=(C3DShapeDescription const & other) = default;

bool C3DShapeDescription::operator==(C3DShapeDescription const & other) const
{
    if (m_Type != other.m_Type)
    {
        return false;
    }
    bool const isSameObject = m_Reference.identifier == other.m_Reference.identifier;
    switch (m_Type)
    {
    case E3DSHAPETYPE_INSTANCE:
        return isSameObject;
    case E3DSHAPETYPE_REFERENCE:
        return isSameObject && m_Reference.flag == other.m_Reference.flag;
    default:
        return true;
    }
}

bool C3DShapeDescription::IsAlmostEqual(C3DShapeDescription const & other, float /*epsilon*/) const
{
    return *this == other;
}

bool C3DShapeDescription::IsTrivial() const
{
    return (m_Type & 0x80) == 0;
}

C3DShapeDescription::E3DShapeType C3DShapeDescription::GetType() const
{
    return m_Type;
}

void C3DShapeDescription::SetAsTrivial(E3DShapeType type)
{
    m_Type = type;
}

void C3DShapeDescription::SetAsInstance(unsigned long id)
{
    m_Type = E3DSHAPETYPE_INSTANCE;
    m_Reference.identifier = static_cast<std::uint32_t>(id & 0xFFFFFFFF);
}

void C3DShapeDescription::SetAsReference(unsigned long id, bool flag)
{
    m_Type = E3DSHAPETYPE_REFERENCE;
    m_Reference = {static_cast<std::uint32_t>(id & 0xFFFFFFFF), flag};
}

C3DShapeDescription::S3DShapeParameters_Instance const & C3DShapeDescription::GetInstanceDescription() const
{
    return m_Instance; // the identifier is the common beginning of both
}

C3DShapeDescription::S3DShapeParameters_Reference const & C3DShapeDescription::GetReferenceDescription() const
{
    return m_Reference;
}

void C3DShapeDescription::GetShapeTypeName(E3DShapeType type, wchar_t * buffer)
{
    wchar_t const * const name = FindName(type);
    if (buffer != nullptr && name != nullptr)
    {
        std::wcsncpy(buffer, name, k_ShapeTypeNameMaxSize);
    }
}

long C3DShapeDescription::Save(IStream * stream, int /*format*/) const
{
    CKVStreamHelper helper(stream);
    char record[k_RecordSize] = {};
    for (int i = 0; i < k_FlagPlace; ++i)
    {
        record[i] = static_cast<char>(m_Reference.identifier >> (8 * i) & 0xFF);
    }
    record[k_FlagPlace] = m_Reference.flag ? 1 : 0;
    static_cast<void>(helper.PutUInt8(m_Type));
    static_cast<void>(helper.PutByteArray(record, k_RecordSize));
    return 0;
}

long C3DShapeDescription::Load(IStream * stream)
{
    CKVStreamHelper helper(stream);
    unsigned char type = m_Type;
    char record[k_RecordSize] = {};
    static_cast<void>(helper.GetUInt8(&type));
    m_Type = static_cast<E3DShapeType>(type);
    if (helper.GetByteArray(record, k_RecordSize) < 0)
    {
        return 0;
    }
    std::uint32_t identifier = 0;
    for (int i = 0; i < k_FlagPlace; ++i)
    {
        identifier |= static_cast<std::uint32_t>(static_cast<unsigned char>(record[i])) << (8 * i);
    }
    m_Reference = {identifier, record[k_FlagPlace] != 0};
    return 0;
}
