#include "math/platform/text.h"

#include "platform/utf8.h"

int CharToOemW(wchar_t const * source, char * destination)
{
    if (source == nullptr || destination == nullptr)
    {
        return 0;
    }
    math::detail::ConvertToUtf8(source, destination);
    return 1;
}

namespace math::detail
{

std::size_t GetNarrowSize(wchar_t const * source)
{
    return source != nullptr ? ConvertToUtf8(source, nullptr) : 0;
}

} // namespace math::detail
