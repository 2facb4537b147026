"""Numbers, vectors, angles and quaternions of the program as text.

A number is the shortest that reads back as the same value. What is derived for the reader (degrees, an axis, a length)
has six digits.
"""

import ctypes
import math

import gdb

AXES = "XYZ"
ORDERS = ("XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX")


def rounded_to_single(number):
    """The nearest float; what is too large becomes infinite."""
    return ctypes.c_float(number).value


def is_single(value):
    """Whether a scalar of the program is a float."""
    return value.type.strip_typedefs().sizeof == ctypes.sizeof(ctypes.c_float)


def shortest(number, single):
    """The shortest decimal that reads back as the same float or double."""
    if single and math.isfinite(number):
        candidates = (float(f"{number:.{digits}g}") for digits in range(1, 10))
        number = next(candidate for candidate in candidates if rounded_to_single(candidate) == number)
    return repr(number).removesuffix(".0")


def scalar_text(value):
    """A scalar of the program, or why there is none."""
    try:
        return shortest(float(value), is_single(value))
    except gdb.error as error:
        return "<optimized out>" if "optimized out" in str(error) else "<unreadable>"


def tuple_text(texts):
    """Texts in the parentheses of a vector."""
    return "(" + ", ".join(texts) + ")"


def numbers_of(values):
    """Scalars of the program as numbers; None unless all of them can be read and are finite."""
    try:
        numbers = [float(value) for value in values]
    except gdb.error:
        return None
    return numbers if all(map(math.isfinite, numbers)) else None


def degrees_text(radians):
    """An angle in degrees."""
    return f"{math.degrees(radians):.6g}"


def angle_text(value):
    """An angle in radians and in degrees."""
    numbers = numbers_of([value])
    return scalar_text(value) + (f" = {degrees_text(numbers[0])} degrees" if numbers else "")


def derived_vector_text(numbers):
    """A vector that was derived for the reader: tiny components are rounding errors, and zero has no sign."""
    return tuple_text(f"{round(number, 6) + 0.0:g}" for number in numbers)


def components_of(vector, names):
    """Components of a vector or quaternion of the program."""
    return [vector[name] for name in names]


def vector_text(vector, names="XYZ"):
    """The components of a vector."""
    return tuple_text(map(scalar_text, components_of(vector, names)))


def angles_text(angles):
    """A triple of Euler angles, in radians and in degrees."""
    numbers = numbers_of(components_of(angles, AXES))
    return vector_text(angles) + (f" = {tuple_text(map(degrees_text, numbers))} degrees" if numbers else "")


def turn_text(w, vector):
    """What a quaternion does: its angle about its axis, and its length where that is not 1. Empty for a null one."""
    sine = math.hypot(*vector)
    length = math.hypot(w, sine)
    if length == 0 or not math.isfinite(length):
        return ""
    turn = degrees_text(2 * math.atan2(sine, w)) + " degrees"
    if sine != 0:
        turn += " about " + derived_vector_text(number / sine for number in vector)
    return turn if abs(length - 1) <= 1e-6 else f"{turn}, length {length:.6g}"


def bare_quaternion_text(scalars):
    """The four scalars W, X, Y, Z under their names."""
    return tuple_text(f"{name} {scalar_text(scalar)}" for name, scalar in zip("WXYZ", scalars))


def quaternion_text(scalars):
    """A quaternion and the turn that it is."""
    numbers = numbers_of(scalars)
    turn = turn_text(numbers[0], numbers[1:]) if numbers else ""
    return bare_quaternion_text(scalars) + (f": {turn}" if turn else "")


def order_text(value):
    """The order of Euler angles."""
    order = int(value)
    return f"order {ORDERS[order]}" if 0 <= order < len(ORDERS) else f"unknown order {order}"


def unknown_flags_text(flags, known):
    """A list with a remark about bits that no one sets; mostly empty."""
    unknown = flags & ~known
    return [f"unknown flags {unknown:#x}"] if unknown else []
