#!/usr/bin/env bash
# What the day history and the detail screens cost, as one JSON object:
#   bench:        build/release/src/ui/detail_bench (day history memory and folding cost, the
#                 once-a-minute extra reading on this machine, detail switching to the first
#                 frame, chart drawing), offscreen;
#   openOnDetail: scripts/measure-panel.sh with the panel open on a detail for N seconds, on
#                 animated mock data, at the default 2 s interval: the app's CPU and memory.
# Needs Xvfb, dbus and xfce4-panel for the second part (installed when missing).
#
#   scripts/measure-details.sh [-n SECONDS] [-d DETAIL]
set -euo pipefail
ROOT=$(cd "$(dirname "$0")/.." && pwd)
SECONDS_OPEN=60
DETAIL=cpu
while getopts "n:d:" opt; do
  case $opt in
    n) SECONDS_OPEN=$OPTARG ;;
    d) DETAIL=$OPTARG ;;
    *) echo "usage: $0 [-n SECONDS] [-d DETAIL]" >&2; exit 2 ;;
  esac
done
BENCH=$ROOT/build/release/src/ui/detail_bench
[ -x "$BENCH" ] || { echo "measure-details: build detail_bench first" >&2; exit 1; }
bench=$("$BENCH" 20 2>/dev/null)
open=$("$ROOT/scripts/measure-panel.sh" -n "$SECONDS_OPEN" -r 0 \
  "$ROOT/build/release/trotlet" --mock --keep-panel-open --detail "$DETAIL")
printf '{"bench":%s,"openOnDetail":{"detail":"%s","seconds":%s,"panel":%s}}\n' \
  "$bench" "$DETAIL" "$SECONDS_OPEN" "$open"
