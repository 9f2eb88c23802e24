#!/usr/bin/env bash
# Changes the library in thousands of small ways and sees whether the tests notice.
#
# Usage: ./dev mutate [OPTION...]
#
#   --file REGEX   only mutants of the files that match
#   --list         print the mutants with their numbers instead of trying them
#   --only NUMBER  only this mutant, with its change
#   --again        only those that survived the last run and have no reason; also goes on with a
#                  run that was stopped
#   --programs REGEX  only with these test programs: brx, messages, differential, ...
#   --builds N     also build N of the changes of what only the compiler evaluates, evenly spread
#   --no-builds    build none; else survivors without a reason are built, as the compiler may
#                  evaluate them in other places, too
#   --help         this text
#
# Mutants lie asleep in one build of the tests, and one is woken for each run. What only the
# compiler evaluates, tables and sizes, takes a build each and is left out unless asked for. Ends
# with a table and the scores; exit code 1 when a mutant survives that tests/mutation/survivors.txt
# gives no reason for, when the list names one that is killed, or when a score is below the aim. A
# file takes minutes, a whole run hours, most of them for survivors, with which all tests are run.
# What it leaves is below build/mutate.
set -euo pipefail
cd "$(dirname "$0")/../.."

readonly build=build/mutate
readonly compiler=clang++-19
readonly llvm=/usr/lib/llvm-19

usage() {
    sed -n '4,22s/^# \{0,1\}//p' tests/mutation/run.sh
}

fail() {
    printf 'mutate: %s\n' "$*" >&2
    exit 2
}

for word in "$@"; do
    case "$word" in
        --help | -h)
            usage
            exit 0
            ;;
    esac
done

command -v "$compiler" >/dev/null || fail "$compiler is missing: install the package clang-19"

# Quiet unless it fails.
quietly() {
    local log=$build/$1.log
    shift
    "$@" >"$log" 2>&1 || {
        tail -n 30 "$log" >&2
        fail "'$*' failed; all it said is in $log"
    }
}

mkdir -p "$build/scratch"
printf 'mutate: building the mutator\n' >&2
quietly tools-configure cmake -S tests/mutation -B "$build/tools" -DCMAKE_BUILD_TYPE=Release \
    -DLLVM="$llvm"
quietly tools cmake --build "$build/tools" --parallel "$(nproc)"

# A copy of the repository in which the library is rewritten. Files that are the same keep their
# times, so that little is built again.
printf 'mutate: putting the mutants to sleep\n' >&2
repository=$PWD
subject=$build/subject
mkdir -p "$subject/protocol/fields" "$subject/Common/Source/Core/BRX"
rm -rf "${subject:?}/tests"
cp -rp CMakeLists.txt cmake tests text "$subject"
cp -pu protocol/*.h "$subject/protocol"
cp -pu protocol/fields/*.h "$subject/protocol/fields"
quietly mutator "$build/tools/mutator" "$repository" "$repository/$subject" \
    Common/Source/Core/BRX/*.{h,cpp} protocol/codec/*.{h,cpp} protocol/*.cpp
tail -n 1 "$build/mutator.log" >&2

case " $* " in
    *" --list "*) exec "$build/tools/runner" "$repository" "$repository/$build" "$@" ;;
esac

# Leaving out a statement may let control run off the end of a function, which the compiler would
# otherwise take for impossible.
printf 'mutate: building the tests\n' >&2
quietly programs-configure cmake -S tests/mutation/programs -B "$build/programs" \
    -DSUBJECT="$repository/$subject" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_CXX_FLAGS_RELEASE=-O1 \
    -DCMAKE_CXX_FLAGS="-w -fno-strict-return -include $repository/$subject/tests/mutation/asleep.h"
quietly programs cmake --build "$build/programs" --parallel "$(nproc)" --target programs
exec "$build/tools/runner" "$repository" "$repository/$build" "$@"
