"""gdb pretty printers for the values of the math library.

Load them by hand with

    (gdb) source math_printers.py

or let gdb load them together with the library: this file under the name of the shared object, with "-gdb.py" appended,
in gdb's auto-load folder (share/gdb/auto-load/usr/lib/libmath.so.1.0.0-gdb.py for /usr/lib/libmath.so.1.0.0). The
folder math_printing lies beside this file or, if this is a symbolic link, beside what it leads to.

The layout of a class comes from the debug information of the program, so the program is compiled with -g. clang++
leaves a class out where it expects to find it in the library, unless it is told -fstandalone-debug; gdb then says
"<incomplete type>". g++ needs no such option.
"""

import os
import sys

import gdb
import gdb.printing

# gdb runs every script in one and the same name space, so all but the next lines is in a package.
sys.path.insert(0, os.path.dirname(os.path.realpath(__file__)))
from math_printing.collection import make_collection  # pylint: disable=wrong-import-position

sys.path.pop(0)

# The current object file is the library while gdb loads this file for it, and None when it is sourced.
gdb.printing.register_pretty_printer(gdb.current_objfile(), make_collection(), replace=True)
