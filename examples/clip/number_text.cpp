#include "clip/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace clip
{

namespace
{

template <class Number>
std::optional<Number> ParseWhole(std::string_view text)
{
    Number value{};
    char const * const end = text.data() + text.size();
    auto const [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end)
    {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::optional<double> ParseNumber(std::string_view text)
{
    // The standard's parser knows no '+'; a sign behind it would be a second one.
    if (text.starts_with('+'))
    {
        text.remove_prefix(1);
        if (text.starts_with('-'))
        {
            return std::nullopt;
        }
    }
    return ParseWhole<double>(text);
}

std::optional<unsigned long long> ParseCount(std::string_view text)
{
    return ParseWhole<unsigned long long>(text);
}

std::optional<C3DVector3Tpl<double>> ParseTriple(std::string_view text)
{
    std::string const list = std::string(text) + ','; // so that every number ends at a comma
    std::string_view rest = list;
    C3DVector3Tpl<double> triple(0, 0, 0);
    for (int axis = 0; axis < 3; ++axis)
    {
        std::string_view const part = rest.substr(0, rest.find(','));
        rest.remove_prefix(std::min(rest.size(), part.size() + 1));
        std::optional<double> const number = ParseNumber(part);
        if (!number)
        {
            return std::nullopt;
        }
        triple.Set(axis, *number);
    }
    return rest.empty() ? std::optional(triple) : std::nullopt;
}

std::string ShortestText(double value)
{
    std::array<char, 32> buffer;
    auto const result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

std::string RoughText(double value, int digits)
{
    std::array<char, 32> buffer;
    auto const result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::general, digits);
    return {buffer.data(), result.ptr};
}

std::string FixedText(double value, int decimals)
{
    constexpr double k_Limit = 1e15;
    std::array<char, 48> buffer;
    auto const result = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                      std::abs(value) <= k_Limit ? value : 0, std::chars_format::fixed, decimals);
    std::string text(buffer.data(), result.ptr);
    bool const isNegativeZero = text.starts_with('-') && text.find_first_not_of("-0.") == std::string::npos;
    return isNegativeZero ? text.substr(1) : text;
}

std::string RoundedText(double value, int decimals)
{
    std::string text = FixedText(value, decimals);
    if (text.find('.') != std::string::npos)
    {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
        {
            text.pop_back();
        }
    }
    return text;
}

std::string PointText(C3DVector3Tpl<double> const & point, int decimals)
{
    return '(' + RoundedText(point.X, decimals) + ", " + RoundedText(point.Y, decimals) + ", " +
           RoundedText(point.Z, decimals) + ')';
}

} // namespace clip
