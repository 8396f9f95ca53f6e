#!/usr/bin/env bash
# What the panel costs: under Xvfb with xfce4-panel's notification area, starts the app with
# fixture data, then
#   1. resident memory before the panel was ever opened,
#   2. the time from SIGUSR1 to the first painted frame (TROTLET_PANEL_PERF): the first open,
#      then REOPENS more (closed and opened again within the minute that keeps the window),
#   3. CPU and memory with the panel open on the Overview for N seconds (header animating),
#   4. memory 90 s after closing, once the window has been released, beside a twin app started
#      at the same time in a tray host of its own and never opened: the twin at the same age is
#      the fair "never opened" figure, since a closed app also grows a little as it runs (its
#      first HTTPS request maps the TLS libraries, for one).
# Both start past the welcome tour, which would otherwise open the panel on a first run.
# Resident figures are VmRSS; the *AnonMB figures are its anonymous part (RssAnon), the memory
# the app holds, without the library code and font pages it has touched, which the kernel can
# take back at any time.
# Prints one JSON object. Needs Xvfb, dbus and xfce4-panel (installed when missing).
#
#   scripts/measure-panel.sh [-n SECONDS] [-r REOPENS] [COMMAND...]
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
SECONDS_OPEN=60
REOPENS=5
TWIN_LOG=
while getopts "n:r:T:" opt; do
  case $opt in
    n) SECONDS_OPEN=$OPTARG ;;
    r) REOPENS=$OPTARG ;;
    T) TWIN_LOG=$OPTARG ;;  # internal: run as the never-opened twin, logging its memory there
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
display=${DISPLAY_NUM:-89}
[ -z "$TWIN_LOG" ] || display=$((display + 1))
tray_host_start "$display" 1280x900 "$WORK"
mkdir -p "$XDG_CONFIG_HOME/trotlet"
echo '{"general.hasCompletedOnboarding": true}' >"$XDG_CONFIG_HOME/trotlet/settings.json"
sleep 2

rss_kb() { awk '/^VmRSS:/ { print $2 }' "/proc/$1/status"; }
anon_kb() { awk '/^RssAnon:/ { print $2 }' "/proc/$1/status"; }

if [ -n "$TWIN_LOG" ]; then
  # The twin: "<seconds since its start> <VmRSS kB> <RssAnon kB>" each second until stopped.
  "$@" >"$WORK/app.out" 2>"$WORK/app.log" & pids+=($!)
  started=$(date +%s)
  while kill -0 "${pids[-1]}" 2>/dev/null; do
    echo "$(($(date +%s) - started)) $(rss_kb "${pids[-1]}") $(anon_kb "${pids[-1]}")" >>"$TWIN_LOG"
    sleep 1
  done
  exit 0
fi

"$0" -T "$WORK/twin.log" "$@" & twin=$! pids+=($!)
TROTLET_PANEL_PERF=1 TROTLET_DEBUG_LOG=1 "$@" >"$WORK/app.out" 2>"$WORK/app.log" & pids+=($!)
APP_PID=${pids[-1]}
started=$(date +%s)
sleep 8

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
released_anon_kb=$(anon_kb "$APP_PID")
age=$(($(date +%s) - started))
grep -q 'panel released' "$WORK/app.log" && released=true || released=false
kill "$APP_PID"; wait "$APP_PID" 2>/dev/null || true
read -r twin_kb twin_anon_kb < <(awk -v age="$age" '$1 <= age { r = $2; a = $3 } END { print r, a }' "$WORK/twin.log")
kill "$twin" 2>/dev/null; wait "$twin" 2>/dev/null || true

grep 'panel first frame' "$WORK/app.log" | head -2 >&2
first=$(grep 'panel first frame' "$WORK/app.log" | head -1 | sed 's/.*frame \([0-9.]*\) ms.*/\1/')
again=$(grep 'panel first frame' "$WORK/app.log" | tail -n +2 | sed 's/.*frame \([0-9.]*\) ms.*/\1/' | paste -sd, -)
awk -v a0="$a0" -v a1="$a1" -v t0="$t0" -v t1="$t1" -v hz="$HZ" -v closed="$closed_kb" -v open="$open_max" \
    -v rel="$released_kb" -v first="$first" -v again="$again" -v released="$released" \
    -v relanon="$released_anon_kb" -v twin="$twin_kb" -v twinanon="$twin_anon_kb" -v age="$age" 'BEGIN {
  n = split(again, r, ","); s = 0; m = 0; for (i = 1; i <= n; i++) { s += r[i]; if (r[i] > m) m = r[i] }
  printf "{\"firstOpenMs\":%s,\"reopenMsMean\":%.1f,\"reopenMsMax\":%s,\"openCpuPercent\":%.2f,", first, n ? s / n : 0, m, 100 * (a1 - a0) / hz / (t1 - t0)
  printf "\"neverOpenedMB\":%.1f,\"openPeakMB\":%.1f,\"released\":%s,\"ageSeconds\":%d,", closed / 1024, open / 1024, released, age
  printf "\"releasedMB\":%.1f,\"neverOpenedSameAgeMB\":%.1f,\"releasedAnonMB\":%.1f,\"neverOpenedSameAgeAnonMB\":%.1f}\n", rel / 1024, twin / 1024, relanon / 1024, twinanon / 1024
}'
