#!/usr/bin/env bash
# Builds the fuzz targets and runs them all, two at a time.
#
# Usage: ./dev fuzz [SECONDS] [OPTION...]
#
#   SECONDS        how long each target runs (default 30)
#   --fast         without sanitizers, for as many executions as possible
#   --32           as a 32-bit program (i686)
#   --seed NUMBER  where the fuzzer's random choices begin (default 1)
#   --target NAME  only this target; may be repeated
#   --help         this text
#
# Ends with a table of executions, coverage and findings; exit code 1 when there is a finding. What
# a run leaves is below build/fuzz*/run: logs, grown corpora, inputs that failed.
set -euo pipefail
cd "$(dirname "$0")/.."

readonly at_once=2
readonly progress_every=10

usage() {
    sed -n '4,15s/^# \{0,1\}//p' fuzz/run.sh
}

fail() {
    printf 'fuzz: %s\n' "$*" >&2
    exit 2
}

seconds=30
seed=1
fast=
width=64
targets=()

isNumber() {
    [[ $1 =~ ^[1-9][0-9]*$ ]]
}

while [ $# -gt 0 ]; do
    case "$1" in
        --fast) fast=1 ;;
        --32) width=32 ;;
        --seed)
            isNumber "${2:-}" || fail "--seed takes a positive number, not '${2:-}'"
            seed=$2
            shift
            ;;
        --target)
            [ -f "fuzz/targets/${2:-}.cpp" ] ||
                fail "there is no target '${2:-}'; fuzz/targets has one source for each"
            targets+=("$2")
            shift
            ;;
        --help | -h)
            usage
            exit 0
            ;;
        *)
            isNumber "$1" || fail "'$1' is no number of seconds and no option; ./dev fuzz --help"
            seconds=$1
            ;;
    esac
    shift
done
if [ ${#targets[@]} -eq 0 ]; then
    for source in fuzz/targets/*.cpp; do
        targets+=("$(basename "$source" .cpp)")
    done
fi

build=$PWD/build/fuzz${fast:+-fast}
configuration=(--preset fuzz)
run_options=()
if [ -n "$fast" ]; then
    configuration+=(-DQUORVA_ZRP_FUZZ_FAST=ON)
    # The plain choice of what to mutate takes half the time of the weighted one.
    run_options=(-entropic=0)
fi
if [ "$width" = 32 ]; then
    build=$build-32
    # The helpers of the tests put 64-bit noise into sizes; on 32 bits each place is a warning.
    configuration+=(-DCMAKE_CXX_FLAGS=-m32 -DQUORVA_ZRP_WERROR=OFF)
fi
run=$build/run
mkdir -p "$run"

if [ -n "$fast" ]; then
    kind="without sanitizers"
else
    kind="AddressSanitizer and UndefinedBehaviorSanitizer"
fi
printf 'fuzz: building (%d-bit, %s)\n' "$width" "$kind" >&2
{
    cmake "${configuration[@]}" -B "$build" &&
        cmake --build "$build" --target fuzz --parallel "$(nproc)"
} >"$run/build.log" 2>&1 || {
    grep -m 10 -A 3 -E 'error:|Error' "$run/build.log" >&2 || tail -n 40 "$run/build.log" >&2
    fail "the build failed; the whole log is $run/build.log"
}

# --- Running ------------------------------------------------------------------------------------

waiting=("${targets[@]}")
declare -A running=() # target by process
findings=0

# shellcheck disable=SC2317  # the trap calls it
stop() {
    local process
    for process in "${!running[@]}"; do
        kill "$process" 2>/dev/null || true
    done
}
trap stop EXIT
trap 'exit 130' INT TERM

start() {
    local target=$1
    rm -f "$run/$target.log" "$run/$target.result"
    fuzz/run_target.sh "$build/fuzz/$target" "$seconds" "$seed" "$run" "${run_options[@]}" \
        >"$run/$target.report" 2>&1 &
    running[$!]=$target
}

progress() {
    local target last
    for target in "${running[@]}"; do
        last=$(grep -E '^#[0-9]+' "$run/$target.log" 2>/dev/null | tail -n 1 |
            sed -E 's/^#([0-9]+).* cov: ([0-9]+).*/\1 executions, \2 edges/') || true # none yet
        printf 'fuzz: %5d s  %-22s %s\n' "$SECONDS" "$target" "${last:-starting}" >&2
    done
}

reap() {
    local process target
    for process in "${!running[@]}"; do
        kill -0 "$process" 2>/dev/null && continue
        target=${running[$process]}
        wait "$process" || findings=1
        unset "running[$process]"
        cat "$run/$target.report" >&2
    done
}

SECONDS=0
next_progress=$progress_every
while [ ${#waiting[@]} -gt 0 ] || [ ${#running[@]} -gt 0 ]; do
    while [ ${#waiting[@]} -gt 0 ] && [ ${#running[@]} -lt "$at_once" ]; do
        start "${waiting[0]}"
        waiting=("${waiting[@]:1}")
    done
    sleep 0.5
    reap
    if [ "$SECONDS" -ge "$next_progress" ]; then
        progress
        next_progress=$((SECONDS + progress_every))
    fi
done

# --- The table ----------------------------------------------------------------------------------

results=()
for target in "${targets[@]}"; do
    results+=("$run/$target.result")
done
printf '\n%d-bit, %s, seed %d, %d s in all\n' "$width" "$kind" "$seed" "$SECONDS"
awk -F'\t' '
    BEGIN { printf "%-22s %8s %14s %10s %15s %9s\n", "target", "seconds", "executions", "per second", "edges", "findings" }
    {
        printf "%-22s %8d %14d %10d %15s %9d\n", $1, $2, $3, $3 / $2, $4 " of " $5, $6
        seconds += $2; executions += $3; findings += $6
    }
    END { printf "%-22s %8d %14d %10d %15s %9d\n", "all", seconds, executions, executions / seconds, "", findings }
' "${results[@]}"
exit "$findings"
