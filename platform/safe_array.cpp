#include "math/platform/variant.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <utility>

struct SAFEARRAY
{
    unsigned short type;
    std::size_t element_size;
    unsigned int dimensions;
    std::unique_ptr<SAFEARRAYBOUND[]> bounds;
    std::unique_ptr<unsigned char[]> elements;
};

namespace
{

/// As many as anyone has named axes for; it bounds what a wrong count can make the library read.
constexpr unsigned int most_dimensions = 64;

std::size_t GetElementSize(unsigned short type)
{
    switch (type)
    {
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return 2;
    case VT_I4:
    case VT_UI4:
    case VT_R4:
        return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
        return 8;
    case VT_VARIANT:
        return sizeof(KVVARIANT);
    default:
        return 0;
    }
}

/// Whether the highest index of the dimension is a `long`, also where it is one below the lowest.
bool IsCountable(SAFEARRAYBOUND const & bound)
{
    if (bound.cElements == 0)
    {
        return bound.lLbound > std::numeric_limits<long>::min();
    }
    // The room above the lowest index, in unsigned arithmetic since it can exceed the largest long.
    unsigned long const room =
        static_cast<unsigned long>(std::numeric_limits<long>::max()) - static_cast<unsigned long>(bound.lLbound);
    return bound.cElements - 1 <= room;
}

/// The size of all elements; nothing where a bound or the size cannot be counted.
std::optional<std::size_t> GetTotalSize(std::size_t element_size, unsigned int dimensions,
                                        SAFEARRAYBOUND const * bounds)
{
    constexpr std::size_t largest_size = PTRDIFF_MAX;
    if (!std::all_of(bounds, bounds + dimensions, IsCountable))
    {
        return std::nullopt;
    }
    if (std::any_of(bounds, bounds + dimensions, [](SAFEARRAYBOUND const & bound) { return bound.cElements == 0; }))
    {
        return 0;
    }
    std::size_t size = element_size;
    for (unsigned int i = 0; i < dimensions; ++i)
    {
        if (bounds[i].cElements > largest_size / size)
        {
            return std::nullopt;
        }
        size *= bounds[i].cElements;
    }
    return size;
}

/// Finds an element, the first dimension varying fastest. Leaves `element` alone on failure.
long FindElement(SAFEARRAY const * array, long const * indices, void const * value, unsigned char *& element)
{
    if (array == nullptr)
    {
        return E_INVALIDARG;
    }
    if (indices == nullptr || value == nullptr)
    {
        return E_POINTER;
    }
    std::size_t offset = 0;
    for (unsigned int i = array->dimensions; i-- > 0;)
    {
        SAFEARRAYBOUND const & bound = array->bounds[i];
        unsigned long const index = static_cast<unsigned long>(indices[i]) - static_cast<unsigned long>(bound.lLbound);
        if (indices[i] < bound.lLbound || index >= bound.cElements)
        {
            return DISP_E_BADINDEX;
        }
        offset = offset * bound.cElements + index;
    }
    element = array->elements.get() + offset * array->element_size;
    return S_OK;
}

/// The bound of a dimension, with the checks that both bound functions share.
long FindBound(SAFEARRAY const * array, unsigned int dimension, long const * out, SAFEARRAYBOUND & bound)
{
    if (array == nullptr)
    {
        return E_INVALIDARG;
    }
    if (dimension < 1 || dimension > array->dimensions)
    {
        return DISP_E_BADINDEX;
    }
    if (out == nullptr)
    {
        return E_POINTER;
    }
    bound = array->bounds[dimension - 1];
    return S_OK;
}

bool OwnsArray(void const * variant)
{
    KVVARIANT value{};
    std::memcpy(&value, variant, sizeof(value));
    return (value.vt & VT_ARRAY) != 0 && (value.vt & VT_BYREF) == 0;
}

} // namespace

SAFEARRAY * SafeArrayCreate(unsigned short type, unsigned int dimensions, SAFEARRAYBOUND const * bounds)
{
    std::size_t const element_size = GetElementSize(type);
    if (element_size == 0 || dimensions < 1 || dimensions > most_dimensions || bounds == nullptr)
    {
        return nullptr;
    }
    std::optional<std::size_t> const size = GetTotalSize(element_size, dimensions, bounds);
    if (!size)
    {
        return nullptr;
    }
    std::unique_ptr<SAFEARRAYBOUND[]> own_bounds(new (std::nothrow) SAFEARRAYBOUND[dimensions]);
    std::unique_ptr<unsigned char[]> elements(new (std::nothrow) unsigned char[*size]());
    if (own_bounds == nullptr || elements == nullptr)
    {
        return nullptr;
    }
    std::copy_n(bounds, dimensions, own_bounds.get());
    return new (std::nothrow) SAFEARRAY{type, element_size, dimensions, std::move(own_bounds), std::move(elements)};
}

long SafeArrayDestroy(SAFEARRAY * array)
{
    delete array;
    return S_OK;
}

unsigned int SafeArrayGetDim(SAFEARRAY const * array)
{
    return array != nullptr ? array->dimensions : 0;
}

long SafeArrayGetLBound(SAFEARRAY const * array, unsigned int dimension, long * bound)
{
    SAFEARRAYBOUND found{};
    long const result = FindBound(array, dimension, bound, found);
    if (result >= 0)
    {
        *bound = found.lLbound;
    }
    return result;
}

long SafeArrayGetUBound(SAFEARRAY const * array, unsigned int dimension, long * bound)
{
    SAFEARRAYBOUND found{};
    long const result = FindBound(array, dimension, bound, found);
    if (result >= 0)
    {
        // Modulo 2^n: the count can exceed the largest long, the sum cannot.
        *bound = static_cast<long>(static_cast<unsigned long>(found.lLbound) + found.cElements - 1);
    }
    return result;
}

long SafeArrayGetElement(SAFEARRAY const * array, long const * indices, void * element)
{
    unsigned char * found = nullptr;
    long const result = FindElement(array, indices, element, found);
    if (result >= 0)
    {
        std::memcpy(element, found, array->element_size);
    }
    return result;
}

long SafeArrayPutElement(SAFEARRAY * array, long const * indices, void const * element)
{
    unsigned char * found = nullptr;
    long const result = FindElement(array, indices, element, found);
    if (result < 0)
    {
        return result;
    }
    if (array->type == VT_VARIANT && OwnsArray(element))
    {
        return E_NOTIMPL;
    }
    std::memcpy(found, element, array->element_size);
    return S_OK;
}
