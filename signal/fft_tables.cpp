#include "signal/fft_tables.h"

#include <cmath>

namespace math::detail
{

void DSPMakeTwiddles(int nw, int * ip, double * w)
{
    ip[0] = nw;
    ip[1] = 1;
    if (nw < 3)
    {
        return;
    }
    int h = nw / 2;
    double const delta = std::atan(1.0) / h;
    double const cosineOf45 = std::cos(delta * h);
    w[0] = 1;
    w[1] = cosineOf45;
    if (h == 4)
    {
        w[2] = std::cos(delta * 2);
        w[3] = std::sin(delta * 2);
    }
    else if (h > 4)
    {
        DSPMakeBitRevTable(nw, ip);
        w[2] = 0.5 / std::cos(delta * 2);
        w[3] = 0.5 / std::cos(delta * 6);
        for (int j = 4; j < h; j += 4)
        {
            w[j] = std::cos(delta * j);
            w[j + 1] = std::sin(delta * j);
            w[j + 2] = std::cos(3 * delta * j);
            w[j + 3] = -std::sin(3 * delta * j);
        }
    }
    double const * base = w;
    while (h > 2)
    {
        double * const next = w + (base - w) + h;
        h /= 2;
        next[0] = 1;
        next[1] = cosineOf45;
        if (h == 4)
        {
            next[2] = base[4];
            next[3] = base[5];
        }
        else if (h > 4)
        {
            next[2] = 0.5 / base[4];
            next[3] = 0.5 / base[6];
            for (int j = 4; j < h; j += 4)
            {
                for (int i = 0; i < 4; ++i)
                {
                    next[j + i] = base[2 * j + i];
                }
            }
        }
        base = next;
    }
}

void DSPMakeBitRevTable(int nw, int * ip)
{
    ip[2] = 0;
    ip[3] = 16;
    int m = 2;
    for (int l = nw; l > 32; l /= 4)
    {
        int const m2 = 2 * m;
        int const q = 8 * m2;
        for (int j = m; j < m2; ++j)
        {
            int const p = 4 * ip[j];
            ip[m + j] = p;
            ip[m2 + j] = p + q;
        }
        m = m2;
    }
}

void DSPMakeCosines(int nc, int * ip, double * c)
{
    ip[1] = nc;
    if (nc < 2)
    {
        return;
    }
    int const h = nc / 2;
    double const delta = std::atan(1.0) / h;
    c[0] = std::cos(delta * h);
    c[h] = 0.5 * c[0];
    for (int j = 1; j < h; ++j)
    {
        c[j] = 0.5 * std::cos(delta * j);
        c[nc - j] = 0.5 * std::sin(delta * j);
    }
}

} // namespace math::detail
