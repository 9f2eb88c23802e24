#!/usr/bin/env bash
# Measures everything and writes the tables of docs/performance.md and its charts: time side by side
# with the peers, instructions, sizes. Takes about twelve minutes, the first time some more for
# building the peers; the machine should do nothing else.
#
#     bench/run.sh BUILD_DIR            all of it
#     bench/run.sh BUILD_DIR --quick    short runs, for trying out; prints the page instead of
#                                       writing it
#     bench/run.sh BUILD_DIR --report   only the page, from the results of the last run
#     bench/run.sh --help               this text
#
# `./dev bench` is this with build/bench, and installs what it needs.
set -euo pipefail

usage() {
    sed -n '2,12s/^# \{0,1\}//p' "$0"
}

fail() {
    printf 'bench: %s\n' "$*" >&2
    exit 2
}

case " $* " in
    *" --help "* | *" -h "*)
        usage
        exit 0
        ;;
esac

# A wrong option must not cost a page that took minutes to measure.
mode=
folder=
while [ $# -gt 0 ]; do
    case "$1" in
        --quick | --report)
            [ -z "$mode" ] || fail "$mode or $1, not both; ./dev bench --help"
            mode=$1
            ;;
        -*) fail "there is no option '$1'; ./dev bench --help" ;;
        *)
            [ -z "$folder" ] || fail "'$1' is no option, and there is one BUILD_DIR; ./dev bench --help"
            folder=$1
            ;;
    esac
    shift
done
[ -n "$folder" ] || fail "no BUILD_DIR given; ./dev bench --help"

here=$(cd "$(dirname "$0")" && pwd)
[ "$mode" != --report ] || [ -s "$folder/results/sizes.txt" ] ||
    fail "no results of a whole run in $folder/results; measure first, without --report"
mkdir -p "$folder"
build=$(cd "$folder" && pwd)
results=$build/results
page=$here/../docs/performance.md
# Many short repetitions rather than few long ones: where other machines share the processor, more
# of them meet the same share of its slow moments.
minimum_time=0.01
processes=5
repetitions=9 # of each process

if [ "$mode" = --quick ]; then
    results=$build/quick_results
    minimum_time=0.005
    processes=3
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
    # What an ended run leaves has no sizes, so that no page is written from it.
    rm -f "$results"/{machine,instructions,sizes}.txt "$results"/timing-*
    describe_machine >"$results/machine.txt"
    "$build/bench/timing" --check >&2 # ends the run when a result is wrong
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
    "$here/sizes.sh" "$build" >"$results/sizes.unfinished"
    mv "$results/sizes.unfinished" "$results/sizes.txt"
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
