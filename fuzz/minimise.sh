#!/usr/bin/env bash
# Makes the seed corpora anew: from generated seeds, from what is checked in and from what earlier
# runs of ./dev fuzz found, the few small inputs that together reach most.
#
# Usage: fuzz/minimise.sh [TARGET...]      (default: all)
#
# Needs the programs of ./dev fuzz --fast.
set -euo pipefail
cd "$(dirname "$0")/.."

readonly most_inputs=100
readonly largest_input=1024
programs=build/fuzz-fast/fuzz

case "${1:-}" in
    -h | --help)
        sed -n '2,7s/^# \{0,1\}//p' fuzz/minimise.sh
        exit 0
        ;;
esac
[ -x "$programs/make_seeds" ] || {
    printf 'minimise: there is no %s/make_seeds: run ./dev fuzz 1 --fast first\n' "$programs" >&2
    exit 1
}
if [ $# -eq 0 ]; then
    for source in fuzz/targets/*.cpp; do
        set -- "$@" "$(basename "$source" .cpp)"
    done
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Prints the paths of the inputs chosen, from the notes of a merge on what each input reaches: again
# and again the one that adds most, of equals the smaller. What an input adds only ever shrinks, so
# one that added no more than the best so far need not be counted again.
choose() {
    awk -v most="$most_inputs" '
        NR == 1 { files = $1 }
        NR > 2 && NR <= files + 2 { path[NR - 3] = $0 }
        $1 == "STARTED" { size[$2] = $3 }
        $1 == "FT" { reaches[$2] = $0; adds[$2] = NF - 2 }

        function count(input, features, total, i, sum) {
            total = split(reaches[input], features, " ")
            for (i = 3; i <= total; i++) {
                sum += !(features[i] in reached)
            }
            return sum + 0
        }
        function isBetter(input, best) {
            return best == "" || adds[input] > adds[best] ||
                adds[input] == adds[best] && size[input] < size[best]
        }
        END {
            for (round = 0; round < most; round++) {
                best = ""
                for (input in adds) {
                    if (isBetter(input, best)) {
                        adds[input] = count(input)
                        if (isBetter(input, best)) {
                            best = input
                        }
                    }
                }
                if (best == "" || adds[best] == 0) {
                    break
                }
                print path[best]
                total = split(reaches[best], features, " ")
                for (i = 3; i <= total; i++) {
                    reached[features[i]]
                }
                delete adds[best]
            }
        }
    ' "$1"
}

for target in "$@"; do
    [ -x "$programs/$target" ] || {
        printf 'minimise: there is no target %s\n' "$target" >&2
        exit 1
    }
    "$programs/make_seeds" "$target" "$work/$target.seeds"
    mkdir -p "$work/$target.merged" "fuzz/corpus/$target"
    sources=("$work/$target.seeds" "fuzz/corpus/$target")
    for grown in build/fuzz*/run/corpus/"$target"; do
        [ ! -d "$grown" ] || sources+=("$grown")
    done
    "$programs/$target" -set_cover_merge=1 -use_counters=0 -max_len=$largest_input \
        -merge_control_file="$work/$target.notes" "$work/$target.merged" "${sources[@]}" \
        >"$work/$target.log" 2>&1 || {
        tail -n 20 "$work/$target.log" >&2
        printf 'minimise: merging the inputs of %s failed; an input that fails is a finding\n' "$target" >&2
        exit 1
    }
    mkdir "$work/$target.chosen"
    choose "$work/$target.notes" | while IFS= read -r path; do
        # Named by what it holds, as the fuzzer names its own.
        cp "$path" "$work/$target.chosen/$(sha1sum "$path" | cut -d ' ' -f 1)"
    done
    rm -rf "fuzz/corpus/$target"
    mv "$work/$target.chosen" "fuzz/corpus/$target"
    printf 'minimise: %-22s %3d inputs, %6d bytes\n' "$target" \
        "$(find "fuzz/corpus/$target" -type f | wc -l)" "$(cat "fuzz/corpus/$target"/* | wc -c)"
done
