#pragma once

#include <string_view>

// What the pictures of the program have in common.

namespace bake
{

inline constexpr double kPageWidth = 1280;
inline constexpr double kMargin = 32;
inline constexpr double kPanelGap = 18;
inline constexpr double kPanelCorner = 8;

inline constexpr std::string_view kPaper = "#f4f2ee";
inline constexpr std::string_view kPanelColor = "#ffffff";
inline constexpr std::string_view kRuleColor = "#b7b1a6";
inline constexpr std::string_view kInk = "#23272f";
inline constexpr std::string_view kQuietInk = "#737882";

} // namespace bake
