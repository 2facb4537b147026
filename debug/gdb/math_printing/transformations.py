"""Transformations, held as components and as a matrix."""

import gdb

from .printer import STALE, PartsPrinter
from .text import order_text, unknown_flags_text

# The flags of C3DTransfo. 32 is carried along and means nothing.
COMPONENTS_DIRTY = 1
MATRIX_DIRTY = 2
QN_SCALING = 4
PRESERVE_ROTATION_ORDER = 8
DEFINITELY_IDENTITY = 16
KNOWN_FLAGS = 63


class TransformationPrinter(PartsPrinter):
    """A transformation: which of its two sides is up to date, and that side."""

    def flags(self):
        """The flags."""
        return int(self.value["m_Flags"])

    def summary(self):
        flags = self.flags()
        texts = ["identity"] if flags & DEFINITELY_IDENTITY else []
        valid = []
        if not flags & COMPONENTS_DIRTY:
            valid.append("components")
        if not flags & MATRIX_DIRTY:
            valid.append("matrix")
        texts.append(f"{' and '.join(valid) or 'nothing'} valid")
        texts.append("QN scaling" if flags & QN_SCALING else "no QN scaling")
        if flags & PRESERVE_ROTATION_ORDER:
            texts.append("rotation order preserved")
        return ", ".join(texts + unknown_flags_text(flags, KNOWN_FLAGS))

    def parts(self):
        flags = self.flags()
        if flags & COMPONENTS_DIRTY:
            yield "components", f"{STALE}, to be read in {order_text(self.value['m_XfoRotOrder'])}"
        else:
            yield "scaling", self.value["m_Scaling"]
            yield "scaling orientation", self.scaling_orientation_part()
            yield "rotation", self.value["m_Rotation"]
            yield "translation", self.value["m_Translation"]
        yield "matrix", STALE if flags & MATRIX_DIRTY else self.value["m_XfoMat"]

    def scaling_orientation_part(self):
        """The scaling orientation, which most transformations lack."""
        pointer = self.value["m_pScalingOrientation"]
        address = int(pointer)
        if address == 0:
            return "none"
        try:
            orientation = pointer.dereference()
            orientation.fetch_lazy()
        except gdb.error:
            return f"unreadable at {address:#x}"
        return orientation
