#pragma once

#include <string_view>

// What the pictures of the programs have in common.

namespace clip
{

inline constexpr double k_PageWidth = 1280;
inline constexpr double k_Margin = 32;
inline constexpr double k_PanelGap = 18;
inline constexpr double k_PanelCorner = 8;

inline constexpr std::string_view k_Paper = "#f4f2ee";
inline constexpr std::string_view k_PanelColor = "#ffffff";
inline constexpr std::string_view k_RuleColor = "#b7b1a6";
inline constexpr std::string_view k_GridColor = "#e4e1db";
inline constexpr std::string_view k_Ink = "#23272f";
inline constexpr std::string_view k_QuietInk = "#737882";

} // namespace clip
