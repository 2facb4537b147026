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
    enum E3DIconType : int
    {
        E3DICONTYPE_NONE = 0,
        E3DICONTYPE_NULL = 1,
        E3DICONTYPE_BOX = 2,
        E3DICONTYPE_SPHERE = 3,
        E3DICONTYPE_SQUARE = 4,
        E3DICONTYPE_CIRCLE = 5,
        E3DICONTYPE_BONE = 6,
        E3DICONTYPE_CUSTOM = 7
    };

    /// None.
    C3DIconDescription();
    C3DIconDescription(C3DIconDescription const & other);
    C3DIconDescription & operator=(C3DIconDescription const & other);
    void Set(C3DIconDescription const & other);

    /// Whether the types are the same. The tolerance plays no part.
    ///@{
    bool operator==(C3DIconDescription const & other) const;
    bool IsAlmostEqual(C3DIconDescription const & other, float epsilon) const;
    ///@}

    E3DIconType GetIconType() const;
    void SetIconType(E3DIconType type);

    /// The name that users read; empty for a value that names no icon.
    ///@{
    static CQNString GetIconTypeName(E3DIconType type);
    CQNString GetIconTypeName() const;
    ///@}

    /// Writes the low byte of the type. The result is always 0.
    long Save(IStream * stream, int format) const;
    /// Reads a byte into the low byte of the type, **and leaves its other bytes.** What cannot be read stays; the
    /// result is always 0.
    long Load(IStream * stream);

private:
    E3DIconType m_Type = E3DICONTYPE_NONE;
};
