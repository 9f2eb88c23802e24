#!/usr/bin/env bash
# Builds and tests every line of matrix.txt and prints a table of what came of it.
set -euo pipefail
cd "$(dirname "$0")/../.."

usage() {
    cat <<'TEXT'
Usage: tests/platforms/run.sh [REGEX]

Builds and tests every combination of platform, compiler and options in
tests/platforms/matrix.txt, or those whose line matches the extended regular
expression REGEX. Prints a line for each and a table at the end; exits with 1 when
a combination failed. Builds and logs are below build/platforms/.
TEXT
}

fail() {
    printf 'platforms: %s\n' "$*" >&2
    exit 1
}

case "${1:-}" in
    -h | --help) usage; exit ;;
esac
[ $# -le 1 ] || fail "one regular expression, not $#: join them with '|'"

readonly out=$PWD/build/platforms
mapfile -t lines < <(grep -v -e '^#' -e '^$' tests/platforms/matrix.txt | grep -E -e "${1:-}")
[ ${#lines[@]} -ne 0 ] || fail "no line of tests/platforms/matrix.txt matches '$1'"
mkdir -p "$out/logs"

# Wine keeps its own world in a folder; nothing of the user's is touched.
export WINEPREFIX=$out/wine WINEDEBUG=-all
case ${lines[*]} in
    *mingw*)
        trap 'wineserver -k 2>/dev/null || true' EXIT
        wineboot --init >/dev/null 2>&1 || fail "wine cannot set up $WINEPREFIX: run wineboot with it"
        ;;
esac

# configure FOLDER COMPILER CHAR OPTIONS
configure() {
    local folder=$1 compiler=$2 char=$3 options=$4
    local arguments=(-DCMAKE_BUILD_TYPE=Release -DQUORVA_ZRP_WERROR=ON -DQUORVA_ZRP_EXAMPLES=OFF
        -DQUORVA_ZRP_WHOLE_TESTS=ON -DQUORVA_ZRP_ONLY_BUILD_TESTS=ON)
    case $compiler in
        *.cmake) arguments+=("-DCMAKE_TOOLCHAIN_FILE=$PWD/cmake/toolchains/$compiler") ;;
        *) arguments+=("-DCMAKE_CXX_COMPILER=$compiler") ;;
    esac
    [ "$char" = default ] || arguments+=("-DCMAKE_CXX_FLAGS=$char")
    # Only clang's own linker reads what it leaves for link time.
    case $compiler in
        clang*) arguments+=("-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld${compiler#clang++}") ;;
    esac
    case $options in
        lto) arguments+=(-DQUORVA_ZRP_LIBRARY_OPTIONS=-O2 -DQUORVA_ZRP_LTO=ON) ;;
        *) arguments+=("-DQUORVA_ZRP_LIBRARY_OPTIONS=$options" -DQUORVA_ZRP_LTO=OFF) ;;
    esac
    cmake -S . -B "$folder" "${arguments[@]}"
}

# Counts single tests in ctest's verbose output, where each line begins with the number of its test:
# those that GoogleTest reports, and one for each other program. Prints passed, failed and skipped.
count_tests() {
    awk '
        /^[0-9]+: / {
            id = $1 + 0
            if ($0 ~ /^[0-9]+: \[  PASSED  \] [0-9]+ tests?\./) { ok[id] = $5 }
            if ($0 ~ /^[0-9]+: \[  SKIPPED \] [0-9]+ tests?,/) { skipped += $5 }
            if ($0 ~ /^[0-9]+: \[  FAILED  \] [0-9]+ tests?,/) { bad[id] = $5 }
            next
        }
        /^ *[0-9]+\/[0-9]+ Test +#[0-9]+: / {
            id = $0
            sub(/^[^#]*#/, "", id)
            id += 0
            if ($0 ~ / Passed +[0-9.]+ sec/) {
                passed += id in ok ? ok[id] : 1
            } else {
                passed += ok[id]
                failed += bad[id] ? bad[id] : 1
            }
        }
        END { print passed + 0, failed + 0, skipped + 0 }' "$1"
}

# build_and_test FOLDER COMPILER CHAR OPTIONS LOG: the outcome as "WORD PASSED FAILED SKIPPED
# DIGEST"; the word is ok or the step that failed.
build_and_test() {
    local folder=$1 compiler=$2 char=$3 options=$4 log=$5 word=ok counts="0 0 0" digest=-
    configure "$folder" "$compiler" "$char" "$options" >"$log" 2>&1 || word=configuring
    if [ $word = ok ]; then
        cmake --build "$folder" --parallel "$(nproc)" >>"$log" 2>&1 || word=building
    fi
    if [ $word = ok ]; then
        ctest --test-dir "$folder" --parallel "$(nproc)" --verbose --no-tests=error \
            >>"$log" 2>&1 || word=testing
        counts=$(count_tests "$log")
        digest=$(sed -n 's/^[0-9]*: digest of [0-9]\{7,\} rows: \([0-9a-f]*\).*/\1/p' "$log" | sort -u |
            paste -sd+)
    fi
    printf '%s %s %s\n' "$word" "$counts" "${digest:--}"
}

readonly format='%-10s %-14s %-15s %-4s %-11s %6s %6s %7s  %-32s %6s\n'
status=0 number=0
table=$out/table.txt
# shellcheck disable=SC2059  # the one format of all lines
printf "$format" platform compiler char opt result passed failed skipped digest time >"$table"
for line in "${lines[@]}"; do
    read -r platform compiler char options <<<"$line"
    number=$((number + 1))
    folder=$out/$platform-${compiler%.cmake}$char
    log=$out/logs/$platform-${compiler%.cmake}$char$options.log
    printf '[%2d/%d] %-10s %-14s %-15s %-4s ' "$number" ${#lines[@]} "$platform" "$compiler" \
        "$char" "$options"
    begin=$SECONDS
    read -r word passed failed skipped digest < <(
        build_and_test "$folder" "$compiler" "$char" "$options" "$log")
    time=$((SECONDS - begin))
    if [ "$word" = ok ]; then
        printf '%d tests passed in %d s\n' "$passed" $time
    else
        status=1
        printf 'FAILED %s, see %s\n' "$word" "${log#"$PWD"/}"
        word=FAILED
    fi
    # shellcheck disable=SC2059
    printf "$format" "$platform" "$compiler" "$char" "$options" "$word" "$passed" \
        "$failed" "$skipped" "$digest" "$time s" >>"$table"
done

printf '\n'
cat "$table"
digests=$(awk 'NR > 1 { print $9 }' "$table" | sort -u)
if [ "$(printf '%s\n' "$digests" | wc -l)" -ne 1 ] || [ "$digests" = - ]; then
    status=1
    printf '\nThe digests differ.\n'
fi
exit $status
