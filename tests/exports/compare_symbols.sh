#!/usr/bin/env bash
# compare_symbols.sh LIBRARY [--update]
#
# Compares what the shared library exports with the list that is kept beside this script, so that a change of the
# interface is seen and meant. With --update the list becomes what the library exports. The list is demangled: both
# compilers then give the same one.
set -euo pipefail
library=$1 action=${2:-}
kept=$(dirname "${BASH_SOURCE[0]}")/symbols.txt

exported() { nm --dynamic --defined-only --demangle "$library" | sed 's/^[0-9a-f]* [A-Za-z] //' | LC_ALL=C sort -u; }

if [ "$action" = --update ]; then
    exported >"$kept"
    exit
fi

if ! changes=$(diff "$kept" <(exported)); then
    printf '%s\n' "$changes" | grep '^[<>]' | sed 's/^</gone:/; s/^>/new: /'
    printf 'The interface of the library has changed. If it was meant to, build the target update_symbols.\n'
    exit 1
fi
