# Prints the values of printed_values, stop by stop.
source show.gdb

python
for group in (
    "Vectors",
    "Quaternions",
    "Matrices",
    "TransformationMatrices",
    "RotationsGivenAsQuaternion",
    "RotationsGivenOtherwise",
    "CompactRotations",
    "Transformations",
):
    stop_in(group)
    show_locals()

stop_in("Overwritten")

# Bytes that were never any of these objects.
for name in (
    "C3DVector2Tpl<float>",
    "C3DVector3Tpl<double>",
    "C3DVectorw",
    "C3DQuatTpl<double>",
    "C3DDualQuatTpl<double>",
    "C3DMatrix33Tpl<double>",
    "C3DMatrixMN",
    "C3DXfoMatTpl<float>",
    "C3DRotation",
    "C3DRotation3Tpl<double>",
    "C3DTransfo",
):
    show(f"*({name} *)overwritten")

# Nowhere at all.
show("*(C3DTransfo *)16")
show("*(C3DMatrixMN *)16")
show("(C3DRotation *)0")


def show_corrupt(expression, *assignments):
    """Prints a value after changes to its fields."""
    print("after " + ", ".join(assignments))
    for assignment in assignments:
        gdb.execute(f"set variable {assignment}", to_string=True)
    show(expression)


# Objects that are overwritten in part.
show("matrix")
show_corrupt("matrix", "matrix.m_Rows[1] = (double *)16")
show_corrupt("matrix", "matrix.m_Rows[1] = (double *)0")
show_corrupt("matrix", "matrix.m_NbRow = 2147483647", "matrix.m_NbCol = 0")
show_corrupt("matrix", "matrix.m_NbRow = -1", "matrix.m_NbCol = 2")
show_corrupt("matrix", "matrix.m_NbRow = 1", "matrix.m_NbCol = 2147483647", "matrix.m_Rows[0] = (double *)overwritten")
show_corrupt("matrix", "matrix.m_NbRow = 2147483647", "matrix.m_NbCol = 1", "matrix.m_Rows = (double **)overwritten")
show_corrupt("matrix", "matrix.m_Rows = (double **)16")
show_corrupt("matrix", "matrix.m_Rows = (double **)0")
show("rotation")
show_corrupt("rotation", "rotation.m_RotOrder = 6")
show_corrupt("rotation", "rotation.m_Flags = 0x43")
show_corrupt("rotation", "rotation.m_Flags = 0xff")
show("transformation")
show_corrupt("transformation", "transformation.m_pScalingOrientation = (C3DRotation *)16")
show_corrupt("transformation", "transformation.m_Flags = 0x80")
show_corrupt("transformation", "transformation.m_Flags = 0xff", "transformation.m_XfoRotOrder = -1")
show("compact")
show_corrupt("compact", "compact.m_Last.order = -1")
show_corrupt("compact", "compact.m_Last.order = 6")
show_corrupt("compact", "compact.m_Rep = 3")

# The plain fields are there for who asks for them, and where the printers are switched off.
print("\n# Raw")
show("*(C3DVector2Tpl<float> *)overwritten", "print/r")


def switch(command, printers):
    """Switches printers on or off, and tells how many that were."""
    print(gdb.execute(f"{command} pretty-printer .* {printers}", to_string=True).splitlines()[0])
    show("*(C3DVector2Tpl<float> *)overwritten")
    show("compact")


switch("disable", "math")
switch("enable", "math")
switch("disable", "math;C3DVector2Tpl")
gdb.execute("kill", to_string=True)
end
