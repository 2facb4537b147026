#include "figures/figures.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

// The pages put pictures in by name, which doxygen does not look at.

namespace
{

std::set<std::string> PicturesOfPages()
{
    std::set<std::string> names;
    std::string const call = "\\picture{";
    for (auto const & entry : std::filesystem::directory_iterator(PAGES_FOLDER))
    {
        if (entry.path().extension() == ".md")
        {
            std::ifstream stream(entry.path());
            std::string const page{std::istreambuf_iterator<char>(stream), {}};
            for (std::size_t at = page.find(call); at != std::string::npos; at = page.find(call, at + 1))
            {
                std::size_t const start = at + call.size();
                names.insert(page.substr(start, page.find(',', start) - start));
            }
        }
    }
    return names;
}

std::set<std::string> DrawnFigures()
{
    std::set<std::string> names;
    for (figures::Figure const & figure : figures::k_Figures)
    {
        names.emplace(figure.fileName);
    }
    return names;
}

TEST(Pages, Show_every_figure)
{
    std::set<std::string> const shown = PicturesOfPages();
    for (std::string const & name : DrawnFigures())
    {
        EXPECT_EQ(shown.count(name), 1U) << name;
    }
}

TEST(Pages, Show_no_picture_that_is_not_there)
{
    std::set<std::string> const drawn = DrawnFigures();
    for (std::string const & name : PicturesOfPages())
    {
        bool const isThere =
            drawn.count(name) == 1 || std::filesystem::exists(std::filesystem::path(PAGES_FOLDER) / "images" / name);
        EXPECT_TRUE(isThere) << name;
    }
}

} // namespace
