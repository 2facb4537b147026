#include "clip/time_axis.h"

#include "clip/axis_step.h"
#include "clip/number_text.h"
#include "clip/page_style.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace clip
{

namespace
{

constexpr double k_LeastTimeDistance = 90;

} // namespace

void DrawTimeAxis(Drawing & drawing, TimeAxis const & axis)
{
    double const width = axis.right - axis.left;
    double const most = std::floor(width / k_LeastTimeDistance);
    double const step = ChooseDecimalStep(axis.length, most);
    // Nothing but the start where the clip has no length, or one that underflows.
    bool const hasLength = axis.length > 0 && step > 0;
    int const count = hasLength ? static_cast<int>(std::min(std::floor(axis.length / step + 1e-6), most)) : 0;
    int const decimals = hasLength ? static_cast<int>(std::clamp(-std::floor(std::log10(step)), 0.0, 17.0)) : 0;
    for (int i = 0; i <= count; ++i)
    {
        double const time = i * step;
        double const x = axis.left + (hasLength ? time / axis.length * width : 0);
        drawing.Line({x, axis.top}, {x, axis.bottom + 5}, {std::string(k_GridColor), 1.2});
        drawing.Text({x, axis.bottom + 22}, RoundedText(time, decimals), {13, std::string(k_Ink), Anchor::Middle});
    }
    drawing.Text({(axis.left + axis.right) / 2, axis.bottom + 41}, "seconds",
                 {12, std::string(k_QuietInk), Anchor::Middle});
}

} // namespace clip
