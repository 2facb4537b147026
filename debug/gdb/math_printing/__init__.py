"""How the values of the math library read in gdb."""
