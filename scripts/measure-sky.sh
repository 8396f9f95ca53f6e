#!/usr/bin/env bash
# What the header sky costs: runs sky_bench (built with the tests) on the offscreen platform
# and, when Xvfb is there, on a real X server, and prints one JSON object per run:
#   frameMicros  the header painted at panel size and scale 2 for each sky (mean and 95th
#                percentile), and the sky alone under rain at intensity 1.0;
#   cpu          the panel shown for N seconds with its header animating: a still sky (only the
#                mascot moves) and heavy rain, in percent of one core, with paints per second.
#
#   scripts/measure-sky.sh [-n SECONDS] [BENCH]     (default 20 s, build/release/src/sky/sky_bench)
set -euo pipefail
ROOT=$(cd "$(dirname "$0")/.." && pwd)
SECONDS_OPEN=20
while getopts "n:" opt; do
  case $opt in
    n) SECONDS_OPEN=$OPTARG ;;
    *) echo "usage: $0 [-n SECONDS] [BENCH]" >&2; exit 2 ;;
  esac
done
shift $((OPTIND - 1))
BENCH=${1:-$ROOT/build/release/src/sky/sky_bench}
[ -x "$BENCH" ] || { echo "measure-sky: build sky_bench first (cmake --build --preset release --target sky_bench)" >&2; exit 2; }

export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$(mktemp -d)}
QT_QPA_PLATFORM=offscreen "$BENCH" "$SECONDS_OPEN" 2>/dev/null
if command -v xvfb-run >/dev/null; then
  QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1280x800x24" "$BENCH" "$SECONDS_OPEN" 2>/dev/null
fi
