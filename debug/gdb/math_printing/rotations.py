"""Rotations: of several forms, and of one."""

import math

from .printer import STALE, PartsPrinter, SummaryPrinter
from .text import (
    AXES,
    angle_text,
    angles_text,
    components_of,
    order_text,
    quaternion_text,
    unknown_flags_text,
    vector_text,
)

# The flags of C3DRotation.
SOURCE_MASK = 3
QUATERNION_DIRTY = 4
MATRIX_DIRTY = 8
ANGLES_DIRTY = 16
DEFINITELY_IDENTITY = 32
KNOWN_FLAGS = 63


class RotationPrinter(PartsPrinter):
    """A rotation that holds several forms: which was given, and those that are up to date."""

    SOURCES = ("quaternion", "matrix", "Euler angles")

    def flags(self):
        """The flags."""
        return int(self.value["m_Flags"])

    def summary(self):
        flags = self.flags()
        texts = ["identity"] if flags & DEFINITELY_IDENTITY else []
        source = flags & SOURCE_MASK
        all_dirty = QUATERNION_DIRTY | MATRIX_DIRTY | ANGLES_DIRTY
        if flags & all_dirty == all_dirty:
            texts.append("no valid form")
        elif source < len(self.SOURCES):
            texts.append("given as " + self.SOURCES[source])
        else:
            texts.append(f"unknown source {source}")
        texts.append(order_text(self.value["m_RotOrder"]))
        return ", ".join(texts + unknown_flags_text(flags, KNOWN_FLAGS))

    def parts(self):
        flags = self.flags()
        has_quaternion = not flags & QUATERNION_DIRTY
        yield "quaternion", self.value["m_Quat"] if has_quaternion else STALE
        if has_quaternion:
            yield "angle", self.angle_part()
        yield "matrix", STALE if flags & MATRIX_DIRTY else self.value["m_Matrix"]
        yield "Euler angles", STALE if flags & ANGLES_DIRTY else angles_text(self.value["m_XYZAngles"])

    def angle_part(self):
        """The angle as it was given, whole turns included; a NaN stands for none but that of the quaternion."""
        angle = self.value["m_Angle"]
        return "that of the quaternion" if math.isnan(float(angle)) else angle_text(angle)


class CompactRotationPrinter(SummaryPrinter):
    """A rotation in its one form."""

    def summary(self):
        values = self.value["m_Values"]
        last = self.value["m_Last"]
        # Read as a number: one that is no enumerator has no name.
        form = int(self.value["m_Rep"])
        if form == 0:
            return "quaternion " + quaternion_text([last["scalar"], *components_of(values, AXES)])
        if form == 1:
            return f"Euler angles {angles_text(values)}, {order_text(last['order'])}"
        if form == 2:
            return f"axis {vector_text(values)}, angle {angle_text(last['scalar'])}"
        return f"unknown form {form}"
