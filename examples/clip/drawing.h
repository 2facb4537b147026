#pragma once

#include <cstddef>
#include <ostream>
#include <span>
#include <string>
#include <string_view>

namespace clip
{

/// A place on the page: x to the right, y down, in pixels from the upper left corner.
struct Point
{
    double x = 0;
    double y = 0;
};

/// How a line is drawn. Ends and corners are round.
struct Stroke
{
    std::string color;
    double width = 1;
    double opacity = 1;
    std::string dashes = {}; ///< lengths of dash and gap in turn, such as "4 3"; empty for a line without gaps
};

struct Fill
{
    std::string color;
    double opacity = 1;
};

enum class Anchor : unsigned char
{
    Start,
    Middle,
    End
};

struct TextStyle
{
    double size = 12;
    std::string color = "#22262e";
    Anchor anchor = Anchor::Start;
    bool isBold = false;
};

/// A picture in SVG, drawn from back to front. Coordinates are written with two decimals, so that the same picture
/// gives the same bytes; one that is not finite counts as 0. Colours are written as they are given, all other text is
/// escaped.
class Drawing
{
public:
    /// \param title what the picture is called, for a reader who cannot see it
    Drawing(double width, double height, std::string_view title);

    void Line(Point from, Point to, Stroke const & stroke);
    /// A line through all points, open at its ends. Of less than two points nothing is drawn.
    void Polyline(std::span<Point const> points, Stroke const & stroke);
    /// The inside of a closed line through all points. Of less than three points nothing is drawn.
    void Polygon(std::span<Point const> points, Fill const & fill);
    void Circle(Point center, double radius, Fill const & fill);
    /// \param corner radius of the rounded corners, 0 for sharp ones
    void Rectangle(Point upperLeft, double width, double height, Fill const & fill, double corner = 0);
    /// One line of text, its base line at `place`.
    void Text(Point place, std::string_view text, TextStyle const & style);

    /// The whole picture as a file.
    void Write(std::ostream & stream) const;

private:
    double m_Width;
    double m_Height;
    std::string m_Title;
    std::string m_Body;
};

/// Text of at most so many bytes (3 or more): where it is longer, as many whole characters as fit with "..." behind.
std::string ShortenText(std::string const & text, std::size_t mostBytes);

/// Text as it may stand in XML: markup characters become references; control characters, which XML cannot hold, and
/// bytes that are no UTF-8 become U+FFFD.
std::string EscapeXml(std::string_view text);

} // namespace clip
