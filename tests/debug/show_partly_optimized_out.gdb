# Prints the values of partly_optimized_out.
source show.gdb

python
stop_in("KeepSome")
show_locals()
gdb.execute("kill", to_string=True)
end
