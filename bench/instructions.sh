#!/usr/bin/env bash
# Prints the instructions that one operation takes, for every case whose name begins with one of the
# given ones; without names, those that guard.sh compares.
#
#     bench/instructions.sh BUILD_DIR [--peers] [NAME...]
#
# --peers counts the other codecs as well, with the program that contains them.
set -euo pipefail

[ $# -ge 1 ] || {
    sed -n '2,8s/^# \{0,1\}//p' "$0" >&2
    exit 2
}
build=$1
shift
program=$build/bench/instructions
if [ "${1:-}" = --peers ]; then
    program=$build/bench/peer_instructions
    shift
fi
if [ $# -eq 0 ]; then
    for message in M1 M2 M4; do
        set -- "$@" "encode/$message/zrp-" "decode/$message/zrp-"
    done
fi

profiles=$(mktemp -d)
trap 'rm -rf "$profiles"' EXIT

# The C library chooses memcpy and its like by the processor. With these, all processors that have
# AVX2 get the same ones.
export GLIBC_TUNABLES=glibc.cpu.hwcaps=-ERMS,-FSRM,-RTM,-AVX512F,-AVX512VL,-AVX512BW
if [ "$(uname -m)" = x86_64 ] && ! grep -qw avx2 /proc/cpuinfo; then
    echo "instructions.sh: without AVX2 this processor would give other figures" >&2
    exit 1
fi

valgrind --tool=callgrind --instr-atstart=no --callgrind-out-file="$profiles/profile" \
    "$program" "$@" >"$profiles/log" 2>&1 || {
    cat "$profiles/log" >&2
    exit 1
}

# Each case left two profiles, for a number of operations and for twice as many.
for profile in "$profiles"/profile.*; do
    awk '/^desc: Trigger: Client Request: /{ name = $5; count = $6 } /^totals: /{ print name, count, $2 }' "$profile"
done | awk '
    {
        if (!($1 in least) || $2 < least[$1]) least[$1] = $2
        if ($2 > most[$1]) most[$1] = $2
        total[$1, $2] = $3
    }
    END {
        for (name in most) {
            operations = most[name] - least[name]
            printf "%s %.0f\n", name, (total[name, most[name]] - total[name, least[name]]) / operations
        }
    }' | LC_ALL=C sort
