# What the commands of this project share; sourced, not run.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\n== %s\n' "$*"; }

fail() {
    printf '\n%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# Installs those of the named packages that are missing. Nothing is fetched where all are there.
need() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    say "Installing: ${missing[*]}"
    command -v apt-get >/dev/null || fail "these packages are missing, and there is no apt-get: ${missing[*]}"
    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "run me as root once, or install: ${missing[*]}"
        root=(sudo)
    fi
    export DEBIAN_FRONTEND=noninteractive
    "${root[@]}" apt-get update -qq || fail "apt-get update failed"
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null ||
        fail "could not install: ${missing[*]}"
}

# Configures and builds a preset; further arguments go to the configuration.
build() {
    local preset=$1
    shift
    say "Building ($preset)"
    cmake --preset "$preset" "$@" >"build/$preset.configure.log" 2>&1 ||
        { cat "build/$preset.configure.log" >&2; fail "the configuration of $preset failed"; }
    cmake --build --preset "$preset" || fail "the build of $preset failed"
}

mkdir -p build
