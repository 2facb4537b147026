#pragma once

#include "math/fourier_1d.h"
#include "math/fourier_2d.h"
#include "math/fourier_3d.h"

#include <array>

namespace math::detail
{

/// Reads what a transform object keeps, of any number of dimensions.
class TransformTablesInspector
{
public:
    template <typename TransformObject>
    explicit TransformTablesInspector(TransformObject const & object)
        : m_Work(object.m_Work), m_Scratch(object.m_Scratch), m_Index(object.m_Index), m_MaxSizes(MaxSizesOf(object)),
          m_IsInitialized(object.m_Initialized)
    {
    }

    double const * Work() const { return m_Work; }
    double const * Scratch() const { return m_Scratch; }
    int const * Index() const { return m_Index; }
    unsigned int MaxSize(std::size_t axis = 0) const { return *m_MaxSizes[axis]; }
    bool IsInitialized() const { return m_IsInitialized; }

private:
    using Sizes = std::array<unsigned int const *, 3>;

    static Sizes MaxSizesOf(CDSPTransform1D const & object) { return {&object.m_MaxSize}; }
    static Sizes MaxSizesOf(CDSPTransform2D const & object) { return {&object.m_MaxSize1, &object.m_MaxSize2}; }
    static Sizes MaxSizesOf(CDSPTransform3D const & object)
    {
        return {&object.m_MaxSize1, &object.m_MaxSize2, &object.m_MaxSize3};
    }

    double * const & m_Work;
    double * const & m_Scratch;
    int * const & m_Index;
    Sizes m_MaxSizes;
    bool const & m_IsInitialized;
};

} // namespace math::detail

namespace signal_test
{

using math::detail::TransformTablesInspector;

} // namespace signal_test
