#include "clip/drawing.h"

#include "examples/xml_check.h"

#include <gtest/gtest.h>

#include <limits>
#include <span>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using clip::Drawing;
using clip::Point;

std::string Written(Drawing const & drawing)
{
    std::ostringstream stream;
    drawing.Write(stream);
    return stream.str();
}

/// What the drawing holds behind its title.
std::string BodyOf(Drawing const & drawing)
{
    std::string const text = Written(drawing);
    std::size_t const start = text.find("</title>\n") + 9;
    return text.substr(start, text.rfind("</svg>") - start);
}

TEST(XmlCheck, Finds_what_is_not_well_formed)
{
    EXPECT_EQ(FindXmlFault("<a b=\"c &amp; d\"><e/>text &lt;</a>\n"), "");
    for (char const * const text :
         {"", "text", "<a>", "<a></b>", "</a>", "<a/><b/>", "<a b=c/>", "<a b=\"c/>", R"(<a b="1" b="2"/>)", "<a>&</a>",
          "<a>&nbsp;</a>", "<a b=\"<\"/>", "<a>\x01</a>", "<a", "<a/>text", "< a/>", "<a><b></a></b>"})
    {
        EXPECT_NE(FindXmlFault(text), "") << text;
    }
}

TEST(Drawing, An_empty_picture_has_its_size_and_title)
{
    std::string const text = Written(Drawing(640, 480.5, "a < b"));
    EXPECT_EQ(FindXmlFault(text), "");
    EXPECT_NE(text.find("width=\"640\" height=\"480.5\" viewBox=\"0 0 640 480.5\""), std::string::npos);
    EXPECT_NE(text.find("<title>a &lt; b</title>"), std::string::npos);
    EXPECT_NE(text.find("xmlns=\"http://www.w3.org/2000/svg\""), std::string::npos);
}

TEST(Drawing, Each_shape_is_one_element_in_the_order_of_drawing)
{
    Drawing drawing(10, 10, "t");
    drawing.Line({1, 2}, {3.456, -0.001}, {"#123456", 2});
    drawing.Circle({5, 6}, 1.5, {"red"});
    drawing.Rectangle({0, 1}, 2, 3, {"blue", 0.5}, 4);
    drawing.Rectangle({0, 1}, 2, 3, {"blue"});
    EXPECT_EQ(BodyOf(drawing), "<line x1=\"1\" y1=\"2\" x2=\"3.46\" y2=\"0\" stroke=\"#123456\" stroke-width=\"2\"/>\n"
                               "<circle cx=\"5\" cy=\"6\" r=\"1.5\" fill=\"red\"/>\n"
                               "<rect x=\"0\" y=\"1\" width=\"2\" height=\"3\" rx=\"4\" fill=\"blue\" "
                               "fill-opacity=\"0.5\"/>\n"
                               "<rect x=\"0\" y=\"1\" width=\"2\" height=\"3\" fill=\"blue\"/>\n");
}

TEST(Drawing, A_line_may_be_dashed_and_see_through)
{
    Drawing drawing(10, 10, "t");
    drawing.Line({0, 0}, {1, 1}, {"black", 1, 0.25, "4 3"});
    EXPECT_NE(BodyOf(drawing).find("stroke-opacity=\"0.25\" stroke-dasharray=\"4 3\""), std::string::npos);
}

TEST(Drawing, A_polyline_lists_its_points_and_needs_two)
{
    Drawing drawing(10, 10, "t");
    std::vector<Point> const points = {{0, 1}, {2, 3.5}, {4, 5}};
    drawing.Polyline(points, {"black"});
    EXPECT_EQ(BodyOf(drawing),
              "<polyline points=\"0,1 2,3.5 4,5\" fill=\"none\" stroke=\"black\" stroke-width=\"1\"/>\n");
    Drawing none(10, 10, "t");
    none.Polyline({}, {"black"});
    none.Polyline(std::span(points).first(1), {"black"});
    EXPECT_EQ(BodyOf(none), "");
}

TEST(Drawing, A_polygon_is_filled_and_needs_three_points)
{
    Drawing drawing(10, 10, "t");
    std::vector<Point> const points = {{0, 1}, {2, 3.5}, {4, 5}};
    drawing.Polygon(points, {"black", 0.5});
    drawing.Polygon(std::span(points).first(2), {"black"});
    EXPECT_EQ(BodyOf(drawing), "<polygon points=\"0,1 2,3.5 4,5\" fill=\"black\" fill-opacity=\"0.5\"/>\n");
}

TEST(Drawing, Text_is_escaped_and_styled)
{
    Drawing drawing(10, 10, "t");
    drawing.Text({1, 2}, "a<b & \"c\">", {14, "#000000", clip::Anchor::Middle, true});
    drawing.Text({1, 2}, "plain", {12, "#000000"});
    drawing.Text({1, 2}, "right", {12, "#000000", clip::Anchor::End});
    EXPECT_EQ(BodyOf(drawing),
              "<text x=\"1\" y=\"2\" font-size=\"14\" fill=\"#000000\" text-anchor=\"middle\" font-weight=\"bold\">"
              "a&lt;b &amp; &quot;c&quot;&gt;</text>\n"
              "<text x=\"1\" y=\"2\" font-size=\"12\" fill=\"#000000\">plain</text>\n"
              "<text x=\"1\" y=\"2\" font-size=\"12\" fill=\"#000000\" text-anchor=\"end\">right</text>\n");
    EXPECT_EQ(FindXmlFault(Written(drawing)), "");
}

TEST(Drawing, Coordinates_that_are_not_finite_count_as_zero)
{
    Drawing drawing(10, 10, "t");
    drawing.Circle({std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}, 1, {"red"});
    EXPECT_NE(BodyOf(drawing).find("cx=\"0\" cy=\"0\""), std::string::npos);
}

TEST(EscapeXml, Keeps_what_is_good_utf8)
{
    for (char const * const text : {"plain", "Grüße", "\xE6\xBC\xA2", "\xF0\x9F\x92\x83", "\xC2\x80", "\xE0\xA0\x80",
                                    "\xED\x9F\xBF", "\xEE\x80\x80", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
    {
        EXPECT_EQ(clip::EscapeXml(text), text);
    }
}

TEST(EscapeXml, Replaces_what_xml_cannot_hold)
{
    std::string const mark = "\xEF\xBF\xBD";
    EXPECT_EQ(clip::EscapeXml(std::string("a\0b", 3)), "a" + mark + "b");
    EXPECT_EQ(clip::EscapeXml("\x1f\x7f"), mark + mark);
    EXPECT_EQ(clip::EscapeXml("\xEF\xBF\xBE"), mark);
    EXPECT_EQ(clip::EscapeXml("\xEF\xBF\xBF"), mark);
}

TEST(EscapeXml, Replaces_each_byte_that_is_no_utf8)
{
    std::string const mark = "\xEF\xBF\xBD";
    std::vector<std::string> const faults = {"\x80",             // a byte that continues nothing
                                             "\xC3",             // cut short
                                             "\xC0\xAF",         // longer than needed
                                             "\xC1\xBF",         //
                                             "\xE0\x9F\xBF",     //
                                             "\xF0\x8F\xBF\xBF", //
                                             "\xED\xA0\x80",     // a surrogate
                                             "\xF4\x90\x80\x80", // beyond the last character
                                             "\xF5\x80\x80\x80", //
                                             "\xFF"};
    for (std::string const & fault : faults)
    {
        std::string expected;
        for (std::size_t i = 0; i < fault.size(); ++i)
        {
            expected += mark;
        }
        EXPECT_EQ(clip::EscapeXml("a" + fault + "b"), "a" + expected + "b");
    }
    EXPECT_EQ(clip::EscapeXml("\xC3"
                              "b"),
              mark + "b");
    EXPECT_EQ(clip::EscapeXml("\xE6\xBC"), mark + mark);
}

TEST(ShortenText, Cuts_between_two_characters)
{
    EXPECT_EQ(clip::ShortenText("abcdef", 6), "abcdef");
    EXPECT_EQ(clip::ShortenText("abcdefg", 6), "abc...");
    EXPECT_EQ(clip::ShortenText("ab\xC3\xA4xyz", 6), "ab...");
    EXPECT_EQ(clip::ShortenText("a\xC3\xA4wxyz", 6), "a\xC3\xA4...");
    EXPECT_EQ(clip::ShortenText("abcd", 3), "...");
}

} // namespace
