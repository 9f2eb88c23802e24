#!/usr/bin/env bash
# Prints the bytes of .text of programs that only encode and decode one type of message, for every
# type, the whole catalogue, and comparable programs of peers; at -Os and -O2, with and without
# QUORVA_ZRP_COMPACT where that option exists, for x86-64 or whatever this machine is, and for arm64
# where a cross compiler is installed. A line is
#
#     ARCHITECTURE/OPTIMISATION[-compact]/PROGRAM BYTES
#
# Builds go below BUILD_DIR.
#
#     bench/sizes.sh BUILD_DIR [--quick]
#
# --quick weighs only what guard.sh compares: TZRPInFrame and the catalogue.
set -euo pipefail

[ $# -ge 1 ] || {
    sed -n '2,14s/^# \{0,1\}//p' "$0" >&2
    exit 2
}
here=$(cd "$(dirname "$0")" && pwd)
builds=$1/sizes
quick=${2:-}
jobs=$(nproc)

# weigh ARCHITECTURE TOOL_PREFIX OPTIMISATION COMPACT
weigh() {
    local architecture=$1 prefix=$2 optimisation=$3 compact=$4
    local label=$optimisation peers=OFF
    [ "$compact" = OFF ] || label+=-compact
    local build=$builds/$architecture-$label
    local targets=(--target size_TZRPInFrame --target size_catalogue)
    if [ -z "$quick" ]; then
        targets=()
        if [ -z "$prefix" ] && [ "$compact" = OFF ] && command -v protoc-gen-nanopb >/dev/null; then
            peers=ON
        fi
    fi
    mkdir -p "$builds"
    {
        cmake -S "$here/sizes" -B "$build" -DCMAKE_BUILD_TYPE=None \
            -DCMAKE_C_COMPILER="${prefix}gcc" -DCMAKE_CXX_COMPILER="${prefix}g++" \
            -DCMAKE_C_FLAGS="-$optimisation -DNDEBUG" -DCMAKE_CXX_FLAGS="-$optimisation -DNDEBUG" \
            -DQUORVA_ZRP_COMPACT="$compact" -DQUORVA_ZRP_SIZES_PEERS=$peers \
            ${nanopb:+-DQUORVA_ZRP_BENCH_NANOPB="$nanopb"} &&
            cmake --build "$build" --parallel "$jobs" "${targets[@]}"
    } >"$build.log" 2>&1 || {
        tail -n 40 "$build.log" >&2
        exit 1
    }
    local program
    for program in "$build"/size_*; do
        "${prefix}size" -A "$program" | awk -v "name=$architecture/$label/${program##*/size_}" \
            '$1 == ".text" { print name, $2 }'
    done
}

# Where run.sh has unpacked the sources of nanopb, they are used.
nanopb=$(compgen -G "$1/nanopb/nanopb-*" || true)

native=$(uname -m)
[ "$native" != x86_64 ] || native=x86-64
machines=("$native:")
if command -v aarch64-linux-gnu-g++ >/dev/null && [ "$native" != aarch64 ]; then
    machines+=(arm64:aarch64-linux-gnu-)
fi
compacts=(OFF)
if grep -q QUORVA_ZRP_COMPACT "$here/../CMakeLists.txt"; then
    compacts+=(ON)
fi

for machine in "${machines[@]}"; do
    for optimisation in Os O2; do
        for compact in "${compacts[@]}"; do
            weigh "${machine%%:*}" "${machine#*:}" "$optimisation" "$compact"
        done
    done
done
