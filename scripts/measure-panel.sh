#!/usr/bin/env bash
# What the panel costs: under Xvfb with xfce4-panel's notification area, starts the app with
# fixture data, then
#   1. resident memory before the panel was ever opened,
#   2. the time from SIGUSR1 to the first painted frame (TROTLET_PANEL_PERF): the first open,
#      then REOPENS more (closed and opened again within the minute that keeps the window),
#   3. CPU and memory with the panel open on the Overview for N seconds (header animating),
#   4. memory 90 s after closing, once the window has been released.
# Prints one JSON object. Needs Xvfb, dbus and xfce4-panel (installed when missing).
#
#   scripts/measure-panel.sh [-n SECONDS] [-r REOPENS] [COMMAND...]
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
SECONDS_OPEN=60
REOPENS=5
while getopts "n:r:" opt; do
  case $opt in
    n) SECONDS_OPEN=$OPTARG ;;
    r) REOPENS=$OPTARG ;;
    *) echo "usage: $0 [-n SECONDS] [-r REOPENS] [COMMAND...]" >&2; exit 2 ;;
  esac
done
shift $((OPTIND - 1))
if [ $# -eq 0 ]; then set -- "$ROOT/build/release/trotlet" --fixture normal --keep-panel-open; fi

WORK=$(mktemp -d /tmp/measure-panel.XXXXXX)
# shellcheck source=lib/xfce-tray-host.sh
. "$ROOT/scripts/lib/xfce-tray-host.sh"
trap tray_host_stop EXIT
tray_host_install
tray_host_start "${DISPLAY_NUM:-89}" 1280x900 "$WORK"
sleep 2
TROTLET_PANEL_PERF=1 TROTLET_DEBUG_LOG=1 "$@" >"$WORK/app.out" 2>"$WORK/app.log" & pids+=($!)
APP_PID=${pids[-1]}
sleep 8

rss_kb() { awk '/^VmRSS:/ { print $2 }' "/proc/$1/status"; }
ticks() { awk '{ sub(/^.*\) /, ""); print $12 + $13 }' "/proc/$1/stat"; }
frames() { grep -c 'panel first frame' "$WORK/app.log" || true; }
toggle_and_wait() {  # sends SIGUSR1 and waits for the next first-frame line
  local before; before=$(frames)
  kill -USR1 "$APP_PID"
  for _ in $(seq 50); do [ "$(frames)" -gt "$before" ] && return 0; sleep 0.1; done
  return 1
}

closed_kb=$(rss_kb "$APP_PID")
toggle_and_wait || { echo "measure-panel: the panel never painted" >&2; cat "$WORK/app.log" >&2; exit 1; }
for _ in $(seq "$REOPENS"); do
  sleep 1; kill -USR1 "$APP_PID"; sleep 1
  toggle_and_wait || { echo "measure-panel: a reopen never painted" >&2; exit 1; }
done

sleep 3
HZ=$(getconf CLK_TCK)
a0=$(ticks "$APP_PID"); t0=$(date +%s.%N); open_max=0
for _ in $(seq "$SECONDS_OPEN"); do
  sleep 1
  r=$(rss_kb "$APP_PID"); [ "$r" -gt "$open_max" ] && open_max=$r
done
a1=$(ticks "$APP_PID"); t1=$(date +%s.%N)
kill -USR1 "$APP_PID"
sleep 90
released_kb=$(rss_kb "$APP_PID")
grep -q 'panel released' "$WORK/app.log" && released=true || released=false
kill "$APP_PID"; wait "$APP_PID" 2>/dev/null || true

grep 'panel first frame' "$WORK/app.log" | head -2 >&2
first=$(grep 'panel first frame' "$WORK/app.log" | head -1 | sed 's/.*frame \([0-9.]*\) ms.*/\1/')
again=$(grep 'panel first frame' "$WORK/app.log" | tail -n +2 | sed 's/.*frame \([0-9.]*\) ms.*/\1/' | paste -sd, -)
awk -v a0="$a0" -v a1="$a1" -v t0="$t0" -v t1="$t1" -v hz="$HZ" -v closed="$closed_kb" -v open="$open_max" \
    -v rel="$released_kb" -v first="$first" -v again="$again" -v released="$released" 'BEGIN {
  n = split(again, r, ","); s = 0; m = 0; for (i = 1; i <= n; i++) { s += r[i]; if (r[i] > m) m = r[i] }
  printf "{\"firstOpenMs\":%s,\"reopenMsMean\":%.1f,\"reopenMsMax\":%s,\"openCpuPercent\":%.2f,", first, n ? s / n : 0, m, 100 * (a1 - a0) / hz / (t1 - t0)
  printf "\"neverOpenedMB\":%.1f,\"openPeakMB\":%.1f,\"releasedMB\":%.1f,\"released\":%s}\n", closed / 1024, open / 1024, rel / 1024, released
}'
