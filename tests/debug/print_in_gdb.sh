#!/usr/bin/env bash
# print_in_gdb.sh sourced|auto-loaded|optimized GDB PRINTERS-DIR LIBRARY PROGRAM
#
# Stops PROGRAM in gdb, prints its values and compares what is printed with what is expected. The printers are sourced
# by hand, or found by gdb beside the library. Ends with 77 where this machine does not let one process watch another.
# With MATH_UPDATE_EXPECTED set, what is printed becomes what is expected.
set -euo pipefail
way=$1 gdb=$2 printers=$3 library=$(readlink -f "$4") program=$5
here=$(cd "$(dirname "$0")" && pwd)

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export PYTHONDONTWRITEBYTECODE=1 DEBUGINFOD_URLS='' LC_ALL=C.UTF-8

load=(-x "$printers/math_printers.py")
if [ "$way" = auto-loaded ]; then
    folder=$scratch/auto-load$(dirname "$library")
    mkdir -p "$folder"
    cp "$printers/math_printers.py" "$folder/$(basename "$library")-gdb.py"
    cp -r "$printers/math_printing" "$folder/"
    load=(-iex "set auto-load scripts-directory $scratch/auto-load" -iex "set auto-load safe-path $scratch/auto-load")
fi
run_gdb() { "$gdb" -nx -batch -iex "directory $here" "$@" "$program" >"$scratch/printed" 2>"$scratch/complaints"; }

run_gdb -ex run || true
forbidden=$(grep -E 'Could not trace|ptrace: |Operation not permitted' "$scratch/complaints" |
    grep -v 'address space randomization') || true
if [ -n "$forbidden" ]; then
    cat "$scratch/complaints"
    echo "gdb may not run a program here."
    exit 77
fi

if [ "$way" = optimized ]; then
    run_gdb "${load[@]}" -x "$here/show_partly_optimized_out.gdb" || { cat "$scratch/complaints"; exit 1; }
    cat "$scratch/printed" "$scratch/complaints"
    # What is dropped is up to the compiler; something is, and it lies within a value.
    grep -qE '\(.*<optimized out>' "$scratch/printed"
    [ "$(grep -cE '^(vector|quaternion|matrix|transformation|rotation): ' "$scratch/printed")" = 5 ]
    if grep -qE 'Python Exception|Traceback|refused' "$scratch/printed" "$scratch/complaints"; then
        exit 1
    fi
    exit 0
fi

run_gdb "${load[@]}" -x "$here/show_printed_values.gdb" || { cat "$scratch/complaints"; exit 1; }
if [ -n "${MATH_UPDATE_EXPECTED-}" ]; then
    cp "$scratch/printed" "$here/expected.txt"
fi
diff -u "$here/expected.txt" "$scratch/printed"
if grep -E 'Python Exception|Traceback' "$scratch/complaints"; then
    exit 1
fi
