#include "math/safe_array.h"

namespace
{

/// Whether the index range is of exactly three, without the overflow that the count of a huge range would meet.
bool HoldsThree(long lower, long upper)
{
    return lower <= upper && static_cast<unsigned long>(upper) - static_cast<unsigned long>(lower) == 2;
}

/// The bounds of a one-dimensional array of three elements; anything else is an invalid argument.
long GetFirstOfThree(SAFEARRAY const * array, long & first)
{
    long last = 0;
    if (long const result = SafeArrayGetLBound(array, 1, &first); result < 0)
    {
        return result;
    }
    if (long const result = SafeArrayGetUBound(array, 1, &last); result < 0)
    {
        return result;
    }
    return HoldsThree(first, last) ? S_OK : E_INVALIDARG;
}

} // namespace

long F3DGetSafeArrayFromC3DVector3(C3DVector3Tpl<double> & vector, KVVARIANT * result)
{
    if (result == nullptr)
    {
        return E_POINTER;
    }
    SAFEARRAYBOUND const bound{3, 0};
    SAFEARRAY * const array = SafeArrayCreate(VT_VARIANT, 1, &bound);
    if (array == nullptr)
    {
        return E_OUTOFMEMORY;
    }
    for (int component = 0; component < 3; ++component)
    {
        KVVARIANT element{};
        element.vt = VT_R8;
        element.dblVal = vector.Get(component);
        long const index = component;
        // A store that fails leaves the array to no one: it may be what is broken.
        if (long const stored = SafeArrayPutElement(array, &index, &element); stored < 0)
        {
            return stored;
        }
    }
    result->vt = VT_ARRAY | VT_VARIANT;
    result->parray = array;
    return S_OK;
}

long F3DGetC3DVector3FromSafeArray(KVVARIANT const * variant, C3DVector3Tpl<double> & vector)
{
    if (variant == nullptr)
    {
        return E_POINTER;
    }
    if ((variant->vt & VT_ARRAY) == 0 || variant->parray == nullptr || SafeArrayGetDim(variant->parray) != 1)
    {
        return E_INVALIDARG;
    }
    long first = 0;
    if (long const result = GetFirstOfThree(variant->parray, first); result < 0)
    {
        return result;
    }
    for (int component = 0; component < 3; ++component)
    {
        // An element shorter than a variant leaves the value bytes that it does not reach at zero.
        KVVARIANT element{};
        element.dblVal = 0;
        long const index = first + component;
        if (long const result = SafeArrayGetElement(variant->parray, &index, &element); result < 0)
        {
            return result;
        }
        vector.Set(component, element.dblVal);
    }
    return S_OK;
}
