"""The printers by the names of their classes."""

import gdb.printing

from .matrices import DynamicMatrixPrinter, MatrixPrinter, TransformationMatrixPrinter
from .rotations import CompactRotationPrinter, RotationPrinter
from .transformations import TransformationPrinter
from .vectors import DualQuaternionPrinter, QuaternionPrinter, VectorPrinter


def make_collection():
    """The printers of the library, under the name by which gdb's info, enable and disable commands know them."""
    collection = gdb.printing.RegexpCollectionPrettyPrinter("math")

    def add(name, pattern, printer):
        collection.add_printer(name, f"^{pattern}$", printer)

    scalar = "<(float|double)>"
    add("C3DVector2Tpl", f"C3DVector2Tpl{scalar}", lambda value: VectorPrinter(value, "XY"))
    add("C3DVector3Tpl", f"C3DVector3Tpl{scalar}", lambda value: VectorPrinter(value, "XYZ"))
    add("C3DVector4Tpl", f"C3DVector4Tpl{scalar}", lambda value: VectorPrinter(value, "XYZW"))
    add("C3DVectorw", "C3DVectorw", lambda value: VectorPrinter(value, "XYZW"))
    add("C3DMatrix33Tpl", f"C3DMatrix33Tpl{scalar}", lambda value: MatrixPrinter(value, 3))
    add("C3DMatrix44Tpl", f"C3DMatrix44Tpl{scalar}", lambda value: MatrixPrinter(value, 4))
    add("C3DMatrixMN", "C3DMatrixMN", DynamicMatrixPrinter)
    add("C3DQuatTpl", f"C3DQuatTpl{scalar}", QuaternionPrinter)
    add("C3DRotMatTpl", f"C3DRotMatTpl{scalar}", lambda value: MatrixPrinter(value, 3))
    add("C3DRotation", "C3DRotation", RotationPrinter)
    add("C3DRotation3Tpl", f"C3DRotation3Tpl{scalar}", CompactRotationPrinter)
    add("C3DXfoMatTpl", f"C3DXfoMatTpl{scalar}", TransformationMatrixPrinter)
    add("C3DTransfo", "C3DTransfo", TransformationPrinter)
    add("C3DDualQuatTpl", f"C3DDualQuatTpl{scalar}", DualQuaternionPrinter)
    return collection
