"""Matrices, row by row."""

import gdb

from .printer import PartsPrinter
from .text import AXES, is_single, rounded_to_single, scalar_text, tuple_text

# A matrix whose sizes are no sizes must not fill the screen, nor keep gdb busy.
MAX_ROWS = 32
MAX_COLUMNS = 32

# The bits of the mask byte of C3DXfoMatTpl that tell of negative scale axes: X, Y, Z.
SIGN_BITS = (2, 4, 8)


class MatrixPrinter(PartsPrinter):
    """A matrix of fixed size, row by row."""

    def __init__(self, value, size):
        super().__init__(value)
        self.size = size

    def rows(self):
        """The scalars, row by row."""
        elements = self.value["m_Elements"]
        return [[elements[r][c] for c in range(self.size)] for r in range(self.size)]

    def summary(self):
        return None

    def parts(self):
        for r, row in enumerate(self.rows()):
            yield f"[{r}]", tuple_text(map(scalar_text, row))


class TransformationMatrixPrinter(MatrixPrinter):
    """A transformation matrix, with the scale axes that are negative.

    Bits tell them. Where these contradict the determinant, whoever reads them takes the complement, and so does this.
    """

    def __init__(self, value):
        super().__init__(value, 4)

    def summary(self):
        mask = int(self.value["m_MaskInfo"])
        negative = [bool(mask & bit) for bit in SIGN_BITS]
        if self.is_mirrored() in (None, sum(negative) % 2 == 1):
            return f"negative scale axes: {self.names(negative)}"
        complement = self.names(not axis for axis in negative)
        return f"negative scale axes: {complement} (the sign bits, {self.names(negative)}, contradict the determinant)"

    @staticmethod
    def names(negative):
        """The names of the axes that are negative."""
        return "".join(name for name, axis in zip(AXES, negative) if axis) or "none"

    def is_mirrored(self):
        """Whether the library takes the matrix for mirrored; None if it cannot be read."""
        scalars = sum(self.rows(), [])
        try:
            numbers = [float(scalar) for scalar in scalars]
        except gdb.error:
            return None
        rounded = rounded_to_single if is_single(scalars[0]) else float
        # A NaN counts as mirrored.
        return not determinant([numbers[4 * r : 4 * r + 4] for r in range(4)], rounded) >= 0


def determinant(m, rounded):
    """The determinant of a four by four matrix, with the operations and the roundings of the library.

    The sign of a nearly singular matrix hangs on them.
    """

    def alternating(*products):
        total = rounded(products[0][0] * products[0][1])
        for i, (a, b) in enumerate(products[1:]):
            product = rounded(a * b)
            total = rounded(total - product if i % 2 == 0 else total + product)
        return total

    def minor(i, j):
        return alternating((m[2][i], m[3][j]), (m[2][j], m[3][i]))

    def cofactor(i, j, k):
        return alternating((m[1][i], minor(j, k)), (m[1][j], minor(i, k)), (m[1][k], minor(i, j)))

    columns = ((1, 2, 3), (0, 2, 3), (0, 1, 3), (0, 1, 2))
    return alternating(*((m[0][c], cofactor(*columns[c])) for c in range(4)))


class DynamicMatrixPrinter(PartsPrinter):
    """A matrix of any size, row by row, up to a limit."""

    def size(self):
        """The numbers of rows and columns."""
        return int(self.value["m_NbRow"]), int(self.value["m_NbCol"])

    def obstacle(self):
        """Why the rows cannot be shown; None if they can."""
        rows, columns = self.size()
        if rows < 0 or columns < 0 or (rows == 0) != (columns == 0):
            return "no valid size"
        pointer = self.value["m_Rows"]
        if rows > 0 and int(pointer) == 0:
            return "no rows"
        try:
            if rows > 0:
                int(pointer[0])
        except gdb.error:
            return f"unreadable rows at {int(pointer):#x}"
        return None

    def summary(self):
        rows, columns = self.size()
        obstacle = self.obstacle()
        return f"{rows} x {columns}" + (f", {obstacle}" if obstacle else "")

    def parts(self):
        if self.obstacle():
            return
        rows, columns = self.size()
        for r in range(min(rows, MAX_ROWS)):
            yield f"[{r}]", self.row_text(r, columns)
        if rows > MAX_ROWS:
            yield "...", f"{rows - MAX_ROWS} more rows"

    def row_text(self, r, columns):
        """A row, or that it cannot be read."""
        try:
            row = self.value["m_Rows"][r]
            float(row[0])
        except gdb.error:
            return "<unreadable>"
        texts = [scalar_text(row[c]) for c in range(min(columns, MAX_COLUMNS))]
        if columns > MAX_COLUMNS:
            texts.append(f"... {columns - MAX_COLUMNS} more")
        return tuple_text(texts)
