#include "numeric/text_form.h"

#include "math/platform/text.h"

#include <memory>
#include <new>

void math::detail::WriteLabel(wchar_t const * label, std::ostream & stream)
{
    if (label == nullptr)
    {
        return;
    }
    std::unique_ptr<char[]> const narrow(new (std::nothrow) char[GetNarrowSize(label)]);
    if (narrow != nullptr)
    {
        CharToOemW(label, narrow.get());
        stream << narrow.get() << '\n';
    }
}
