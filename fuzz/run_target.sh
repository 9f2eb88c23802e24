#!/usr/bin/env bash
# Runs one fuzz target from its seed corpus and tells what came of it.
#
#     fuzz/run_target.sh PROGRAM SECONDS SEED FOLDER [LIBFUZZER_OPTION...]
#
# FOLDER gets what the run leaves: corpus/TARGET (what it found worth keeping), TARGET.log,
# TARGET.result (a line: target, seconds, executions, edges reached, edges, findings) and
# findings/TARGET-... for an input that failed. Exit code 1 when one did.
set -euo pipefail

case "${1:-}" in
    -h | --help)
        sed -n '2,8s/^# \{0,1\}//p' "$0"
        exit 0
        ;;
esac
[ $# -ge 4 ] || {
    sed -n '2,8s/^# \{0,1\}//p' "$0" >&2
    exit 2
}
here=$(cd "$(dirname "$0")" && pwd)
program=$1
seconds=$2
seed=$3
folder=$4
shift 4
target=$(basename "$program")
log=$folder/$target.log

[ -x "$program" ] || {
    printf 'fuzz: there is no program %s; ./dev fuzz builds it\n' "$program" >&2
    exit 2
}
# Each run starts from what is checked in, so that the same seed means the same run.
rm -rf "$folder/corpus/$target"
mkdir -p "$folder/corpus/$target" "$folder/findings"

# Long enough for any message one byte too long; choices and operations need less.
case "$target" in
    buffers) longest=256 ;;
    identity) longest=512 ;;
    *) longest=1280 ;;
esac

fuzzer=
trap '[ -z "$fuzzer" ] || kill "$fuzzer" 2>/dev/null; exit 130' INT TERM
"$program" -seed="$seed" -max_total_time="$seconds" -max_len="$longest" -timeout=10 -reload=0 \
    -dict="$here/zrp.dict" -print_final_stats=1 -artifact_prefix="$folder/findings/$target-" "$@" \
    "$folder/corpus/$target" "$here/corpus/$target" >"$log" 2>&1 </dev/null &
fuzzer=$!
code=0
wait "$fuzzer" || code=$?

executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
reached=$(grep -o 'cov: [0-9]*' "$log" | tail -n 1 | cut -d ' ' -f 2 || true)
edges=$(sed -n 's/.*Loaded [0-9]* modules *(\([0-9]*\) inline.*/\1/p' "$log" | head -n 1)
finding=$(sed -n 's/.*Test unit written to //p' "$log" | tail -n 1)
printf '%s\t%s\t%s\t%s\t%s\t%s\n' "$target" "$seconds" "${executions:-0}" "${reached:-0}" \
    "${edges:-0}" "${finding:+1}" >"$folder/$target.result"

if [ "$code" -eq 0 ] && [ "${executions:-0}" -gt 0 ]; then
    printf 'fuzz: %s: %s executions in %s s, %s of %s edges, no finding\n' \
        "$target" "$executions" "$seconds" "${reached:-0}" "${edges:-0}"
    exit 0
fi
{
    printf 'fuzz: %s ended with code %s\n' "$target" "$code"
    # What the target or a sanitizer says, without the history of the run.
    grep -v -E '^(#[0-9]+[[:space:]]|INFO:|stat::|NEW_FUNC|[[:space:]]*NEW_)' "$log" | cut -c -400 |
        tail -n 40
    if [ -n "$finding" ]; then
        printf 'fuzz: the input: %s\nfuzz: to see it again: %s %s\n' "$finding" "$program" "$finding"
    else
        printf 'fuzz: no input was kept; the whole log: %s\n' "$log"
    fi
} >&2
exit 1
