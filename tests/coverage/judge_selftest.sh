#!/usr/bin/env bash
# Shows that judge.awk accepts what is covered or marked and refuses everything else: each case is a
# change of one function and of what is known of it, and the one complaint to come.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

failed=0
cases=0

# A function with a branch at 2:9, a line 3 behind it, and a decision of two conditions on line 5.
reset() {
    cat >code.h <<'TEXT'
inline int choose(int a, int b) {
    if (a == 1) {
        return 1;
    }
    return a == 2 && b == 3 ? 2 : 0;
}
constexpr int sizeOf(int a) {
    return a + 1;
}
TEXT
    tr ' ' '\t' >facts <<'TEXT'
function code.h 1 33 6 1
region code.h 1 33 6 2 1 0
region code.h 2 17 4 6 1 0
branch code.h 2 9 true 1
branch code.h 2 9 false 1
condition code.h 5 12 alone 1
condition code.h 5 22 alone 1
function code.h 7 29 9 0
region code.h 7 29 9 2 0 0
TEXT
}

# expect EXIT_CODE COMPLAINT: judges, and compares what is said of places, or nothing.
expect() {
    local code=0 said
    cases=$((cases + 1))
    awk -f "$here/judge.awk" code.h facts=1 facts >output || code=$?
    said=$(grep '^code\.h:' output | grep -v ': unreachable: ' || true)
    if [ "$code" -ne "$1" ] || [ "$said" != "$2" ]; then
        printf 'case %d: exit code %d, said "%s"; expected %d, "%s"\n' "$cases" "$code" "$said" "$1" "$2"
        failed=1
    fi
}

# function_at LINE COLUMN LAST_LINE HAS_CODE RAN: another one, of one region.
function_at() {
    printf 'function\tcode.h\t%d\t%d\t%d\t%d\n' "$1" "$2" "$3" "$4" >>facts
    printf 'region\tcode.h\t%d\t%d\t%d\t90\t%d\t0\n' "$1" "$2" "$3" "$5" >>facts
}

line_never_runs() {
    sed -i 's/^\(region\tcode.h\t2\t.*\)1\t0$/\10\t0/; s/^\(branch.*true\t\)1/\10/' facts
}

reset
expect 0 ""
grep -qE '^all +4/4 +2/2 +2/2 *$' output || { cat output; failed=1; }
grep -q '^1 functions that only the compiler runs' output || { cat output; failed=1; }

# What did not run.
reset
line_never_runs
expect 1 "code.h:2: the branch at column 9 is never true
code.h:3: never ran"
reset
sed -i 's/^\(condition.*22\talone\t\)1/\10/' facts
expect 1 "code.h:5: the condition at column 22 was never seen to decide alone"
# Another instance of the template saw it.
printf 'condition\tcode.h\t5\t22\talone\t1\n' >>facts
expect 0 ""
# An instance without code says nothing beside one that ran.
reset
function_at 1 33 6 0 0
expect 0 ""
# Lambdas on a line of a function that ran, and in one for the compiler.
reset
function_at 5 30 5 1 1
function_at 5 20 5 1 0
expect 1 "code.h:5: never ran"
reset
function_at 8 12 8 0 0
expect 0 ""
# A function of which there is no code, and which is not for the compiler.
reset
sed -i 's/^constexpr int/inline int/' code.h
expect 1 "code.h:7: never ran
code.h:8: never ran"

# Marks.
reset
line_never_runs
sed -i 's|if (a == 1) {|& // unreachable: no caller has a 1|' code.h
expect 0 ""
# The mark ends with the lines that never run.
sed -i '/^function.*\t7\t/i region\tcode.h\t5\t5\t5\t36\t0\t0' facts
expect 1 "code.h:5: never ran"
reset
line_never_runs
sed -i 's|return 1;|& // unreachable: no caller has a 1|' code.h
expect 1 "code.h:2: the branch at column 9 is never true"
reset
sed -i 's|return 1;|& // unreachable: no caller has a 1|' code.h
expect 1 "code.h:3: the mark is out of date: all of this is covered"
reset
sed -i 's|return a + 1;|& // unreachable: no caller|' code.h
expect 1 "code.h:8: the mark is out of date: all of this is covered"
reset
sed -i 's|return 1;|& // unreachable|' code.h
expect 1 "code.h:3: a mark is written \`// unreachable: reason\`"

[ "$failed" -eq 0 ] || exit 1
echo "$cases cases are judged as they should be"
