#!/usr/bin/env bash
# build_example.sh cmake|pkg-config SOURCE-DIR BUILD-DIR COMPILER
#
# Installs the build to a scratch prefix, takes the C++ example from the README, builds it against the installation alone
# and compares what it prints with what the README says.
set -euo pipefail
way=$1 source=$2 build=$3 compiler=$4

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# The first fenced block of a language in the README.
block() { awk -v open="\`\`\`$1" '$0 == open { inside = 1; next } $0 == "```" { if (inside) exit } inside' "$source/README.md"; }

cmake --install "$build" --prefix "$scratch/prefix" >/dev/null
block cpp >"$scratch/example.cpp"
block text >"$scratch/expected"
[ -s "$scratch/example.cpp" ] && [ -s "$scratch/expected" ]

case $way in
cmake)
    block cmake >"$scratch/CMakeLists.txt"
    cmake -G Ninja -S "$scratch" -B "$scratch/build" -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_PREFIX_PATH="$scratch/prefix" >/dev/null
    cmake --build "$scratch/build" >/dev/null
    program=$scratch/build/example
    ;;
pkg-config)
    pc=$(dirname "$(find "$scratch/prefix" -name math.pc)")
    read -ra flags <<<"$(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs math)"
    "$compiler" -Wall -Wextra -Wpedantic -Werror "$scratch/example.cpp" "${flags[@]}" -o "$scratch/example"
    LD_LIBRARY_PATH=$(dirname "$(find "$scratch/prefix" -name libmath.so)")
    export LD_LIBRARY_PATH
    program=$scratch/example
    ;;
esac

"$program" | diff "$scratch/expected" -
