#!/usr/bin/env bash
# check_test_names.sh DOCUMENT BUILD_DIR
# Fails when a table of the document names a test that the build does not have. The column with the
# tests is the one whose heading is "Test"; names stand in backquotes, `Suite.*` means any of a suite.
set -euo pipefail

[ $# -eq 2 ] || {
    sed -n '2,5s/^# \{0,1\}//p' "$0" >&2
    exit 2
}
document=$1 build=$2

tests=$(ctest --test-dir "$build" -N | sed -n 's/^ *Test *#[0-9]*: //p')
[ -n "$tests" ] || {
    echo "$build has no tests" >&2
    exit 1
}
names=$(awk -F'|' '
    !/^\|/ { column = 0; next }
    !column { for (i = 1; i <= NF; ++i) if ($i ~ /^ *Test *$/) column = i; if (!column) column = -1; next }
    column > 0 && $2 !~ /^-+$/ {
        n = split($column, part, "`")
        for (i = 2; i <= n; i += 2) print part[i]
    }' "$document" | sort -u)
[ -n "$names" ] || {
    echo "$document names no tests" >&2
    exit 1
}

missing=0
while IFS= read -r name; do
    if ! grep -qF -- "${name%\*}" <<<"$tests"; then
        echo "$document names $name, which is no test" >&2
        missing=1
    fi
done <<<"$names"
[ $missing -eq 0 ] || exit 1
echo "$(wc -l <<<"$names") names of tests in $(basename "$document"), all known"
