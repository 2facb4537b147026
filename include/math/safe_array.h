#pragma once

/// \file
/// The bridge from a vector to the safe arrays of the automation world.

#include "math/platform/variant.h"
#include "math/vector3.h"

/// Makes a safe array of three variants (`VT_R8`; lower bound 0) that hold X, Y, Z, and gives it to `result`.
///
/// `result` gets the type `VT_ARRAY | VT_VARIANT` and the array, which the caller destroys. What it held before is
/// overwritten and not released; its reserved words are not written.
///
/// \return `S_OK`; `E_POINTER` for a null `result`; `E_OUTOFMEMORY` when there is no room for the array, or the failure
/// of the store of an element, with `result` unwritten
MATH_API long F3DGetSafeArrayFromC3DVector3(C3DVector3Tpl<double> & vector, KVVARIANT * result);

/// Reads a vector from a one-dimensional safe array of three elements with any lower bound.
///
/// Only the `VT_ARRAY` bit of the type is looked at, and the type of the elements is not: the elements are taken for
/// variants, and the eight value bytes of each for a `double`, whatever it holds. Integers give the `double` of the
/// same bits. Elements shorter than a variant's head and value give 0 for the bytes they lack; an array of bare
/// `double`s therefore gives zeros.
///
/// \return `S_OK`; `E_POINTER` for a null `variant`; `E_INVALIDARG` when it holds no array, or one of another number of
/// dimensions or elements; or the failure of the access to an element, with the components before it already stored
MATH_API long F3DGetC3DVector3FromSafeArray(KVVARIANT const * variant, C3DVector3Tpl<double> & vector);
