#pragma once

/// \file
/// The variant record and the safe arrays of the automation world.

#include "math/api.h"
#include "math/platform/result.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

inline constexpr unsigned short VT_EMPTY = 0;      ///< Nothing.
inline constexpr unsigned short VT_I2 = 2;         ///< 16-bit signed integer.
inline constexpr unsigned short VT_I4 = 3;         ///< 32-bit signed integer.
inline constexpr unsigned short VT_R4 = 4;         ///< `float`.
inline constexpr unsigned short VT_R8 = 5;         ///< `double`.
inline constexpr unsigned short VT_BOOL = 11;      ///< 16-bit truth value: 0 or -1.
inline constexpr unsigned short VT_VARIANT = 12;   ///< `KVVARIANT`.
inline constexpr unsigned short VT_I1 = 16;        ///< 8-bit signed integer.
inline constexpr unsigned short VT_UI1 = 17;       ///< 8-bit unsigned integer.
inline constexpr unsigned short VT_UI2 = 18;       ///< 16-bit unsigned integer.
inline constexpr unsigned short VT_UI4 = 19;       ///< 32-bit unsigned integer.
inline constexpr unsigned short VT_I8 = 20;        ///< 64-bit signed integer.
inline constexpr unsigned short VT_UI8 = 21;       ///< 64-bit unsigned integer.
inline constexpr unsigned short VT_ARRAY = 0x2000; ///< Bit: a safe array of the type beside it.
inline constexpr unsigned short VT_BYREF = 0x4000; ///< Bit: a pointer to the value, which is not owned.
inline constexpr long DISP_E_BADINDEX = math::detail::MakeResult(0x8002000BU); ///< An index outside the bounds.

/// An array with its element type and bounds. Made by `SafeArrayCreate`, reached only through the functions below.
struct SAFEARRAY;

/// One dimension of a safe array: the indices `lLbound` to `lLbound + cElements - 1`.
struct SAFEARRAYBOUND
{
    unsigned long cElements; ///< Number of elements.
    long lLbound;            ///< Lowest index.
};

/// A value with its type: the type, three reserved words, eight bytes of value. Which member of the union holds the
/// value is told by `vt`.
struct KVVARIANT
{
    std::uint16_t vt;         ///< One of the `VT_` constants.
    std::uint16_t wReserved1; ///< Not used.
    std::uint16_t wReserved2; ///< Not used.
    std::uint16_t wReserved3; ///< Not used.
    union
    {
        std::int8_t cVal;     ///< `VT_I1`
        std::uint8_t bVal;    ///< `VT_UI1`
        std::int16_t iVal;    ///< `VT_I2`
        std::uint16_t uiVal;  ///< `VT_UI2`
        std::int16_t boolVal; ///< `VT_BOOL`
        std::int32_t lVal;    ///< `VT_I4`
        std::uint32_t ulVal;  ///< `VT_UI4`
        std::int64_t llVal;   ///< `VT_I8`
        std::uint64_t ullVal; ///< `VT_UI8`
        float fltVal;         ///< `VT_R4`
        double dblVal;        ///< `VT_R8`
        SAFEARRAY * parray;   ///< `VT_ARRAY`
        void * byref;         ///< `VT_BYREF`
    };
};

static_assert(sizeof(KVVARIANT) == 16 && offsetof(KVVARIANT, vt) == 0 && offsetof(KVVARIANT, dblVal) == 8);
static_assert(offsetof(KVVARIANT, wReserved1) == 2 && offsetof(KVVARIANT, wReserved3) == 6);
static_assert(std::is_standard_layout_v<KVVARIANT> && std::is_trivially_copyable_v<KVVARIANT>);

/// Makes an array of zeros (empty variants for `VT_VARIANT`).
/// \param type element type: `VT_VARIANT`, `VT_BOOL` or one of the number types
/// \param dimensions number of dimensions, 1 to 64
/// \param bounds one bound per dimension; no elements in a dimension are allowed, and make the array empty
/// \return the array, to be destroyed by the caller; null for any other type or number of dimensions, for null
/// `bounds`, for an index range or a size that cannot be counted, and when memory is short
MATH_API SAFEARRAY * SafeArrayCreate(unsigned short type, unsigned int dimensions, SAFEARRAYBOUND const * bounds);

/// Destroys the array and returns `S_OK`; a null array is nothing to destroy.
MATH_API long SafeArrayDestroy(SAFEARRAY * array);

/// The number of dimensions; 0 for a null array.
MATH_API unsigned int SafeArrayGetDim(SAFEARRAY const * array);

/// Gives the lowest index of a dimension. Dimensions count from 1.
/// \return `S_OK`; `E_INVALIDARG` for a null array; `DISP_E_BADINDEX` for a dimension that the array has not;
/// `E_POINTER` for a null `bound`
MATH_API long SafeArrayGetLBound(SAFEARRAY const * array, unsigned int dimension, long * bound);

/// Gives the highest index of a dimension, one below the lowest where the dimension has no elements. Otherwise like
/// `SafeArrayGetLBound`.
MATH_API long SafeArrayGetUBound(SAFEARRAY const * array, unsigned int dimension, long * bound);

/// Copies an element out.
/// \param array the array
/// \param indices one index per dimension, the first dimension's first
/// \param element room for one element
/// \return `S_OK`; `E_INVALIDARG` for a null array; `E_POINTER` for another null pointer; `DISP_E_BADINDEX` for an
/// index outside the bounds. `element` is unwritten on failure.
MATH_API long SafeArrayGetElement(SAFEARRAY const * array, long const * indices, void * element);

/// Copies an element in. Arguments and codes are those of `SafeArrayGetElement`; beyond them, `E_NOTIMPL` for a variant
/// that owns an array, since elements are copied by their bytes and an array must have one owner. The array is
/// unchanged on failure.
MATH_API long SafeArrayPutElement(SAFEARRAY * array, long const * indices, void const * element);
