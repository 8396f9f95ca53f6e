#!/usr/bin/env bash
# Plants each deliberate bug of tests/mutations/*.patch in the source, rebuilds the test
# executables its "# labels:" line names, runs those ctest labels and expects a failure; then
# takes the bug out again and rebuilds. Prints, per bug, the tests that caught it, and exits 1
# when a bug got through. Nothing is committed; run it on a tree with no edits to those files.
#
#   scripts/mutation-check.sh [PATCH...]      (default: every patch, in name order)
#
# ROOT runs it on another copy of the sources (a `git archive` of another commit, say) with its
# own build folder; PRESET picks the CMake preset (default release).
set -uo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
root=${ROOT:-$here}
preset=${PRESET:-release}
patches=()
for patch in "$@"; do patches+=("$(realpath "$patch")"); done
if [ ${#patches[@]} -eq 0 ]; then patches=("$here"/tests/mutations/*.patch); fi
cd "$root" || exit 2
log=$(mktemp)
trap 'rm -f "$log"' EXIT

build() { nice cmake --build --preset "$preset" -j2 --target "$@" >"$log" 2>&1; }

survived=0
for patch in "${patches[@]}"; do
    name=$(basename "$patch" .patch)
    read -r -a labels <<<"$(sed -n 's/^# labels: //p' "$patch")"
    if [ ${#labels[@]} -eq 0 ] || ! git apply --check "$patch" 2>/dev/null; then
        echo "$name: ERROR: no labels, or the patch does not apply"
        survived=$((survived + 1))
        continue
    fi
    git apply "$patch"
    # Whatever happens from here, the bug comes out again.
    trap 'git apply -R "$patch"; rm -f "$log"' EXIT INT TERM
    if ! build "${labels[@]}"; then
        echo "$name: ERROR: the build failed with the bug in place"
        tail -20 "$log"
        survived=$((survived + 1))
    else
        pattern=$(IFS='|'; echo "${labels[*]}")
        ctest --preset "$preset" -L "^($pattern)\$" >"$log" 2>&1
        # A parameterised test's name comes with a dump of its parameter after "  # ".
        caught=$(sed -n 's/^[[:space:]]*[0-9]* - \(.*\) (Failed)$/\1/p' "$log" | sed 's/  # .*//' |
            paste -sd, - | sed 's/,/, /g')
        if [ -n "$caught" ]; then
            echo "$name: caught by $caught"
        else
            echo "$name: NOT CAUGHT by ${labels[*]}"
            survived=$((survived + 1))
        fi
    fi
    git apply -R "$patch"
    trap 'rm -f "$log"' EXIT
    build "${labels[@]}" || echo "$name: WARNING: the rebuild without the bug failed"
done
exit $((survived > 0))
