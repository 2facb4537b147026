#pragma once

/// \file
/// The matrix of any size.

#include "math/api.h"

#include <iosfwd>

/// A `double` matrix whose size is chosen at run time, for small linear solves and above all for the Moore-Penrose
/// pseudo-inverse. Each row is an allocation of its own, owned by the object.
///
/// Either both sizes are 0 and the matrix is empty, or both are positive. Nothing is checked: an operation runs over
/// the sizes it names, and an operand or an index that does not fit reads or writes out of bounds. The methods that
/// return an `int` report exhausted memory with 0 and success with 1; none throws.
class MATH_API C3DMatrixMN
{
public:
    /// \name Construction and size
    ///@{

    /// Empty.
    C3DMatrixMN();

    /// An independent copy with rows of its own; empty when memory is short, which `GetNbRow` tells.
    C3DMatrixMN(C3DMatrixMN const & other);

    /// Frees the rows.
    ~C3DMatrixMN();

    /// **Shares the rows of `other` instead of copying them; use `Set` for a copy**. The sizes and the pointer to the
    /// rows are copied and nothing else: rows that this matrix held before are lost without being freed, and afterwards
    /// both destructors free the same rows. A caller that uses it has to part the two again before the first is
    /// destroyed, by assigning an empty matrix to one of them.
    C3DMatrixMN & operator=(C3DMatrixMN const & other);

    /// Gives the matrix a size. The elements are undefined unless the size was the same before, when they stay. A size
    /// below 1 in either direction empties the matrix.
    /// \return 0 when a row cannot be allocated, with the matrix empty; else 1. The array of row pointers is an
    /// exception: when it cannot be allocated the result is 1, the sizes are set and there are no rows, so that the
    /// elements must not be accessed. Nothing tells a caller; SetDimensions to another size or destruction are safe.
    int SetDimensions(int rows, int cols);

    int GetNbRow() const; ///< The number of rows, 0 when empty.
    int GetNbCol() const; ///< The number of columns, 0 when empty.
    ///@}

    /// \name Elements
    ///@{

    /// The element in row r and column c; the indices are not checked.
    double Get(int r, int c) const;
    /// Sets the element in row r and column c; the indices are not checked.
    void Set(int r, int c, double value);

    /// 1 where row and column agree, 0 elsewhere; the matrix may be rectangular.
    void SetIdentity();

    /// Copies the elements of `a` over the size of this matrix, which stays; `a` must be at least as large.
    void Copy(C3DMatrixMN const & a);

    /// Becomes a copy of `a`, of its size and with rows of its own.
    /// \return 0 when memory is short, with the matrix empty; else 1.
    int Set(C3DMatrixMN const & a);
    ///@}

    /// \name Arithmetic
    /// All run over the size of this matrix, which stays.
    ///@{

    /// This plus b, element by element. Operands of sums and differences must be at least as large as this matrix,
    /// which may be any of them.
    C3DMatrixMN & Add(C3DMatrixMN const & b);
    /// a + b.
    C3DMatrixMN & Add(C3DMatrixMN const & a, C3DMatrixMN const & b);
    /// This minus b.
    C3DMatrixMN & Sub(C3DMatrixMN const & b);
    /// a - b.
    C3DMatrixMN & Sub(C3DMatrixMN const & a, C3DMatrixMN const & b);

    /// The transpose of `a`, which must not be this matrix.
    C3DMatrixMN & Transpose(C3DMatrixMN const & a);

    /// The product a b, summed over the columns of `a`. This matrix must be neither operand.
    C3DMatrixMN & Mul(C3DMatrixMN const & a, C3DMatrixMN const & b);

    /// This times b, which must be square, of the size of the columns here; it may be this matrix.
    /// \return 0 when there is no memory for a temporary copy, with this matrix unchanged; else 1.
    int Mul(C3DMatrixMN const & b);

    /// b times this; b must be square, of the size of the rows here, and may be this matrix.
    /// \return as `Mul`
    int LeftMul(C3DMatrixMN const & b);
    ///@}

    /// \name Pseudo-inverse
    ///@{

    /// The Moore-Penrose pseudo-inverse of `a` by recursion over its columns. (T. N. E. Greville, "Some applications
    /// of the pseudoinverse of a matrix", SIAM Review 2, 1960.)
    ///
    /// A column counts as dependent on the ones before it where what they leave unexplained of it, in the sum of its
    /// magnitudes, is below 0.0001 of the column. A remainder, or first column, of length 1e-5 or less counts as
    /// null, whatever the scale of the others.
    ///
    /// This matrix must have as many rows as `a` has columns and as many columns as `a` has rows: it is not resized. It
    /// must not be `a`.
    /// \return 0 when there is no memory for the work vectors, with this matrix unchanged; else 1, for a matrix of any
    /// rank.
    int GrevilleInverse(C3DMatrixMN const & a);

    /// \overload
    /// Of the first m rows and n columns of `a`, into the first n rows and m columns of this matrix, with the threshold
    /// of dependence at 0.001. Where n is 0 the first column is still used, as for n = 1.
    int GrevilleInverse(C3DMatrixMN const & a, unsigned long m, unsigned long n);
    ///@}

    /// \name Text
    ///@{

    /// Prints the label (if not null) on a line of its own, the rows, an empty line, and a line that holds one blank.
    void Dump(wchar_t const * label, std::ostream & stream) const;
    ///@}

private:
    void Free();
    int GrevilleRecursion(C3DMatrixMN const & a, unsigned long m, unsigned long n, double threshold);

    /// The pseudo-inverse of one column: itself over its squared length, or zeros where that is not above 1e-10.
    void InverseVector(double * in, double * out, int count);

    /// The sum of the magnitudes.
    double SumAbsVal(double * v, int count);

    int m_NbRow{0};
    int m_NbCol{0};
    double ** m_Rows{nullptr};
};

/// Writes each row as "( ", the elements with a blank after each, ")" and an end of line; nothing for an empty matrix.
MATH_API std::ostream & operator<<(std::ostream & stream, C3DMatrixMN const & matrix);
