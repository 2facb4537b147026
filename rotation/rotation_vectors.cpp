#include "math/rotation.h"

#include "matrix/map_vectors.h"

void C3DRotation::RotateVct(C3DVector3Tpl<double> const & in, C3DVector3Tpl<double> & out)
{
    if (_IsDefinitelyIdentity())
    {
        out = in;
        return;
    }
    FreshenMatrix();
    out.Mul(in, m_Matrix);
}

void C3DRotation::InvRotateVct(C3DVector3Tpl<double> const & in, C3DVector3Tpl<double> & out)
{
    if (_IsDefinitelyIdentity())
    {
        out = in;
        return;
    }
    FreshenMatrix();
    out.Mul(m_Matrix, in);
}

void C3DRotation::RotateVct(C3DVector3Tpl<double> const * in, long n, C3DVector3Tpl<double> * out)
{
    Rotate(in, n, out, false);
}

void C3DRotation::InvRotateVct(C3DVector3Tpl<double> const * in, long n, C3DVector3Tpl<double> * out)
{
    Rotate(in, n, out, true);
}

void C3DRotation::Rotate(C3DVector3Tpl<double> const * in, long n, C3DVector3Tpl<double> * out, bool inverse)
{
    if (n <= 0)
    {
        return;
    }
    if (_IsDefinitelyIdentity())
    {
        for (long i = 0; i < n; ++i)
        {
            out[i] = in[i];
        }
        return;
    }
    FreshenMatrix();
    C3DRotMatTpl<double> matrix = m_Matrix;
    if (inverse)
    {
        matrix.Transpose();
    }
    math::detail::MapVectors(matrix, in, n, out);
}
