#!/bin/sh
# check_refused.sh COMPILER ROOT SOURCE
# Compiles SOURCE, whose first line says what must come of it:
#     // accepted
#     // refused: TEXT that the compiler's message holds
set -eu
compiler=$1 root=$2 source=$3

verdict=$(sed -n '1s|^// ||p' "$source")
messages=$("$compiler" -std=c++20 -fsyntax-only -I"$root" "$source" 2>&1) && compiled=yes || compiled=no

case "$verdict" in
    accepted)
        [ "$compiled" = yes ] && exit 0
        echo "$source should compile, but: $messages"
        ;;
    'refused: '*)
        expected=${verdict#refused: }
        if [ "$compiled" = yes ]; then
            echo "$source should not compile"
        elif printf '%s\n' "$messages" | grep -F -e error | grep -qF -e "$expected"; then
            exit 0
        else
            echo "$source is refused, but no error says '$expected': $messages"
        fi
        ;;
    *) echo "$source: the first line says neither accepted nor refused" ;;
esac
exit 1
