#!/usr/bin/env bash
# Fails when the dictionary is not what the field tables give.
#
#     check_dictionary.sh PRINT_DICTIONARY DICTIONARY
set -euo pipefail

"$1" | diff --unified=0 "$2" - >&2 || {
    printf 'fuzz: %s is not that of the field tables; make it anew: %s >%s\n' "$2" "$1" "$2" >&2
    exit 1
}
