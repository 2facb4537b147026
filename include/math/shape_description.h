#pragma once

/// \file
/// The kind of shape by which an object is drawn or collided.

#include "math/api.h"

#include <cstdint>

class IStream;

/// A kind of shape. Two kinds are not trivial, and link to another object by its identifier, of 32 bits.
class MATH_API C3DShapeDescription
{
public:
    /// The kinds, with the names that users read. Values with the bit 128 are not trivial.
    enum E3DShapeType : unsigned char
    {
        E3DSHAPETYPE_POINT = 0,      ///< "Point"
        E3DSHAPETYPE_SEGMENT = 1,    ///< "Segment"
        E3DSHAPETYPE_DISC = 2,       ///< "Disc"
        E3DSHAPETYPE_RECTANGLE = 3,  ///< "Rectangle"
        E3DSHAPETYPE_SPHERE = 4,     ///< "Sphere"
        E3DSHAPETYPE_BOX = 5,        ///< "Box"
        E3DSHAPETYPE_CYLINDER = 6,   ///< "Cylinder"
        E3DSHAPETYPE_CAPSULE = 7,    ///< "Capsule"
        E3DSHAPETYPE_CONE = 8,       ///< "Cone"
        E3DSHAPETYPE_BLOB = 9,       ///< "Blob"
        E3DSHAPETYPE_INSTANCE = 128, ///< "Instance": the shape of another object
        E3DSHAPETYPE_REFERENCE = 129 ///< "Reference": another object, with a flag
    };

    /// What an instance has.
    struct S3DShapeParameters_Instance
    {
        std::uint32_t identifier; ///< of the object that the shape is an instance of
    };

    /// What a reference has.
    struct S3DShapeParameters_Reference
    {
        std::uint32_t identifier; ///< of the object referred to
        bool flag;                ///< the application's, kept and compared with the identifier
    };

    /// The size, in `wchar_t`, of a buffer for the name of a type.
    static unsigned int const k_ShapeTypeNameMaxSize = 32; // the value stands here, so that it can size an array

    /// The identifier is 0 and the flag false until the type is one that sets them.
    C3DShapeDescription(E3DShapeType type = E3DSHAPETYPE_POINT); // NOLINT(google-explicit-constructor)

    /// Copy the type and its parameters; a trivial type has none, and the copy keeps its own.
    ///@{
    C3DShapeDescription(C3DShapeDescription const & other);
    void Set(C3DShapeDescription const & other);
    ///@}

    /// Copies the object whole, with the parameters that a trivial type does not use.
    C3DShapeDescription & operator=(C3DShapeDescription const & other);

    /// Whether the types are the same, and the parameters that the type has. The tolerance plays no part.
    ///@{
    bool operator==(C3DShapeDescription const & other) const;
    bool IsAlmostEqual(C3DShapeDescription const & other, float epsilon) const;
    ///@}

    /// Whether the type has no link, true of the values 0 to 127.
    bool IsTrivial() const;
    /// The type byte, any of its values.
    E3DShapeType GetType() const;

    /// Sets the type alone; the parameters stay as they are. The type is not checked.
    void SetAsTrivial(E3DShapeType type);
    /// An instance of the object with this identifier, whose low 32 bits are kept. The flag stays.
    void SetAsInstance(unsigned long id);
    /// A reference to the object with this identifier, whose low 32 bits are kept.
    void SetAsReference(unsigned long id, bool flag);

    /// The parameters, whatever the type: the identifier of both stands in one place.
    ///@{
    S3DShapeParameters_Instance const & GetInstanceDescription() const;
    S3DShapeParameters_Reference const & GetReferenceDescription() const;
    ///@}

    /// The name that users read, padded with zeros to `k_ShapeTypeNameMaxSize` characters. A null buffer, and a value
    /// that names no shape, write nothing.
    static void GetShapeTypeName(E3DShapeType type, wchar_t * buffer);

    /// Writes the type as a byte and the parameters as 8: the identifier, little-endian, the flag, and three zeros.
    /// They mean nothing for a trivial type. The result is always 0.
    long Save(IStream * stream, int format) const;
    /// Reads what Save writes. What cannot be read stays; the result is always 0.
    long Load(IStream * stream);

private:
    E3DShapeType m_Type;
    union
    {
        S3DShapeParameters_Instance m_Instance;
        S3DShapeParameters_Reference m_Reference;
    };
};
