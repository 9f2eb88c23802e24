#!/usr/bin/env bash
# run_conversation_selftest.sh CASE...
# A check that cannot fail is worth nothing: every case must fail for a program that does nothing
# and succeeds, and for one that does nothing and fails.
set -u

script=$(dirname "$0")/run_conversation_test.sh
for case in "$@"; do
    for program in true false; do
        if "$script" "$(command -v $program)" "$case" >/dev/null 2>&1; then
            printf 'case %s passes with the program "%s"\n' "$case" "$program" >&2
            exit 1
        fi
    done
done
