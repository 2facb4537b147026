#pragma once

#include "math/vector3.h"

#include <optional>
#include <string>
#include <string_view>

namespace clip
{

/// The number that the whole of `text` spells, in decimal and whatever the locale; a leading '+' is welcome. Nothing
/// where the text is no number or one that a double cannot hold. "nan" and "inf" give what they say.
std::optional<double> ParseNumber(std::string_view text);

/// The non-negative integer that the whole of `text` spells, or nothing.
std::optional<unsigned long long> ParseCount(std::string_view text);

/// The three numbers, with commas between, that the whole of `text` spells, or nothing.
std::optional<C3DVector3Tpl<double>> ParseTriple(std::string_view text);

/// The shortest decimal text that reads back as the same double, bit for bit.
std::string ShortestText(double value);

/// `value` rounded to `digits` digits (at most 17), in the shorter of plain and scientific form.
std::string RoughText(double value, int digits);

/// `value` rounded to `decimals` places (at most 17), all of them written and never with a negative zero, so that equal
/// pictures give equal bytes. What is not finite or beyond 1e15 in size counts as 0.
std::string FixedText(double value, int decimals);

/// The same without trailing zeros.
std::string RoundedText(double value, int decimals);

/// The coordinates of a point in the same way, as "(1, 2, 3)".
std::string PointText(C3DVector3Tpl<double> const & point, int decimals);

} // namespace clip
