"""What the printers have in common: whatever the memory holds, they do not raise."""

import gdb

# In place of a form that is not up to date: its numbers would mislead.
STALE = "stale"


class SummaryPrinter:
    """A value in one line. What cannot be read, or lacks a field, is told in place of the line."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        """The line for gdb."""
        try:
            return self.summary()
        except gdb.error as error:
            return f"<{error}>"

    def summary(self):
        """The line; None for no line."""
        raise NotImplementedError


class PartsPrinter(SummaryPrinter):
    """A value with parts under their names: strings, or values of the program with printers of their own."""

    def children(self):
        """The parts for gdb, up to one that cannot be read."""
        try:
            yield from self.parts()
        except gdb.error as error:
            yield "error", f"<{error}>"

    def parts(self):
        """Pairs of a name and a part."""
        raise NotImplementedError
