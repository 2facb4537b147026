#include "exports/exported.h"

#include "math/fourier_1d.h"
#include "math/fourier_2d.h"
#include "math/fourier_3d.h"

using exported::Constructor;
using exported::Member;

TEST(Exports, Signals)
{
    Constructor<CDSPSignal1D>(4U);
    Constructor<CDSPSignal1D>(CDSPSignal1D(4));
    Member<CDSPSignal1D &(CDSPSignal1D const &)>(&CDSPSignal1D::operator=);

    Constructor<CDSPSignal2D>(2U, 4U);
    Constructor<CDSPSignal2D>(CDSPSignal2D(2, 4));
    Member<CDSPSignal2D &(CDSPSignal2D const &)>(&CDSPSignal2D::operator=);

    Constructor<CDSPSignal3D>(2U, 2U, 4U);
    Constructor<CDSPSignal3D>(CDSPSignal3D(2, 2, 4));
    Member<CDSPSignal3D &(CDSPSignal3D const &)>(&CDSPSignal3D::operator=);
}

TEST(Exports, FourierTransforms)
{
    using T1 = CDSPTransform1D;
    Constructor<T1>();
    Member<bool(int, CDSPSignal1D *)>(&T1::ComplexFFT);
    Member<bool(int, CDSPSignal1D *)>(&T1::RealFFT);
    Member<bool(int, CDSPSignal1D *)>(&T1::RealDCT);
    Member<bool(int, CDSPSignal1D *)>(&T1::RealDST);
    Member<bool(CDSPSignal1D *)>(&T1::DCTOfRealFFT);
    Member<bool(CDSPSignal1D *)>(&T1::DSTOfRealFFT);

    using T2 = CDSPTransform2D;
    Constructor<T2>();
    Member<bool(int, CDSPSignal2D *)>(&T2::ComplexFFT);
    Member<bool(int, bool, CDSPSignal2D *)>(&T2::RealFFT);
    Member<bool(int, CDSPSignal2D *)>(&T2::RealDCT);
    Member<bool(int, CDSPSignal2D *)>(&T2::RealDST);

    using T3 = CDSPTransform3D;
    Constructor<T3>();
    Member<bool(int, CDSPSignal3D *)>(&T3::ComplexFFT);
    Member<bool(int, bool, CDSPSignal3D *)>(&T3::RealFFT);
    Member<bool(int, CDSPSignal3D *)>(&T3::RealDCT);
    Member<bool(int, CDSPSignal3D *)>(&T3::RealDST);
}
