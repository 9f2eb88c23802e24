#!/usr/bin/env bash
# check_instrumented.sh memory|threads|stack COMPILER WORK [--limit=BYTES] [EMULATOR]
#
# Compiles the library for an instrument and runs the programs that go with it:
#   memory    MemorySanitizer: what is used was initialised, what is reported was written; and a
#             counter of the bytes that decoding reads (clang)
#   threads   ThreadSanitizer: eight threads on objects of their own (clang)
#   stack     the stack that encoding and decoding take at -O2, at most BYTES (default 1024)
# WORK is a folder for the build, kept so that the next run only compiles what changed. EMULATOR
# runs programs that COMPILER makes for another machine.
set -euo pipefail

usage() {
    sed -n '2,10s/^# \{0,1\}//p' "$0"
}

fail() {
    echo "check_instrumented.sh: $1" >&2
    exit "${2:-1}"
}

if [ "${1:-}" = --help ]; then
    usage
    exit 0
fi
if [ $# -lt 3 ]; then
    usage >&2
    exit 2
fi
instrument=$1 compiler=$2 work=$3
shift 3
limit=1024
case "${1:-}" in --limit=*)
    limit=${1#--limit=}
    shift
    ;;
esac
sources=$(cd "$(dirname "$0")" && pwd)/instrumented

programs=("$instrument")
arguments=()
case "$instrument" in
    memory) programs=(memory reads) ;;
    threads) ;;
    stack) arguments=("$limit") ;;
    *) fail "there is no instrument '$instrument', only memory, threads and stack" 2 ;;
esac

mkdir -p "$work"
build() {
    cmake -S "$sources" -B "$work" -DCMAKE_CXX_COMPILER="$compiler" -DINSTRUMENT="$instrument" \
        -DQUORVA_ZRP_TESTS=OFF -DQUORVA_ZRP_EXAMPLES=OFF -DQUORVA_ZRP_BENCH=OFF &&
        cmake --build "$work"
}
if ! build >"$work/log" 2>&1; then
    tail -n 40 "$work/log" >&2
    fail "building for '$instrument' with $compiler failed; all of it is in $work/log"
fi

export MSAN_OPTIONS=halt_on_error=1 TSAN_OPTIONS=halt_on_error=1
for program in "${programs[@]}"; do
    echo "--- $program"
    "$@" "$work/$program" "${arguments[@]}"
done
