#include "math/matrix_mn.h"

#include "matrix/try_allocate.h"
#include "numeric/text_form.h"

#include <cstddef>
#include <memory>
#include <ostream>
#include <type_traits>

C3DMatrixMN::C3DMatrixMN() = default;

C3DMatrixMN::C3DMatrixMN(C3DMatrixMN const & other) : C3DMatrixMN()
{
    Set(other);
}

C3DMatrixMN::~C3DMatrixMN()
{
    Free();
}

C3DMatrixMN & C3DMatrixMN::operator=(C3DMatrixMN const & other) = default;

void C3DMatrixMN::Free()
{
    if (m_Rows != nullptr)
    {
        for (int r = 0; r < m_NbRow; ++r)
        {
            delete[] m_Rows[r];
        }
        delete[] m_Rows;
    }
    m_NbRow = 0;
    m_NbCol = 0;
    m_Rows = nullptr;
}

int C3DMatrixMN::SetDimensions(int rows, int cols)
{
    if (rows == m_NbRow && cols == m_NbCol)
    {
        return 1;
    }
    Free();
    if (rows < 1 || cols < 1)
    {
        return 1;
    }
    m_NbCol = cols;
    m_Rows = math::detail::TryAllocate<double *>(static_cast<std::size_t>(rows)).release();
    if (m_Rows == nullptr)
    {
        m_NbRow = rows;
        return 1;
    }
    // The count of rows grows with the rows themselves, so that a failure frees those that are there.
    while (m_NbRow < rows)
    {
        std::unique_ptr<double[]> row = math::detail::TryAllocate<double>(static_cast<std::size_t>(cols));
        if (row == nullptr)
        {
            Free();
            return 0;
        }
        m_Rows[m_NbRow++] = row.release();
    }
    return 1;
}

int C3DMatrixMN::GetNbRow() const
{
    return m_NbRow;
}

int C3DMatrixMN::GetNbCol() const
{
    return m_NbCol;
}

double C3DMatrixMN::Get(int r, int c) const
{
    return m_Rows[r][c];
}

void C3DMatrixMN::Set(int r, int c, double value)
{
    m_Rows[r][c] = value;
}

void C3DMatrixMN::SetIdentity()
{
    for (int r = 0; r < m_NbRow; ++r)
    {
        for (int c = 0; c < m_NbCol; ++c)
        {
            m_Rows[r][c] = r == c;
        }
    }
}

void C3DMatrixMN::Copy(C3DMatrixMN const & a)
{
    for (int r = 0; r < m_NbRow; ++r)
    {
        for (int c = 0; c < m_NbCol; ++c)
        {
            m_Rows[r][c] = a.m_Rows[r][c];
        }
    }
}

int C3DMatrixMN::Set(C3DMatrixMN const & a)
{
    if (SetDimensions(a.m_NbRow, a.m_NbCol) == 0)
    {
        return 0;
    }
    // SetDimensions does not report that there was no memory for the row pointers; a is without rows if it met that.
    if (m_NbRow != 0 && (m_Rows == nullptr || a.m_Rows == nullptr))
    {
        Free();
        return 0;
    }
    Copy(a);
    return 1;
}

C3DMatrixMN & C3DMatrixMN::Add(C3DMatrixMN const & b)
{
    return Add(*this, b);
}

C3DMatrixMN & C3DMatrixMN::Add(C3DMatrixMN const & a, C3DMatrixMN const & b)
{
    for (int r = 0; r < m_NbRow; ++r)
    {
        for (int c = 0; c < m_NbCol; ++c)
        {
            m_Rows[r][c] = a.m_Rows[r][c] + b.m_Rows[r][c];
        }
    }
    return *this;
}

C3DMatrixMN & C3DMatrixMN::Sub(C3DMatrixMN const & b)
{
    return Sub(*this, b);
}

C3DMatrixMN & C3DMatrixMN::Sub(C3DMatrixMN const & a, C3DMatrixMN const & b)
{
    for (int r = 0; r < m_NbRow; ++r)
    {
        for (int c = 0; c < m_NbCol; ++c)
        {
            m_Rows[r][c] = a.m_Rows[r][c] - b.m_Rows[r][c];
        }
    }
    return *this;
}

C3DMatrixMN & C3DMatrixMN::Transpose(C3DMatrixMN const & a)
{
    for (int r = 0; r < m_NbRow; ++r)
    {
        for (int c = 0; c < m_NbCol; ++c)
        {
            m_Rows[r][c] = a.m_Rows[c][r];
        }
    }
    return *this;
}

C3DMatrixMN & C3DMatrixMN::Mul(C3DMatrixMN const & a, C3DMatrixMN const & b)
{
    for (int r = 0; r < m_NbRow; ++r)
    {
        for (int c = 0; c < m_NbCol; ++c)
        {
            double sum = 0;
            for (int i = 0; i < a.m_NbCol; ++i)
            {
                sum += a.m_Rows[r][i] * b.m_Rows[i][c];
            }
            m_Rows[r][c] = sum;
        }
    }
    return *this;
}

int C3DMatrixMN::Mul(C3DMatrixMN const & b)
{
    C3DMatrixMN copy;
    if (copy.Set(*this) == 0)
    {
        return 0;
    }
    Mul(copy, &b == this ? copy : b);
    return 1;
}

int C3DMatrixMN::LeftMul(C3DMatrixMN const & b)
{
    C3DMatrixMN copy;
    if (copy.Set(*this) == 0)
    {
        return 0;
    }
    Mul(&b == this ? copy : b, copy);
    return 1;
}

void C3DMatrixMN::Dump(wchar_t const * label, std::ostream & stream) const
{
    math::detail::DumpWithBlankLine(label, stream, *this);
}

std::ostream & operator<<(std::ostream & stream, C3DMatrixMN const & matrix)
{
    for (int r = 0; r < matrix.GetNbRow(); ++r)
    {
        stream << "( ";
        for (int c = 0; c < matrix.GetNbCol(); ++c)
        {
            stream << matrix.Get(r, c) << ' ';
        }
        stream << ")\n";
    }
    return stream;
}

static_assert(std::is_standard_layout_v<C3DMatrixMN>);
static_assert(sizeof(C3DMatrixMN) == 2 * sizeof(int) + sizeof(double **));
