#include "figures/figures.h"
#include "figures/space_view.h"

#include "examples/xml_check.h"

#include <Eigen/Geometry>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The pictures say in numbers what they show. Here Eigen, with vectors as columns, says it again.

namespace
{

using Vector = Eigen::Vector3d;
using Turn = Eigen::Matrix3d;

constexpr double k_Degree = std::numbers::pi / 180;
constexpr double k_Rounding = 0.0051; ///< of two decimals
constexpr double k_PanelStep = (1280 - 2 * 32 - 2 * 18) / 3.0 + 18;

struct PlacedText
{
    double x;
    double y;
    std::string attributes;
    std::string text;
};

struct Disc
{
    double x;
    double y;
    double radius;
};

/// The places of a facet, in some order.
using Corners = std::vector<std::pair<double, double>>;

struct Picture
{
    std::string source;
    std::vector<PlacedText> texts;
    std::vector<Disc> discs;
    std::vector<Corners> facets;

    /// The texts on the base line of one, from left to right, behind it.
    std::vector<PlacedText> Behind(PlacedText const & first) const
    {
        std::vector<PlacedText> line;
        std::copy_if(texts.begin(), texts.end(), std::back_inserter(line),
                     [&first](PlacedText const & text) { return text.y == first.y && text.x > first.x; });
        std::sort(line.begin(), line.end(), [](PlacedText const & a, PlacedText const & b) { return a.x < b.x; });
        return line;
    }

    std::vector<PlacedText> StartingWith(std::string const & start) const
    {
        std::vector<PlacedText> found;
        std::copy_if(texts.begin(), texts.end(), std::back_inserter(found),
                     [&start](PlacedText const & text) { return text.text.starts_with(start); });
        return found;
    }
};

/// What stands between `before` and the next `after`, or nothing where `before` is missing.
std::string Between(std::string_view text, std::string_view before, std::string_view after)
{
    std::size_t const start = text.find(before);
    if (start == std::string_view::npos)
    {
        return {};
    }
    std::string_view const rest = text.substr(start + before.size());
    return std::string(rest.substr(0, rest.find(after)));
}

double NumberOf(std::string_view element, std::string const & attribute)
{
    return std::stod(Between(element, ' ' + attribute + "=\"", "\""));
}

void ReplaceAll(std::string & text, std::string_view old, std::string_view replacement)
{
    for (std::size_t at = text.find(old); at != std::string::npos; at = text.find(old, at + replacement.size()))
    {
        text.replace(at, old.size(), replacement);
    }
}

Corners ReadCorners(std::string places)
{
    ReplaceAll(places, ",", " ");
    std::istringstream stream(places);
    Corners corners;
    for (double x = 0, y = 0; stream >> x >> y;)
    {
        corners.emplace_back(x, y);
    }
    std::sort(corners.begin(), corners.end());
    return corners;
}

/// The drawings have an element a line.
Picture Read(clip::Drawing const & drawing)
{
    std::ostringstream stream;
    drawing.Write(stream);
    Picture picture{stream.str(), {}, {}, {}};
    std::istringstream lines(picture.source);
    for (std::string line; std::getline(lines, line);)
    {
        if (line.starts_with("<text"))
        {
            picture.texts.push_back(
                {NumberOf(line, "x"), NumberOf(line, "y"), Between(line, "<text", ">"), Between(line, ">", "</text>")});
        }
        else if (line.starts_with("<circle"))
        {
            picture.discs.push_back({NumberOf(line, "cx"), NumberOf(line, "cy"), NumberOf(line, "r")});
        }
        else if (line.starts_with("<polygon") && line.find("fill=\"#ffffff\"") != std::string::npos)
        {
            // A facet is white beneath its colour.
            picture.facets.push_back(ReadCorners(Between(line, "points=\"", "\"")));
        }
    }
    return picture;
}

/// The numbers of the last "(a, b, c)" of a text, with signs as print has them and with or without degrees.
Vector LastTriple(std::string text)
{
    text = text.substr(text.rfind('(') + 1);
    ReplaceAll(text, "\u2212", "-");
    for (std::string_view const mark : {"\u00b0", ",", ")"})
    {
        ReplaceAll(text, mark, "");
    }
    std::istringstream stream(text);
    Vector triple = Vector::Constant(std::nan(""));
    stream >> triple.x() >> triple.y() >> triple.z();
    return triple;
}

Turn About(int axis, double degrees)
{
    return Eigen::AngleAxisd(degrees * k_Degree, Vector::Unit(axis)).toRotationMatrix();
}

Vector Tip()
{
    auto const tip = figures::FlagTip();
    return {tip.X, tip.Y, tip.Z};
}

void ExpectNear(Vector const & shown, Vector const & expected, std::string const & where)
{
    EXPECT_LE((shown - expected).cwiseAbs().maxCoeff(), k_Rounding)
        << where << "\nshown " << shown.transpose() << "\nexpected " << expected.transpose();
}

TEST(Figures, Are_well_formed)
{
    for (figures::Figure const & figure : figures::k_Figures)
    {
        EXPECT_EQ(FindXmlFault(Read(figure.draw()).source), "") << figure.fileName;
    }
}

TEST(Figures, Give_the_same_bytes_each_time)
{
    for (figures::Figure const & figure : figures::k_Figures)
    {
        EXPECT_EQ(Read(figure.draw()).source, Read(figure.draw()).source) << figure.fileName;
    }
}

TEST(Figures, Keep_their_texts_on_the_page_and_apart)
{
    struct Extent
    {
        double left;
        double right;
        double y;
        std::string text;
    };
    for (figures::Figure const & figure : figures::k_Figures)
    {
        std::vector<Extent> extents;
        for (PlacedText const & text : Read(figure.draw()).texts)
        {
            auto const characters =
                std::count_if(text.text.begin(), text.text.end(),
                              [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; });
            // A wide font of the browser: on the average 0.6 of its size a character.
            double const width = 0.6 * NumberOf(text.attributes, "font-size") * static_cast<double>(characters);
            double const share = text.attributes.find("\"middle\"") != std::string::npos ? 0.5
                                 : text.attributes.find("\"end\"") != std::string::npos  ? 1
                                                                                         : 0;
            extents.push_back({text.x - share * width, text.x + (1 - share) * width, text.y, text.text});
        }
        for (std::size_t i = 0; i < extents.size(); ++i)
        {
            EXPECT_GE(extents[i].left, 14) << figure.fileName << ": " << extents[i].text;
            EXPECT_LE(extents[i].right, 1280 - 14) << figure.fileName << ": " << extents[i].text;
            for (std::size_t j = 0; j < i; ++j)
            {
                bool const isApart = std::abs(extents[i].y - extents[j].y) > 10 || extents[i].left > extents[j].right ||
                                     extents[j].left > extents[i].right;
                EXPECT_TRUE(isApart) << figure.fileName << ": " << extents[i].text << " / " << extents[j].text;
            }
        }
    }
}

TEST(Body, Shows_the_outside_of_a_mirrored_box_too)
{
    figures::SpaceView const view({200, 200}, 100, 0.5, 0.4);
    figures::Body const cube = {{C3DBBox(1.0), "#123456"}};
    auto const draw = [&](C3DVector3Tpl<double> const & scaling)
    {
        clip::Drawing drawing(400, 400, "a cube");
        C3DXfoMatTpl<double> matrix;
        matrix.AddScaling(scaling, 1);
        figures::DrawBody(drawing, view, cube, matrix);
        auto facets = Read(drawing).facets;
        std::sort(facets.begin(), facets.end());
        return facets;
    };
    auto const plain = draw({1, 1, 1});
    EXPECT_EQ(plain.size(), 3U); // the sides to the right, above and in front
    EXPECT_EQ(draw({-1, 1, 1}), plain);
    EXPECT_EQ(draw({-1, -1, -1}), plain);
}

TEST(Body, Has_the_near_side_last)
{
    figures::SpaceView const view({200, 200}, 100, 0, 0);
    clip::Drawing drawing(400, 400, "two boxes");
    C3DBBox const near({-0.1, -0.1, 1}, {0.1, 0.1, 2});
    figures::DrawBody(drawing, view, {{near, "#111111"}, {C3DBBox(1.0), "#222222"}}, C3DXfoMatTpl<double>());
    auto const facets = Read(drawing).facets;
    ASSERT_EQ(facets.size(), 2U);
    EXPECT_EQ(facets[1].front(), std::make_pair(190.0, 190.0));
}

TEST(RowVectorsFigure, Shows_the_product_of_the_row_and_the_matrix)
{
    Picture const picture = Read(figures::DrawRowVectors());
    Vector const image = About(2, 30) * Vector(2, 1, 0) + Vector(3, 1, 0);
    auto const equals = picture.StartingWith("=");
    ASSERT_EQ(equals.size(), 1U);
    std::vector<double> shown;
    for (PlacedText const & text : picture.texts)
    {
        if (text.x > equals[0].x && std::abs(text.y - equals[0].y) < 6)
        {
            shown.push_back(std::stod(text.text));
        }
    }
    ASSERT_EQ(shown.size(), 4U);
    ExpectNear({shown[0], shown[1], shown[2]}, image, "p M");
    EXPECT_EQ(shown[3], 1);
}

TEST(RowVectorsFigure, Puts_the_point_and_its_image_where_they_are)
{
    Picture const picture = Read(figures::DrawRowVectors());
    std::vector<Disc> points;
    std::copy_if(picture.discs.begin(), picture.discs.end(), std::back_inserter(points),
                 [](Disc const & disc) { return disc.radius == 5; });
    ASSERT_EQ(points.size(), 2U);
    Disc const origin = picture.discs.front();
    double const unit = (points[0].x - origin.x) / 2;
    Vector const image = About(2, 30) * Vector(2, 1, 0) + Vector(3, 1, 0);
    EXPECT_NEAR(origin.y - points[0].y, unit, 0.02);
    EXPECT_NEAR(points[1].x - origin.x, unit * image.x(), 0.02);
    EXPECT_NEAR(origin.y - points[1].y, unit * image.y(), 0.02);
}

TEST(RowVectorsFigure, Lets_the_left_factor_act_first)
{
    Picture const picture = Read(figures::DrawRowVectors());
    auto const turnFirst = picture.StartingWith("60\u00b0 about Z, then");
    auto const moveFirst = picture.StartingWith("(3, 0, 0), then");
    ASSERT_EQ(turnFirst.size(), 1U);
    ASSERT_EQ(moveFirst.size(), 1U);
    ExpectNear(LastTriple(turnFirst[0].text), {3, 0, 0}, turnFirst[0].text);
    ExpectNear(LastTriple(moveFirst[0].text), About(2, 60) * Vector(3, 0, 0), moveFirst[0].text);
}

TEST(RotationOrdersFigure, Ends_where_the_turns_end_one_after_the_other)
{
    Picture const picture = Read(figures::DrawRotationOrders());
    std::array<double, 3> const degrees = {50, 60, 40};
    std::string order = "XYZ";
    do
    {
        Turn turn = Turn::Identity();
        for (char const letter : order)
        {
            int const axis = letter - 'X';
            turn = About(axis, degrees.at(static_cast<std::size_t>(axis))) * turn;
        }
        auto const title = picture.StartingWith("E3DROTORDER_" + order);
        ASSERT_EQ(title.size(), 1U) << order;
        auto const line = picture.Behind(title[0]);
        ASSERT_FALSE(line.empty()) << order;
        ExpectNear(LastTriple(line[0].text), turn * Tip(), order);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST(RotationOrdersFigure, Names_the_turns_in_the_order_in_which_they_act)
{
    Picture const picture = Read(figures::DrawRotationOrders());
    auto const starts = picture.StartingWith("at first");
    ASSERT_EQ(starts.size(), 6U);
    for (PlacedText const & start : starts)
    {
        auto const title = std::find_if(picture.texts.begin(), picture.texts.end(),
                                        [&start](PlacedText const & text)
                                        {
                                            return text.text.starts_with("E3DROTORDER_") && text.y < start.y &&
                                                   text.y > start.y - 240 && std::abs(text.x - start.x) < 200;
                                        });
        ASSERT_NE(title, picture.texts.end());
        auto const steps = picture.Behind(start);
        ASSERT_GE(steps.size(), 3U);
        std::string acted;
        for (std::size_t i = 0; i < 3; ++i)
        {
            std::string const name = steps[i].text.starts_with("then ") ? steps[i].text.substr(5) : steps[i].text;
            acted += name[0];
        }
        EXPECT_EQ(title->text, "E3DROTORDER_" + acted);
    }
}

class EditSpacesFigure : public testing::Test
{
protected:
    /// The last triple at the foot of the panel with a title.
    Vector ResultOf(std::string const & title) const
    {
        auto const head = m_Picture.StartingWith(title);
        EXPECT_EQ(head.size(), 1U) << title;
        for (PlacedText const & text : m_Picture.texts)
        {
            bool const isInPanel =
                text.x > head[0].x && text.x < head[0].x + 395 && text.y > head[0].y + 200 && text.y < head[0].y + 270;
            if (isInPanel && text.text.find("\u2192") != std::string::npos)
            {
                return LastTriple(text.text);
            }
        }
        ADD_FAILURE() << "no result below " << title;
        return {};
    }

    Turn const m_Object = About(2, -55);
    Turn const m_World = About(2, -20); ///< the world's axes in the parent
    Vector const m_Place{1.1, 0.7, 0};

private:
    Picture const m_Picture = Read(figures::DrawEditSpaces());
};

TEST_F(EditSpacesFigure, Moves_along_the_axes_of_each_space)
{
    Vector const x = Vector::UnitX();
    ExpectNear(ResultOf("AddTranslation((1, 0, 0), LOCAL"), m_Place + m_Object * x, "local");
    ExpectNear(ResultOf("AddTranslation((1, 0, 0), PARENT"), m_Place + x, "parent");
    ExpectNear(ResultOf("AddTranslation((1, 0, 0), REFERENCE"), m_Place + m_World * x, "reference");
}

TEST_F(EditSpacesFigure, Turns_about_the_axes_of_each_space)
{
    Turn const turn = About(1, 90);
    Vector const x = Vector::UnitX();
    ExpectNear(ResultOf("AddRotation(Y 90\u00b0, LOCAL"), m_Object * turn * x, "local");
    ExpectNear(ResultOf("AddRotation(Y 90\u00b0, PARENT"), turn * m_Object * x, "parent");
    ExpectNear(ResultOf("AddRotation(Y 90\u00b0, REFERENCE"), m_World * turn * m_World.transpose() * m_Object * x,
               "reference");
}

TEST_F(EditSpacesFigure, Turns_about_each_pivot)
{
    Turn const turn = About(2, 60);
    Vector const pivot(2, 0.4, 0);
    ExpectNear(ResultOf("AddRotation(Z 60\u00b0), pivot LOCAL"), m_Place, "none");
    ExpectNear(ResultOf("AddRotation(Z 60\u00b0), pivot PARENT"), turn * m_Place, "parent");
    ExpectNear(ResultOf("AddRotation(Z 60\u00b0), pivot REFERENCE"), pivot + turn * (m_Place - pivot), "given");
}

class SignBitsFigure : public testing::Test
{
protected:
    /// The lines of the table: what was put in, then the columns behind it.
    std::vector<std::vector<PlacedText>> Lines() const
    {
        auto const head = m_Picture.StartingWith("scaling put in");
        std::vector<std::vector<PlacedText>> lines;
        for (PlacedText const & text : m_Picture.texts)
        {
            if (text.x == head.at(0).x && text.y > head[0].y)
            {
                lines.push_back(m_Picture.Behind(text));
                lines.back().insert(lines.back().begin(), text);
            }
        }
        return lines;
    }

private:
    Picture const m_Picture = Read(figures::DrawSignBits());
};

TEST_F(SignBitsFigure, Gives_the_axes_back_that_were_put_in)
{
    auto const lines = Lines();
    ASSERT_EQ(lines.size(), 7U);
    for (auto const & line : lines)
    {
        ASSERT_EQ(line.size(), 5U);
        Vector const putIn = LastTriple(line[0].text);
        int bits = 0;
        for (int axis = 0; axis < 3; ++axis)
        {
            bits += putIn[axis] < 0 ? 2 << axis : 0;
        }
        EXPECT_EQ(line[1].text, std::to_string(bits));
        EXPECT_EQ(LastTriple(line[2].text), putIn);
    }
}

TEST_F(SignBitsFigure, Shows_other_parts_of_the_same_matrix_without_them)
{
    for (auto const & line : Lines())
    {
        Vector const putIn = LastTriple(line[0].text);
        Vector const read = LastTriple(line[3].text);
        Vector const angles = LastTriple(line[4].text);
        Turn const turn = About(2, angles.z()) * About(1, angles.y()) * About(0, angles.x());
        Turn const expected = About(2, 25) * putIn.asDiagonal();
        EXPECT_NEAR((turn * read.asDiagonal() - expected).norm(), 0, 1e-9) << line[0].text;
        // All three axes or none.
        EXPECT_EQ(read, Vector::Constant(putIn.prod())) << line[0].text;
    }
}

TEST(SignBitsFigureBodies, Are_the_same_in_the_end)
{
    auto const facets = Read(figures::DrawSignBits()).facets;
    double const half = (1280 - 2 * 32 - 18) / 2.0 + 18; // from panel to panel
    double const lastStep = 32 + 0.64 * (half - 18);     // from here to the right
    std::array<std::vector<Corners>, 2> ends;
    for (Corners corners : facets)
    {
        std::size_t const panel = corners[0].first > 32 + half ? 1 : 0;
        for (auto & corner : corners)
        {
            corner.first = std::round(corner.first - static_cast<double>(panel) * half);
            corner.second = std::round(corner.second);
        }
        if (corners[0].first > lastStep)
        {
            ends[panel].push_back(corners);
        }
    }
    std::sort(ends[0].begin(), ends[0].end());
    std::sort(ends[1].begin(), ends[1].end());
    EXPECT_GE(ends[0].size(), 7U);
    EXPECT_EQ(ends[0], ends[1]);
}

class BoxTablesFigure : public testing::Test
{
protected:
    /// Where the picture in a panel has a number.
    Vector PlaceOf(int panel, int number) const
    {
        std::vector<Vector> found;
        double const left = 32 + panel * k_PanelStep;
        for (PlacedText const & text : m_Picture.texts)
        {
            bool const isOnDisc = text.attributes.find("#ffffff") != std::string::npos;
            if (isOnDisc && text.text == std::to_string(number) && text.x > left && text.x < left + k_PanelStep)
            {
                found.emplace_back(text.x - left, text.y, 0);
            }
        }
        EXPECT_EQ(found.size(), 1U) << panel << ' ' << number;
        return found.at(0);
    }

    Vector MeanOfCorners(std::vector<int> const & corners) const
    {
        Vector sum = Vector::Zero();
        for (int const corner : corners)
        {
            sum += PlaceOf(0, corner);
        }
        return sum / static_cast<double>(corners.size());
    }

private:
    Picture const m_Picture = Read(figures::DrawBoxTables());
};

TEST_F(BoxTablesFigure, Has_the_corners_where_their_names_say)
{
    // X leads to the right, Y up, Z towards the reader: down, and to the left.
    Vector const x = PlaceOf(0, E3DBBOXCORNER_PMM) - PlaceOf(0, E3DBBOXCORNER_MMM);
    Vector const y = PlaceOf(0, E3DBBOXCORNER_MPM) - PlaceOf(0, E3DBBOXCORNER_MMM);
    Vector const z = PlaceOf(0, E3DBBOXCORNER_MMP) - PlaceOf(0, E3DBBOXCORNER_MMM);
    EXPECT_GT(x.x(), 100);
    EXPECT_LT(y.y(), -100);
    EXPECT_LT(z.x(), -30);
    EXPECT_GT(z.y(), 30);
    std::array<Vector, 8> const ways = {Vector::Zero(), z, y + z, y, x, x + z, x + y + z, x + y};
    for (int corner = 0; corner < 8; ++corner)
    {
        EXPECT_NEAR((PlaceOf(0, corner) - PlaceOf(0, 0) - ways[static_cast<std::size_t>(corner)]).norm(), 0, 0.05)
            << corner;
    }
}

TEST_F(BoxTablesFigure, Has_each_edge_between_the_corners_of_its_name)
{
    std::array<std::vector<int>, 12> const ends = {
        {{0, 1}, {3, 2}, {0, 3}, {1, 2}, {4, 5}, {7, 6}, {4, 7}, {5, 6}, {0, 4}, {1, 5}, {3, 7}, {2, 6}}};
    for (int edge = 0; edge < 12; ++edge)
    {
        EXPECT_NEAR((PlaceOf(1, edge) - MeanOfCorners(ends[static_cast<std::size_t>(edge)])).norm(), 0, 0.05) << edge;
    }
}

TEST_F(BoxTablesFigure, Has_each_face_on_its_side)
{
    std::array<std::vector<int>, 6> const corners = {
        {{0, 1, 2, 3}, {4, 5, 6, 7}, {0, 1, 4, 5}, {2, 3, 6, 7}, {0, 3, 4, 7}, {1, 2, 5, 6}}};
    for (int face = 0; face < 6; ++face)
    {
        EXPECT_NEAR((PlaceOf(2, face) - MeanOfCorners(corners[static_cast<std::size_t>(face)])).norm(), 0, 0.05)
            << face;
    }
}

TEST(CompositionFigure, Shows_the_corner_where_each_way_has_it)
{
    Picture const picture = Read(figures::DrawComposition());
    auto const corners = picture.StartingWith("the corner with the dot is at ");
    ASSERT_EQ(corners.size(), 3U);
    Turn const turn = About(2, -40);
    Vector const place(1.3, 0.35, 0);
    Vector const scaling(1, 2, 1);
    ExpectNear(LastTriple(corners[0].text), turn * Tip() + place, "alone");
    ExpectNear(LastTriple(corners[1].text), turn * scaling.cwiseProduct(Tip()) + scaling.cwiseProduct(place),
               "by component");
    ExpectNear(LastTriple(corners[2].text), scaling.cwiseProduct(turn * Tip() + place), "by matrix");
}

TEST(CompositionFigure, Has_its_dots_on_the_bodies)
{
    Picture const picture = Read(figures::DrawComposition());
    ASSERT_EQ(picture.discs.size(), 3U);
    for (Disc const & disc : picture.discs)
    {
        bool const isOnBody =
            std::any_of(picture.facets.begin(), picture.facets.end(),
                        [&disc](Corners const & corners)
                        { return std::count(corners.begin(), corners.end(), std::make_pair(disc.x, disc.y)) == 1; });
        EXPECT_TRUE(isOnBody) << disc.x << ' ' << disc.y;
    }
}

TEST(CompositionFigure, Tells_which_way_shears)
{
    Picture const picture = Read(figures::DrawComposition());
    auto const verdicts = picture.StartingWith("HasShearing() is ");
    ASSERT_EQ(verdicts.size(), 2U);
    EXPECT_EQ(verdicts[0].text, "HasShearing() is false");
    EXPECT_EQ(verdicts[1].text, "HasShearing() is true");
}

} // namespace
