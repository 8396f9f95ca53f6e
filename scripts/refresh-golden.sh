#!/usr/bin/env bash
# Renders the scenes kept as golden images into src/snapshot/tests/golden, after a deliberate
# change of look. Review the new PNGs before committing them.
#
#   scripts/refresh-golden.sh [BINARY]     (default build/release/trotlet)
set -euo pipefail
ROOT=$(cd "$(dirname "$0")/.." && pwd)
BIN=${1:-$ROOT/build/release/trotlet}
OUT=$ROOT/src/snapshot/tests/golden
scenes=$(paste -sd, "$OUT/scenes.txt")
tmp=$(mktemp -d); trap 'rm -rf "$tmp"' EXIT
"$BIN" --snapshot "$tmp" --only "$scenes"
rm -f "$OUT"/*.png
cp "$tmp"/*.png "$OUT"/
echo "refreshed: $scenes"
