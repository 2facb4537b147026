#pragma once

/// \file
/// The kind of icon that stands for an object.

#include "math/api.h"
#include "math/platform/qn_string.h"

class IStream;

/// A kind of display icon.
class MATH_API C3DIconDescription
{
public:
    /// The kinds, with the names that users read.
    enum E3DIconType : int
    {
        E3DICONTYPE_NONE = 0,   ///< no icon, "None"
        E3DICONTYPE_NULL = 1,   ///< "Null"
        E3DICONTYPE_BOX = 2,    ///< "Box"
        E3DICONTYPE_SPHERE = 3, ///< "Sphere"
        E3DICONTYPE_SQUARE = 4, ///< "Square"
        E3DICONTYPE_CIRCLE = 5, ///< "Circle"
        E3DICONTYPE_BONE = 6,   ///< "Bone"
        E3DICONTYPE_CUSTOM = 7  ///< "Custom"
    };

    /// None.
    C3DIconDescription();

    /// Copy the whole type, a value that names no icon too.
    ///@{
    C3DIconDescription(C3DIconDescription const & other);
    C3DIconDescription & operator=(C3DIconDescription const & other);
    void Set(C3DIconDescription const & other);
    ///@}

    /// Whether the types are the same. The tolerance plays no part.
    ///@{
    bool operator==(C3DIconDescription const & other) const;
    bool IsAlmostEqual(C3DIconDescription const & other, float epsilon) const;
    ///@}

    /// The type, any value of 32 bits.
    ///@{
    E3DIconType GetIconType() const;
    void SetIconType(E3DIconType type);
    ///@}

    /// The name that users read; empty for a value that names no icon.
    ///@{
    static CQNString GetIconTypeName(E3DIconType type);
    CQNString GetIconTypeName() const;
    ///@}

    /// Writes the low byte of the type. The result is always 0.
    long Save(IStream * stream, int format) const;
    /// Reads a byte into the low byte of the type, **and leaves its other bytes**. What cannot be read stays; the
    /// result is always 0.
    long Load(IStream * stream);

private:
    E3DIconType m_Type = E3DICONTYPE_NONE;
};
