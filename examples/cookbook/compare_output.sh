#!/usr/bin/env bash
# compare_output.sh PROGRAM EXPECTED-TEXT
#
# Runs a recipe in an empty folder: it prints what the text says, on the standard output alone, and leaves no file behind.
set -euo pipefail
program=$(realpath "$1")
expected=$(realpath "$2")

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/empty"
cd "$scratch/empty"

"$program" >"$scratch/output" 2>"$scratch/errors"
diff "$expected" "$scratch/output"
diff /dev/null "$scratch/errors"
[ -z "$(ls -A)" ]
