#!/usr/bin/env bash
# Fails when the codec takes more instructions or more bytes than expected_instructions.txt and
# expected_sizes.txt say, by more than 3 %, or when validating a frame takes more than a tenth of
# decoding it: with fixed integers, the cheaper flavour, but for M4, a data frame, which is one run
# then. None of this depends on how busy the machine is.
#
#     bench/guard.sh BUILD_DIR            compare
#     bench/guard.sh BUILD_DIR --update   make what is measured now the expected figures
#
# Exits with 77 where the figures would not compare.
set -euo pipefail

[ $# -ge 1 ] || {
    sed -n '2,10s/^# \{0,1\}//p' "$0" >&2
    exit 2
}
here=$(cd "$(dirname "$0")" && pwd)
build=$1
measured=$build/guard

# Another compiler, processor or C library gives other figures, which say nothing about the code.
compiler=$(g++ --version | head -n 1)
if [ "${2:-}" != --update ]; then
    if ! grep -qF "$compiler" "$here/expected_instructions.txt"; then
        echo "guard: skipped: the expected figures are of another compiler than $compiler"
        exit 77
    fi
    if [ "$(uname -m)" != x86_64 ] || ! grep -qw avx2 /proc/cpuinfo; then
        echo "guard: skipped: the expected figures are of x86-64 with AVX2"
        exit 77
    fi
fi

mkdir -p "$measured"
{
    cmake -S "$here/.." -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=g++ \
        -DQUORVA_ZRP_BENCH=ON -DQUORVA_ZRP_BENCH_PEERS=OFF -DQUORVA_ZRP_TESTS=OFF \
        -DQUORVA_ZRP_EXAMPLES=OFF &&
        cmake --build "$build" --parallel "$(nproc)" --target zrp_bench_instructions
} >"$measured/build.log" 2>&1 || {
    tail -n 40 "$measured/build.log" >&2
    exit 1
}
"$here/instructions.sh" "$build" >"$measured/instructions.txt"
"$here/sizes.sh" "$build" --quick >"$measured/sizes.txt"

if [ "${2:-}" = --update ]; then
    for what in instructions sizes; do
        {
            printf '# Measured with %s; new figures: bench/guard.sh BUILD_DIR --update\n' "$compiler"
            cat "$measured/$what.txt"
        } >"$here/expected_$what.txt"
    done
    echo "guard: expected figures written"
    exit 0
fi

failed=0
decodes=(M2/zrp-fixed M3/zrp-fixed M4/zrp-varint M6/zrp-fixed)
cases=()
for decode in "${decodes[@]}"; do
    cases+=("validate/${decode%-*}" "decode/$decode")
done
"$here/instructions.sh" "$build" "${cases[@]}" |
    awk -v decodes="${decodes[*]}" '
        { measured[$1] = $2 }
        END {
            split(decodes, names, " ")
            for (i in names) {
                message = names[i]
                sub("-.*", "", message)
                validate = measured["validate/" message]
                decode = measured["decode/" names[i]]
                if (!validate || !decode || validate * 10 > decode) {
                    printf "guard: validating %s takes %d instructions, decoding it %d\n", names[i], validate, decode
                    failed = 1
                }
            }
            exit failed
        }' || failed=1
for what in instructions sizes; do
    expected=$here/expected_$what.txt
    awk -v what="$what" '
        /^#/ { next }
        FNR == NR { measured[$1] = $2; next }
        {
            known[$1] = 1
            if (!($1 in measured)) {
                printf "guard: %s: %s was not measured\n", what, $1
                failed = 1
            } else if (measured[$1] > $2 * 1.03) {
                printf "guard: %s: %s takes %d, expected %d: %+.1f %%\n", what, $1, measured[$1], $2, (measured[$1] / $2 - 1) * 100
                failed = 1
            } else if (measured[$1] < $2 * 0.97) {
                printf "guard: %s: %s takes %d, less than the %d expected; --update keeps that\n", what, $1, measured[$1], $2
            }
        }
        END {
            for (name in measured) {
                if (!(name in known)) {
                    printf "guard: %s: nothing is expected of %s\n", what, name
                    failed = 1
                }
            }
            exit failed
        }' "$measured/$what.txt" "$expected" || failed=1
done
if [ $failed -ne 0 ]; then
    echo "guard: more than 3 % above what is expected, or not comparable. Where that is intended:" \
        "bench/guard.sh BUILD_DIR --update, and say why in the commit."
    exit 1
fi
echo "guard: instructions and sizes are as expected"
