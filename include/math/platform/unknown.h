#pragma once

/// \file
/// Interface identifiers and the root of all reference-counted interfaces.

#include "math/api.h"

#include <cstdint>
#include <type_traits>

/// A sixteen-byte identifier, written {Data1-Data2-Data3-Data4[0..1]-Data4[2..7]} in text. Two are equal when all
/// sixteen bytes are.
struct _GUID // NOLINT(bugprone-reserved-identifier): the name is the platform's
{
    std::uint32_t Data1;   ///< The first four bytes.
    std::uint16_t Data2;   ///< Bytes 4 and 5.
    std::uint16_t Data3;   ///< Bytes 6 and 7.
    std::uint8_t Data4[8]; ///< The last eight bytes.

    /// True when all sixteen bytes agree.
    friend constexpr bool operator==(_GUID const & a, _GUID const & b) = default;
};

static_assert(sizeof(_GUID) == 16);
static_assert(std::is_standard_layout_v<_GUID> && std::is_trivially_copyable_v<_GUID>);

/// {00000000-0000-0000-C000-000000000046}
inline constexpr _GUID IID_IUnknown{0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

/// Root of the reference-counted interfaces. An object lives until the `Release` that takes its count to zero, so it is
/// never deleted through an interface: the destructor is not public, and takes no slot among the operations.
class MATH_API IUnknown
{
public:
    /// Gives another interface of the same object, with one reference added.
    /// \param iid the interface asked for
    /// \param out receives the interface, or null
    /// \return `S_OK`; `E_NOINTERFACE` when the object lacks it; `E_POINTER` when `out` is null
    virtual long QueryInterface(_GUID const & iid, void ** out) = 0;

    /// Adds a reference and returns the new count.
    virtual unsigned long AddRef() = 0;

    /// Gives a reference back and returns the new count; at zero the object is gone.
    virtual unsigned long Release() = 0;

protected:
    ~IUnknown() = default;
};
