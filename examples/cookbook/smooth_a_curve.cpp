// A captured hip trembles faster than any hip can. The cosine transform splits its height into oscillations from slow
// to fast; take the fast ones away, do the normalising that the transform leaves to its caller, and transform back.

#include <math/fourier_1d.h>

#include <cmath>
#include <cstdio>
#include <numbers>

constexpr unsigned int k_Frames = 32; // a power of two: nothing checks it

// The oscillation of k half periods over the whole curve, as the transform has it.
double Wave(unsigned int k, unsigned int frame)
{
    return std::cos(std::numbers::pi * k * (frame + 0.5) / k_Frames);
}

// Takes away what has `firstDropped` half periods or more over the curve. False where memory is short.
bool Smooth(CDSPSignal1D & curve, unsigned int firstDropped)
{
    CDSPTransform1D transform; // serves one kind of transform; there and back are one kind
    if (!transform.RealDCT(-1, &curve))
    {
        return false;
    }
    curve.m_Data[0] /= 2; // the way back expects the mean halved, and there and back multiplies by half the frames
    for (unsigned int k = 0; k < curve.m_Size; ++k)
    {
        curve.m_Data[k] *= k < firstDropped ? 2.0 / curve.m_Size : 0;
    }
    return transform.RealDCT(1, &curve);
}

int main()
{
    // Made of waves, so that the truth is known: a rise with a slow sway, and a tremble.
    auto const steady = [](unsigned int frame) { return 90 - 10 * Wave(1, frame) + 3 * Wave(4, frame); };
    auto const captured = [&](unsigned int frame) { return steady(frame) + 2 * Wave(21, frame) + Wave(27, frame); };
    CDSPSignal1D curve(k_Frames);
    for (unsigned int frame = 0; curve.m_Data != nullptr && frame < k_Frames; ++frame)
    {
        curve.m_Data[frame] = captured(frame);
    }
    if (!Smooth(curve, 10)) // false too for a curve without memory
    {
        return 1;
    }
    double before = 0;
    double after = 0;
    for (unsigned int frame = 0; frame < k_Frames; ++frame)
    {
        before = std::fmax(before, std::abs(captured(frame) - steady(frame)));
        after = std::fmax(after, std::abs(curve.m_Data[frame] - steady(frame)));
        if (frame % 8 == 0)
        {
            std::printf("frame %2u  captured %.3f  smooth %.3f\n", frame, captured(frame), curve.m_Data[frame]);
        }
    }
    std::printf("off the steady motion by up to %.3f before, %.3f after\n", before, after);
}
