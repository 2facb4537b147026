"""Vectors and quaternions."""

import math

from .printer import PartsPrinter, SummaryPrinter
from .text import (
    bare_quaternion_text,
    components_of,
    derived_vector_text,
    numbers_of,
    quaternion_text,
    turn_text,
    vector_text,
)


class VectorPrinter(SummaryPrinter):
    """A vector: (X, Y, Z)."""

    def __init__(self, value, names):
        super().__init__(value)
        self.names = names

    def summary(self):
        return vector_text(self.value, self.names)


class QuaternionPrinter(SummaryPrinter):
    """A quaternion, with its angle and axis."""

    def summary(self):
        return quaternion_text(components_of(self.value, "WXYZ"))


class DualQuaternionPrinter(PartsPrinter):
    """A dual quaternion, with the turn and the translation that follows it."""

    def scalars(self, part):
        """W, X, Y, Z of a part."""
        return components_of(self.value[part], "WXYZ")

    def summary(self):
        real = numbers_of(self.scalars("m_Real"))
        dual = numbers_of(self.scalars("m_Dual"))
        if real is None or dual is None or not turn_text(real[0], real[1:]):
            return None
        return f"{turn_text(real[0], real[1:])}, then translation {derived_vector_text(translation(real, dual))}"

    def parts(self):
        yield "real", bare_quaternion_text(self.scalars("m_Real"))
        yield "dual", bare_quaternion_text(self.scalars("m_Dual"))


def translation(real, dual):
    """The translation t of a dual quaternion P + e D: (0, t) = 2 D P^-1."""
    # Bytes that are no quaternion have any length; its square may vanish.
    length = math.hypot(*real)
    w, x, y, z = (number / length for number in real)
    dw, dx, dy, dz = dual
    factor = 2 / length
    return (
        factor * (dx * w - dw * x - dy * z + dz * y),
        factor * (dy * w - dw * y - dz * x + dx * z),
        factor * (dz * w - dw * z - dx * y + dy * x),
    )
