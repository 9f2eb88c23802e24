#!/usr/bin/env bash
# Measures which lines, branches and conditions of the library the tests reach.
#
# Usage: ./dev coverage [OPTION...]
#
#   --without PATTERN  leave out the tests whose name matches (as GoogleTest's filter, with * and ?),
#                      to see what only they reach
#   --help             this text
#
# A branch is covered when it went both ways, a condition of a decision when it alone turned the
# decision (MC/DC); in a template, in any of its instances. What cannot be reached carries a comment
# `// unreachable: reason` in the code. Ends with a table of all files and with the marked places, and
# exit code 1 when something is neither covered nor marked, or marked and covered.
# build/coverage/index.html shows the counts line by line; its own sums take in what only the
# compiler runs.
set -euo pipefail
cd "$(dirname "$0")/../.."

readonly build=build/coverage
readonly run=$build/run
readonly library="Common protocol text"
readonly programs="brx_tests silent_host_tests messages_tests promises_tests text_tests
    differential_tests validate_tests hardening/hardening_tests small_messages_tests"

usage() {
    sed -n '4,16s/^# \{0,1\}//p' tests/coverage/run.sh
}

fail() {
    printf 'coverage: %s\n' "$*" >&2
    exit 2
}

step() {
    printf 'coverage: %4d s  %s\n' "$SECONDS" "$*" >&2
}

left_out=
while [ $# -gt 0 ]; do
    case "$1" in
        --without)
            [ -n "${2:-}" ] || fail "--without takes a pattern of names of tests"
            left_out=$2
            shift
            ;;
        --help | -h)
            usage
            exit 0
            ;;
        *) fail "there is no option '$1'; ./dev coverage --help" ;;
    esac
    shift
done

rm -rf "$run"
mkdir -p "$run"
step "building the tests with counters"
{
    cmake --preset coverage && cmake --build --preset coverage --parallel "$(nproc)"
} >"$run/build.log" 2>&1 || {
    grep -m 10 -A 3 -E 'error:|Error' "$run/build.log" >&2 || tail -n 40 "$run/build.log" >&2
    fail "the build failed; the whole log is $run/build.log"
}

# --- Counting -----------------------------------------------------------------------------------

# A program's counts, and from them what judge.awk reads. Each program is looked at by itself:
# llvm-cov loses counts of functions that another program mentions without holding their code.
# shellcheck disable=SC2086  # $library is a list of words, here and below
count() {
    local program=$1 name=${1##*/}
    # %m: death tests add to the counts of the process that they were forked from.
    LLVM_PROFILE_FILE=$run/$name-%m.profraw "$build/tests/$program" --gtest_brief=1 \
        ${left_out:+--gtest_filter=-"$left_out"} >"$run/$name.log" 2>&1 || {
        tail -n 20 "$run/$name.log" >&2
        fail "$name failed; the whole log is $run/$name.log"
    }
    llvm-profdata-19 merge "$run/$name"-*.profraw -o "$run/$name.profdata"
    llvm-profdata-19 show --all-functions "$run/$name.profdata" | sed -n 's/^  \(.*\):$/\1/p' \
        >"$run/$name.emitted"
    [ -s "$run/$name.emitted" ] || fail "$name counted nothing"
    {
        llvm-cov-19 export "$build/tests/$program" -instr-profile "$run/$name.profdata" |
            jq -r --rawfile emitted "$run/$name.emitted" --arg root "$PWD" -f tests/coverage/code.jq
        llvm-cov-19 show "$build/tests/$program" -instr-profile "$run/$name.profdata" \
            -show-mcdc -show-instantiations --sources $library |
            awk -v root="$PWD" -f tests/coverage/conditions.awk
    } >"$run/$name.facts"
}

# shellcheck disable=SC2086  # a list of words
set -- $programs
facts=()
for program in "$@"; do
    count "$program"
    facts+=("$run/${program##*/}.facts")
    step "$(grep -h PASSED "$run/${program##*/}.log" | tr -d '[]') ${program##*/}"
done

# --- The page -----------------------------------------------------------------------------------

objects=()
profiles=()
for program in "$@"; do
    case $program in
        small_*) ;; # holds the same functions with other branches
        *)
            objects+=(-object "$build/tests/$program")
            profiles+=("$run/${program##*/}.profdata")
            ;;
    esac
done
llvm-profdata-19 merge "${profiles[@]}" -o "$run/all.profdata"
# shellcheck disable=SC2086
llvm-cov-19 show "${objects[@]}" -instr-profile "$run/all.profdata" -format=html \
    -output-dir="$build" -show-branches=count -show-mcdc -show-mcdc-summary -show-branch-summary \
    -show-instantiations=false --sources $library 2>"$run/page.log" ||
    fail "llvm-cov made no page; see $run/page.log"
step "$build/index.html is written"

# --- The table ----------------------------------------------------------------------------------

# shellcheck disable=SC2086
mapfile -t sources < <(find $library -name '*.h' -o -name '*.cpp' | LC_ALL=C sort)
printf '\n'
awk -f tests/coverage/judge.awk "${sources[@]}" facts=1 "${facts[@]}" | tee "$build/coverage.txt"
