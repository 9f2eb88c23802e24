#!/bin/sh
# check_document.sh COMPILER ROOT WORK DOCUMENT
# Keeps the example of a document true. Behind the line "<!-- checked example -->" the document
# holds a program (```cpp) and what it prints (```text), and may hold a change to the sources before
# them (```diff). The change is applied to a copy of the library, the program is built against it
# and run, and what it prints is compared.
set -eu
compiler=$1 root=$2 work=$3 document=$4

fail() {
    echo "$document: $*"
    exit 1
}

# The first block of a language behind the marker.
block() {
    awk -v open="\`\`\`$1" '
        /^<!-- checked example -->$/ { marked = 1 }
        inside && $0 == "```" { exit }
        inside { print }
        marked && $0 == open { inside = 1 }' "$root/$document"
}

rm -rf "$work"
mkdir -p "$work"
cp -R "$root/Common" "$root/protocol" "$root/text" "$work"
cd "$work"

block cpp >example.cpp
block text >expected.txt
block diff >change.diff
[ -s example.cpp ] || fail "no program behind the marker"
[ -s expected.txt ] || fail "no output behind the marker"
if [ -s change.diff ]; then
    patch --quiet --batch --fuzz=0 -p1 <change.diff >patch.txt 2>&1 ||
        fail "the change does not apply: $(cat patch.txt)"
fi

"$compiler" -std=c++20 -Wall -Wextra -Werror -I. example.cpp Common/Source/Core/BRX/*.cpp \
    protocol/*.cpp protocol/codec/*.cpp text/*.cpp -o example || fail "the program does not build"
./example >printed.txt || fail "the program ends with $?"
diff expected.txt printed.txt || fail "the program prints something else"
