#!/usr/bin/env bash
# build_example.sh prefix|archive|debian cmake|pkg-config SOURCE-DIR BUILD-DIR COMPILER
#
# Installs the build to a scratch place, takes the C++ example from the README, builds it against the installation alone
# and compares what it prints with what the README says.
set -euo pipefail
delivery=$1 way=$2 source=$3 build=$4 compiler=$5

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# The first fenced block of a language in the README.
block() { awk -v open="\`\`\`$1" '$0 == open { inside = 1; next } $0 == "```" { if (inside) exit } inside' "$source/README.md"; }

pack() { (cd "$scratch" && cpack --config "$build/CPackConfig.cmake" -G "$1" -B "$scratch/packages" >/dev/null); }

# Installs packages into a root of its own, whose package database knows of nothing but what the library may depend on.
# ldconfig, which the installation calls, would look at this machine's libraries.
debian_install() {
    PATH=$scratch/bin:$PATH fakeroot dpkg --root="$scratch/root" --force-script-chrootless --install "$@" \
        >"$scratch/dpkg.log" 2>&1
}

install_debian() {
    pack DEB
    mkdir -p "$scratch"/bin "$scratch"/root/var/lib/dpkg/{info,updates}
    printf '#!/bin/sh\n' >"$scratch/bin/ldconfig"
    chmod +x "$scratch/bin/ldconfig"
    dpkg-query --status libc6 libgcc-s1 libstdc++6 >"$scratch/root/var/lib/dpkg/status"

    local runtime=("$scratch"/packages/libmath[0-9]*.deb) development=("$scratch"/packages/libmath-dev_*.deb)
    ! debian_install "${development[@]}" || fail "the development package can be installed without the library"
    debian_install "${runtime[@]}" || fail "$(cat "$scratch/dpkg.log")"
    [ -z "$(dpkg-deb --contents "${runtime[0]}" | grep -v '/$' | grep -v '/libmath\.so\.\|/copyright$')" ] ||
        fail "the package of the library holds more than the library and its licence"
    debian_install "${development[@]}" || fail "$(cat "$scratch/dpkg.log")"
    prefix=$scratch/root/usr
}

case $delivery in
prefix)
    prefix=$scratch/prefix
    cmake --install "$build" --prefix "$prefix" >/dev/null
    ;;
archive)
    pack TGZ
    tar -xzf "$scratch"/packages/*.tar.gz -C "$scratch"
    prefix=$(echo "$scratch"/math-*)
    ;;
debian) install_debian ;;
esac

block cpp >"$scratch/example.cpp"
block text >"$scratch/expected"
[ -s "$scratch/example.cpp" ] && [ -s "$scratch/expected" ]

case $way in
cmake)
    block cmake >"$scratch/CMakeLists.txt"
    cmake -G Ninja -S "$scratch" -B "$scratch/build" -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
    cmake --build "$scratch/build" >/dev/null
    program=$scratch/build/example
    ;;
pkg-config)
    pc=$(dirname "$(find "$prefix" -name math.pc)")
    read -ra flags <<<"$(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs math)"
    "$compiler" -Wall -Wextra -Wpedantic -Werror "$scratch/example.cpp" "${flags[@]}" -o "$scratch/example"
    LD_LIBRARY_PATH=$(dirname "$(find "$prefix" -name libmath.so)")
    export LD_LIBRARY_PATH
    program=$scratch/example
    ;;
esac

# What runs must be this installation, not another one of the machine. The list is complete before it is searched: a
# search that ends at its find would leave ldd writing to nobody, which fails the pipe.
linked=$(ldd "$program")
[[ $linked == *"=> $prefix/"* ]] || fail "the example is linked to another library: $linked"
"$program" | diff "$scratch/expected" -
