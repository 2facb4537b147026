#include "spectrum/noise_picture.h"

#include "clip/gradient_noise.h"
#include "clip/number_text.h"
#include "clip/page_style.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace spectrum
{

namespace
{

constexpr int k_CellCount = 72; ///< of a field on the page, each way
constexpr double k_CellSize = 5;
constexpr double k_FieldSize = k_CellCount * k_CellSize;
constexpr double k_HeaderHeight = 74;
constexpr double k_PanelHead = 58;
constexpr double k_PanelFoot = 34;
constexpr double k_PanelWidth = (clip::k_PageWidth - 2 * clip::k_Margin - 2 * clip::k_PanelGap) / 3;
constexpr double k_PanelHeight = k_PanelHead + k_FieldSize + k_PanelFoot;
constexpr double k_Across = 0.5; ///< the third coordinate of a plane that is drawn: the middle of a cell

/// From blue below zero over white to red above, even in lightness. (After C. A. Brewer's diverging scales.)
constexpr std::array<std::string_view, 13> k_Shades = {"#14365f", "#215596", "#3f7fbf", "#7badd6", "#b3cfe6",
                                                       "#dfe8f0", "#f6f6f4", "#f4e2d6", "#edbf9f", "#dd8e68",
                                                       "#c35a40", "#98292f", "#5f1020"};
constexpr std::size_t k_MiddleShade = k_Shades.size() / 2;

/// A function on a square of the plane, whose corner is the origin.
struct Field
{
    std::string title;
    std::string acrossName; ///< the coordinate from left to right
    std::string upName;     ///< the coordinate from bottom to top
    double extent;          ///< of the square
    std::function<double(double, double)> valueOf;
};

enum class Face : unsigned char
{
    LowerX,
    LowerY,
    LowerZ
};

double FaceValue(C3DPerlinNoise const & noise, Face face, double across, double up)
{
    double a = 0;
    double b = 0;
    double c = 0;
    switch (face)
    {
    case Face::LowerX:
        noise.DNoise(k_Across, across, up, a, b, c);
        return a;
    case Face::LowerY:
        noise.DNoise(across, k_Across, up, a, b, c);
        return b;
    default:
        noise.DNoise(across, up, k_Across, a, b, c);
        return c;
    }
}

/// Each octave is twice as fine as the one before and half as high.
double SumOctaves(clip::GradientNoise const & noise, double across, double up)
{
    constexpr int k_OctaveCount = 5;
    double sum = 0;
    for (int octave = 0; octave < k_OctaveCount; ++octave)
    {
        double const scale = std::ldexp(1.0, octave);
        sum += noise.At(scale * across, scale * up, octave + k_Across) / scale;
    }
    return sum;
}

std::vector<double> Sample(Field const & field)
{
    std::vector<double> values;
    for (int row = 0; row < k_CellCount; ++row)
    {
        for (int column = 0; column < k_CellCount; ++column)
        {
            values.push_back(field.valueOf((column + 0.5) / k_CellCount * field.extent,
                                           (k_CellCount - row - 0.5) / k_CellCount * field.extent));
        }
    }
    return values;
}

/// \param largest the largest of all values in size, above 0
std::size_t ChooseShade(double value, double largest)
{
    auto const steps = std::lround(value / largest * static_cast<double>(k_MiddleShade));
    return static_cast<std::size_t>(static_cast<long>(k_MiddleShade) + steps);
}

/// Cells of one shade beside each other are one rectangle.
void DrawRow(clip::Drawing & drawing, clip::Point place, std::vector<std::size_t> const & shades)
{
    for (std::size_t first = 0; first < shades.size();)
    {
        std::size_t end = first + 1;
        while (end < shades.size() && shades[end] == shades[first])
        {
            ++end;
        }
        drawing.Rectangle({place.x + static_cast<double>(first) * k_CellSize, place.y},
                          static_cast<double>(end - first) * k_CellSize, k_CellSize,
                          {std::string(k_Shades[shades[first]])});
        first = end;
    }
}

clip::Point PanelPlace(int column, int row)
{
    return {clip::k_Margin + column * (k_PanelWidth + clip::k_PanelGap),
            k_HeaderHeight + row * (k_PanelHeight + clip::k_PanelGap)};
}

void DrawPanel(clip::Drawing & drawing, clip::Point place, std::string_view title, std::string_view remark)
{
    drawing.Rectangle(place, k_PanelWidth, k_PanelHeight, {std::string(clip::k_PanelColor)}, clip::k_PanelCorner);
    drawing.Text({place.x + 14, place.y + 24}, title, {15, std::string(clip::k_Ink), clip::Anchor::Start, true});
    drawing.Text({place.x + 14, place.y + 45}, remark, {13, std::string(clip::k_QuietInk)});
}

void DrawField(clip::Drawing & drawing, clip::Point place, Field const & field)
{
    std::vector<double> const values = Sample(field);
    auto const [lowest, highest] = std::minmax_element(values.begin(), values.end());
    double const largest = std::max({-*lowest, *highest, 1e-9});
    DrawPanel(drawing, place, field.title,
              "from " + clip::FixedText(*lowest, 2) + " (blue) over 0 (white) to " + clip::FixedText(*highest, 2) +
                  " (red)");
    clip::Point const corner{place.x + (k_PanelWidth - k_FieldSize) / 2, place.y + k_PanelHead};
    for (int row = 0; row < k_CellCount; ++row)
    {
        auto const first = values.begin() + static_cast<std::ptrdiff_t>(row) * k_CellCount;
        std::vector<std::size_t> shades(k_CellCount);
        std::transform(first, first + k_CellCount, shades.begin(),
                       [largest](double value) { return ChooseShade(value, largest); });
        DrawRow(drawing, {corner.x, corner.y + row * k_CellSize}, shades);
    }
    clip::TextStyle const style{13, std::string(clip::k_Ink), clip::Anchor::Middle};
    drawing.Text({corner.x, corner.y + k_FieldSize + 20}, "0", style);
    drawing.Text({corner.x + k_FieldSize / 2, corner.y + k_FieldSize + 20}, field.acrossName, style);
    drawing.Text({corner.x + k_FieldSize, corner.y + k_FieldSize + 20}, clip::RoundedText(field.extent, 0), style);
    drawing.Text({corner.x - 9, corner.y + k_FieldSize / 2}, field.upName, style);
    drawing.Text({corner.x - 9, corner.y + 10}, clip::RoundedText(field.extent, 0), style);
}

/// From space to the page around a middle, seen from the right and above.
clip::Point Project(clip::Point middle, double x, double y, double z)
{
    constexpr double k_Unit = 112;
    return {middle.x + k_Unit * (x - 0.42 * z), middle.y + k_Unit * (0.3 * z - y)};
}

/// The twelve gradients, from the middle of a cube to the middles of its edges.
void DrawGradients(clip::Drawing & drawing, clip::Point place)
{
    DrawPanel(drawing, place, "The twelve gradients", "each points to the middle of an edge of the cube");
    clip::Point const middle{place.x + k_PanelWidth / 2, place.y + k_PanelHead + k_FieldSize / 2};
    for (auto const & gradient : C3DPerlinNoise::grad3)
    {
        // The edge lies along the axis in which the gradient is 0.
        std::array<double, 3> from = {gradient[0], gradient[1], gradient[2]};
        std::array<double, 3> to = from;
        for (std::size_t axis = 0; axis < from.size(); ++axis)
        {
            bool const isAlong = gradient[axis] == 0;
            from[axis] = isAlong ? -1 : from[axis];
            to[axis] = isAlong ? 1 : to[axis];
        }
        drawing.Line(Project(middle, from[0], from[1], from[2]), Project(middle, to[0], to[1], to[2]),
                     {std::string(clip::k_RuleColor), 1.6});
        clip::Point const tip = Project(middle, gradient[0], gradient[1], gradient[2]);
        std::string const color(gradient[2] < 0 ? k_Shades[3] : gradient[2] > 0 ? k_Shades[10] : k_Shades[1]);
        drawing.Line(middle, tip, {color, 2.6});
        drawing.Circle(tip, 5, {color});
    }
}

} // namespace

clip::Drawing DrawNoise(unsigned long seed)
{
    clip::GradientNoise const noise(seed);
    auto const face = [&noise](Face which)
    { return [&noise, which](double x, double y) { return FaceValue(noise.Source(), which, x, y); }; };
    std::array<Field, 5> const fields = {
        {{"DNoise, face at the lower x, at x = 0.5", "y", "z", 4, face(Face::LowerX)},
         {"DNoise, face at the lower y, at y = 0.5", "x", "z", 4, face(Face::LowerY)},
         {"DNoise, face at the lower z, at z = 0.5", "x", "y", 4, face(Face::LowerZ)},
         {"Gradient noise, at z = 0.5", "x", "y", 8, [&noise](double x, double y) { return noise.At(x, y, k_Across); }},
         {"Five octaves of it", "x", "y", 4, [&noise](double x, double y) { return SumOctaves(noise, x, y); }}}};
    double const height = PanelPlace(0, 2).y - clip::k_PanelGap + clip::k_Margin;
    clip::Drawing drawing(clip::k_PageWidth, height, "Noise of the seed " + std::to_string(seed));
    drawing.Rectangle({0, 0}, clip::k_PageWidth, height, {std::string(clip::k_Paper)});
    drawing.Text({clip::k_Margin, 46}, "Noise of the seed " + std::to_string(seed),
                 {26, std::string(clip::k_Ink), clip::Anchor::Start, true});
    drawing.Text({clip::k_PageWidth - clip::k_Margin, 46},
                 "above, gradients at the coordinates themselves; below, at the fractions in each cell",
                 {15, std::string(clip::k_QuietInk), clip::Anchor::End});
    for (int i = 0; i < static_cast<int>(fields.size()); ++i)
    {
        DrawField(drawing, PanelPlace(i % 3, i / 3), fields[static_cast<std::size_t>(i)]);
    }
    DrawGradients(drawing, PanelPlace(2, 1));
    return drawing;
}

} // namespace spectrum
