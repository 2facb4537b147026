# What the scripts beside this one share: stopping in a function and printing its values, without what changes from run
# to run.
set pagination off
set confirm off
set print pretty on
set print static-members off
set width 0

python
import re


def show(expression, command="print"):
    """Prints a value under its expression. Addresses of objects are left out."""
    try:
        text = gdb.execute(f"{command} {expression}", to_string=True)
    except gdb.error as error:
        text = f"refused: {error}"
    text = re.sub(r"^\$\d+ = ", "", text.rstrip())
    text = re.sub(r"(@|^\(.*\*.*\) )0x[0-9a-f]+", r"\1...", text)
    print(f"{expression}: {text}")


def stop_in(function):
    """Lets the program go on to the stop in a function, and looks at the locals of that."""
    gdb.execute("run" if gdb.selected_inferior().pid == 0 else "continue", to_string=True)
    gdb.newest_frame().older().select()
    name = gdb.selected_frame().function().name
    assert function in name, f"stopped in {name}"
    print(f"\n# {function}")


def show_locals():
    """Prints the locals of the function, not of its inner blocks, in the order of their declarations."""
    block = gdb.selected_frame().block()
    while block.function is None:
        block = block.superblock
    for symbol in sorted(block, key=lambda symbol: symbol.line):
        show(symbol.name)


gdb.execute("break Stop", to_string=True)
gdb.breakpoints()[-1].silent = True
end
