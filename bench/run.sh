#!/usr/bin/env bash
# Measures everything and writes the tables of docs/performance.md and its charts: time side by side
# with the peers, instructions, sizes. Takes about ten minutes; the machine should do nothing else.
#
#     bench/run.sh BUILD_DIR            all of it
#     bench/run.sh BUILD_DIR --quick    short runs, for trying out; prints the page instead of
#                                       writing it
#     bench/run.sh BUILD_DIR --report   only the page, from the results of the last run
set -euo pipefail

[ $# -ge 1 ] || {
    sed -n '2,8s/^# \{0,1\}//p' "$0" >&2
    exit 2
}
here=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$1"
build=$(cd "$1" && pwd)
mode=${2:-}
results=$build/results
page=$here/../docs/performance.md
minimum_time=0.05
processes=3
repetitions=3 # of each process

if [ "$mode" = --quick ]; then
    results=$build/quick_results
    minimum_time=0.005
    repetitions=1
fi
mkdir -p "$results"

say() {
    printf 'bench: %s\n' "$*" >&2
}

prepare() {
    local nanopb
    nanopb=$("$here/nanopb_source.sh" "$build/nanopb") || {
        say "no sources of nanopb; its packaged library is measured"
        nanopb=
    }
    {
        cmake -S "$here/.." -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=g++ \
            -DQUORVA_ZRP_BENCH=ON -DQUORVA_ZRP_BENCH_PEERS=ON \
            -DQUORVA_ZRP_BENCH_NANOPB="$nanopb" -DQUORVA_ZRP_TESTS=OFF -DQUORVA_ZRP_EXAMPLES=OFF &&
            cmake --build "$build" --parallel "$(nproc)"
    } >"$results/build.log" 2>&1 || {
        tail -n 40 "$results/build.log" >&2
        exit 1
    }
}

# What the figures depend on, a line each.
describe_machine() {
    awk -F': *' '/^model name/ { print "Processor: " $2; exit }' /proc/cpuinfo
    printf 'Processors: %s\n' "$(nproc)"
    printf 'System: %s, %s, C library %s\n' "$(. /etc/os-release && printf '%s' "$PRETTY_NAME")" \
        "$(uname -m)" "$(getconf GNU_LIBC_VERSION)"
    printf 'Compiler: %s, -O3\n' "$(g++ --version | head -n 1)"
    printf 'Peers: '
    { dpkg-query -W -f '${Package} ${Version}\n' libprotobuf-dev libnanopb-dev libprotozero-dev \
        libflatbuffers-dev libcapnp-dev libmsgpack-cxx-dev 2>/dev/null || true; } |
        awk '{ printf "%s%s", separator, $0; separator = ", " } END { print "" }'
    if grep -q '^QUORVA_ZRP_BENCH_NANOPB:.*=.' "$build/CMakeCache.txt"; then
        echo 'nanopb: compiled from its sources with PB_BUFFER_ONLY'
    else
        echo 'nanopb: as packaged, without PB_BUFFER_ONLY'
    fi
}

measure() {
    describe_machine >"$results/machine.txt"
    "$build/bench/timing" --check >&2 # ends the run when a result is wrong
    rm -f "$results"/timing-*
    local process
    for ((process = 1; process <= processes; ++process)); do
        say "time: process $process of $processes, repetitions in random order: $repetitions"
        "$build/bench/timing" --first-repetition=$(((process - 1) * repetitions)) \
            --benchmark_min_time=$minimum_time --benchmark_repetitions=$repetitions \
            --benchmark_enable_random_interleaving=true \
            --benchmark_out="$results/timing-$process.json" --benchmark_out_format=json \
            >"$results/timing-$process.log" 2>&1
    done
    say "instructions"
    "$here/instructions.sh" "$build" --peers encode/M decode/M >"$results/instructions.txt"
    say "sizes"
    "$here/sizes.sh" "$build" >"$results/sizes.txt"
}

[ "$mode" = --report ] || {
    prepare
    measure
}
if [ "$mode" = --quick ]; then
    cp "$page" "$results/performance.md"
    page=$results/performance.md
fi
"$build/bench/report/report" "$results" "$page"
[ "$mode" != --quick ] || cat "$page"
