#pragma once

#include <cstddef>
#include <type_traits>

namespace math::detail
{

inline constexpr char32_t replacement_character = 0xFFFD;

/// Takes one code point off a text that ends with a zero: UTF-16 for units of 2 bytes, else UTF-32. A lone surrogate
/// and a value above 0x10FFFF come out as U+FFFD, one for each unit.
template <typename Unit>
char32_t TakeCodePoint(Unit const *& text)
{
    auto const at = [&text](std::size_t i)
    { return static_cast<char32_t>(static_cast<std::make_unsigned_t<Unit>>(text[i])); };
    char32_t const first = at(0);
    bool const surrogate = first >= 0xD800 && first <= 0xDFFF;
    if constexpr (sizeof(Unit) == 2)
    {
        if (surrogate && first <= 0xDBFF && at(1) >= 0xDC00 && at(1) <= 0xDFFF)
        {
            char32_t const second = at(1);
            text += 2;
            return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
        }
    }
    ++text;
    return surrogate || first > 0x10FFFF ? replacement_character : first;
}

/// Writes the text as UTF-8 with its closing zero, or only counts when `destination` is null. Returns the number of
/// bytes.
template <typename Unit>
std::size_t ConvertToUtf8(Unit const * source, char * destination)
{
    std::size_t size = 0;
    auto const put = [&](char32_t byte)
    {
        if (destination != nullptr)
        {
            destination[size] = static_cast<char>(static_cast<unsigned char>(byte));
        }
        ++size;
    };
    while (*source != 0)
    {
        char32_t const c = TakeCodePoint(source);
        if (c < 0x80)
        {
            put(c);
        }
        else if (c < 0x800)
        {
            put(0xC0 | c >> 6);
            put(0x80 | (c & 0x3F));
        }
        else if (c < 0x10000)
        {
            put(0xE0 | c >> 12);
            put(0x80 | (c >> 6 & 0x3F));
            put(0x80 | (c & 0x3F));
        }
        else
        {
            put(0xF0 | c >> 18);
            put(0x80 | (c >> 12 & 0x3F));
            put(0x80 | (c >> 6 & 0x3F));
            put(0x80 | (c & 0x3F));
        }
    }
    put(0);
    return size;
}

} // namespace math::detail
