#pragma once

#include "math/fourier_1d.h"
#include "math/fourier_2d.h"
#include "math/fourier_3d.h"

#include <array>
#include <cstddef>
#include <vector>

namespace math::detail
{

/// Reads what a transform object keeps, of any number of dimensions.
class TransformTablesInspector
{
public:
    template <typename TransformObject>
    explicit TransformTablesInspector(TransformObject const & object)
        : m_Object(&object), m_Work(object.m_Work), m_Scratch(object.m_Scratch), m_Index(object.m_Index),
          m_MaxSizes(MaxSizesOf(object)), m_IsInitialized(object.m_Initialized)
    {
    }

    double const * Work() const { return m_Work; }
    double const * Scratch() const { return m_Scratch; }
    int const * Index() const { return m_Index; }
    unsigned int MaxSize(std::size_t axis = 0) const { return *m_MaxSizes[axis]; }
    bool IsInitialized() const { return m_IsInitialized; }

    /// Where the fields stand in the object: the tables, the sizes of as many axes, the flag.
    std::vector<std::ptrdiff_t> Offsets(std::size_t axisCount) const
    {
        std::vector<void const *> places{&m_Work, &m_Scratch, &m_Index};
        places.insert(places.end(), m_MaxSizes.begin(), m_MaxSizes.begin() + static_cast<std::ptrdiff_t>(axisCount));
        places.push_back(&m_IsInitialized);
        std::vector<std::ptrdiff_t> offsets;
        for (void const * const place : places)
        {
            offsets.push_back(static_cast<char const *>(place) - static_cast<char const *>(m_Object));
        }
        return offsets;
    }

private:
    using Sizes = std::array<unsigned int const *, 3>;

    static Sizes MaxSizesOf(CDSPTransform1D const & object) { return {&object.m_MaxSize}; }
    static Sizes MaxSizesOf(CDSPTransform2D const & object) { return {&object.m_MaxSize1, &object.m_MaxSize2}; }
    static Sizes MaxSizesOf(CDSPTransform3D const & object)
    {
        return {&object.m_MaxSize1, &object.m_MaxSize2, &object.m_MaxSize3};
    }

    void const * m_Object;
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
