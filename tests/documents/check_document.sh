#!/bin/sh
# check_document.sh COMPILER ROOT WORK DOCUMENT
# Keeps the examples of a document true. Behind each line "<!-- checked example -->" the document
# holds a program (```cpp) and what it prints (```text), and may hold a change to the sources before
# them (```diff). The change is applied to a copy of the library, the program is built against it
# and run, and what it prints is compared.
set -eu
compiler=$1 root=$2 work=$3 document=$4

fail() {
    echo "$document: $*"
    exit 1
}

# The first block of a language behind the marker with this number, and before the next one.
block() {
    awk -v open="\`\`\`$2" -v number="$1" '
        /^<!-- checked example -->$/ { ++marker }
        inside && $0 == "```" { exit }
        inside { print }
        marker == number && $0 == open { inside = 1 }' "$root/$document"
}

# A copy of the library in a new directory.
copy_library() {
    mkdir -p "$1"
    cp -R "$root/Common" "$root/protocol" "$root/text" "$1"
}

# Its objects, beside it.
compile_library() {
    (cd "$1" && "$compiler" -std=c++20 -Wall -Wextra -Werror -I. -c Common/Source/Core/BRX/*.cpp \
        protocol/*.cpp protocol/codec/*.cpp text/*.cpp) || fail "the library does not build"
}

examples=$(grep -c '^<!-- checked example -->$' "$root/$document") || fail "no example is marked"
rm -rf "$work"
number=0
while [ "$number" -lt "$examples" ]; do
    number=$((number + 1))
    mkdir -p "$work/$number"
    cd "$work/$number"
    block "$number" cpp >example.cpp
    block "$number" text >expected.txt
    block "$number" diff >change.diff
    [ -s example.cpp ] || fail "no program behind marker $number"
    [ -s expected.txt ] || fail "no output behind marker $number"
    library=$work/unchanged
    if [ -s change.diff ]; then
        library=$work/$number/changed
        copy_library "$library"
        patch --quiet --batch --fuzz=0 -p1 -d "$library" <change.diff >patch.txt 2>&1 ||
            fail "the change does not apply: $(cat patch.txt)"
        compile_library "$library"
    elif [ ! -d "$library" ]; then
        copy_library "$library"
        compile_library "$library"
    fi

    "$compiler" -std=c++20 -Wall -Wextra -Werror "-I$library" example.cpp "$library"/*.o \
        -o example || fail "program $number does not build"
    ./example >printed.txt || fail "program $number ends with $?"
    diff expected.txt printed.txt || fail "program $number prints something else"
done
