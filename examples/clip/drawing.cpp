#include "clip/drawing.h"

#include "clip/number_text.h"

#include <array>

namespace clip
{

namespace
{

std::string Number(double value)
{
    return RoundedText(value, 2);
}

std::string Attribute(std::string_view name, std::string_view value)
{
    std::string text(" ");
    text += name;
    text += "=\"";
    text += value;
    return text += '"';
}

std::string StrokeAttributes(Stroke const & stroke)
{
    std::string text = Attribute("stroke", stroke.color) + Attribute("stroke-width", Number(stroke.width));
    if (stroke.opacity < 1)
    {
        text += Attribute("stroke-opacity", Number(stroke.opacity));
    }
    if (!stroke.dashes.empty())
    {
        text += Attribute("stroke-dasharray", stroke.dashes);
    }
    return text;
}

std::string FillAttributes(Fill const & fill)
{
    std::string text = Attribute("fill", fill.color);
    if (fill.opacity < 1)
    {
        text += Attribute("fill-opacity", Number(fill.opacity));
    }
    return text;
}

std::string PointsAttribute(std::span<Point const> points)
{
    std::string places;
    for (Point const & point : points)
    {
        places += places.empty() ? "" : " ";
        places += Number(point.x) + ',' + Number(point.y);
    }
    return Attribute("points", places);
}

/// Indexed by `Anchor`.
constexpr std::array<std::string_view, 3> k_AnchorNames = {"start", "middle", "end"};

/// The length in bytes of the UTF-8 character at the start of the text, or 0 where there is none: a byte out of place,
/// a longer form than needed, a surrogate or a value beyond U+10FFFF.
std::size_t CharacterLength(std::string_view text)
{
    auto const byte = [text](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(text[i])); };
    unsigned const first = byte(0);
    if (first < 0x80)
    {
        return 1;
    }
    std::size_t const length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length)
    {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i)
    {
        if ((byte(i) & 0xC0U) != 0x80)
        {
            return 0;
        }
    }
    unsigned const pair = first << 8U | byte(1);
    bool const isTooLong = (first == 0xE0 && pair < 0xE0A0) || (first == 0xF0 && pair < 0xF090);
    bool const isSurrogate = first == 0xED && pair >= 0xEDA0;
    bool const isBeyond = pair >= 0xF490;
    return isTooLong || isSurrogate || isBeyond ? 0 : length;
}

/// U+FFFE and U+FFFF are characters of UTF-8, and none of XML.
bool IsForbiddenInXml(std::string_view character)
{
    bool const isControl =
        character.size() == 1 && (static_cast<unsigned char>(character[0]) < 0x20 || character[0] == 0x7f);
    return isControl || character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF";
}

std::string EscapeCharacter(std::string_view character)
{
    if (IsForbiddenInXml(character))
    {
        return "\xEF\xBF\xBD";
    }
    switch (character[0])
    {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    default:
        return std::string(character);
    }
}

} // namespace

std::string ShortenText(std::string const & text, std::size_t mostBytes)
{
    if (text.size() <= mostBytes)
    {
        return text;
    }
    std::size_t length = mostBytes - 3;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80)
    {
        --length;
    }
    return text.substr(0, length) + "...";
}

std::string EscapeXml(std::string_view text)
{
    std::string escaped;
    while (!text.empty())
    {
        std::size_t const length = CharacterLength(text);
        escaped += length == 0 ? "\xEF\xBF\xBD" : EscapeCharacter(text.substr(0, length));
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return escaped;
}

Drawing::Drawing(double width, double height, std::string_view title)
    : m_Width(width), m_Height(height), m_Title(EscapeXml(title))
{
}

void Drawing::Line(Point from, Point to, Stroke const & stroke)
{
    m_Body += "<line" + Attribute("x1", Number(from.x)) + Attribute("y1", Number(from.y)) +
              Attribute("x2", Number(to.x)) + Attribute("y2", Number(to.y)) + StrokeAttributes(stroke) + "/>\n";
}

void Drawing::Polyline(std::span<Point const> points, Stroke const & stroke)
{
    if (points.size() < 2)
    {
        return;
    }
    m_Body += "<polyline" + PointsAttribute(points) + Attribute("fill", "none") + StrokeAttributes(stroke) + "/>\n";
}

void Drawing::Polygon(std::span<Point const> points, Fill const & fill)
{
    if (points.size() < 3)
    {
        return;
    }
    m_Body += "<polygon" + PointsAttribute(points) + FillAttributes(fill) + "/>\n";
}

void Drawing::Circle(Point center, double radius, Fill const & fill)
{
    m_Body += "<circle" + Attribute("cx", Number(center.x)) + Attribute("cy", Number(center.y)) +
              Attribute("r", Number(radius)) + FillAttributes(fill) + "/>\n";
}

void Drawing::Rectangle(Point upperLeft, double width, double height, Fill const & fill, double corner)
{
    m_Body += "<rect" + Attribute("x", Number(upperLeft.x)) + Attribute("y", Number(upperLeft.y)) +
              Attribute("width", Number(width)) + Attribute("height", Number(height)) +
              (corner > 0 ? Attribute("rx", Number(corner)) : "") + FillAttributes(fill) + "/>\n";
}

void Drawing::Text(Point place, std::string_view text, TextStyle const & style)
{
    m_Body += "<text" + Attribute("x", Number(place.x)) + Attribute("y", Number(place.y)) +
              Attribute("font-size", Number(style.size)) + Attribute("fill", style.color) +
              (style.anchor == Anchor::Start
                   ? ""
                   : Attribute("text-anchor", k_AnchorNames[static_cast<std::size_t>(style.anchor)])) +
              (style.isBold ? Attribute("font-weight", "bold") : "") + ">" + EscapeXml(text) + "</text>\n";
}

void Drawing::Write(std::ostream & stream) const
{
    std::string const width = Number(m_Width);
    std::string const height = Number(m_Height);
    stream << "<svg" << Attribute("xmlns", "http://www.w3.org/2000/svg") << Attribute("width", width)
           << Attribute("height", height) << Attribute("viewBox", "0 0 " + width + ' ' + height)
           << Attribute("font-family", "Helvetica, Arial, 'DejaVu Sans', sans-serif")
           << Attribute("stroke-linecap", "round") << Attribute("stroke-linejoin", "round") << ">\n<title>" << m_Title
           << "</title>\n"
           << m_Body << "</svg>\n";
}

} // namespace clip
