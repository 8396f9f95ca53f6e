#!/usr/bin/env bash
# What the tray costs: runs a command (default the app) for N seconds under Xvfb with
# xfce4-panel's notification area, samples /proc/<pid>/stat and /proc/<pid>/status of the app
# and of the panel once a second, and prints average CPU (% of one core) and peak resident
# memory as JSON. The panel's share matters too: every frame the app sends is work for it.
#
#   scripts/measure-cost.sh [-n SECONDS] [-w WARMUP] [-s SETTINGS_JSON] [-m] [COMMAND...]
#
# -m also prints, on stderr, the app's resident memory by mapping at the end of the run.
# SETTINGS_JSON is written as the run's settings file, e.g. '{"menuBar.maxFPS": 24}'; the
# welcome tour counts as done unless it says otherwise, so a first run's panel is not measured.
#
# COMMAND defaults to build/release/trotlet. Installs Xvfb, dbus and xfce4-panel from the
# Debian mirror when missing. Exits 1 when the app dies early.
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
SECONDS_TO_RUN=60
WARMUP=5
SETTINGS_JSON=
BREAKDOWN=
while getopts "n:w:s:m" opt; do
  case $opt in
    n) SECONDS_TO_RUN=$OPTARG ;;
    w) WARMUP=$OPTARG ;;
    s) SETTINGS_JSON=$OPTARG ;;
    m) BREAKDOWN=1 ;;
    *) echo "usage: $0 [-n SECONDS] [-w WARMUP] [-s SETTINGS_JSON] [-m] [COMMAND...]" >&2; exit 2 ;;
  esac
done
shift $((OPTIND - 1))
if [ $# -eq 0 ]; then set -- "$ROOT/build/release/trotlet"; fi

WORK=$(mktemp -d /tmp/measure-cost.XXXXXX)
# shellcheck source=lib/xfce-tray-host.sh
. "$ROOT/scripts/lib/xfce-tray-host.sh"
trap tray_host_stop EXIT
tray_host_install
tray_host_start "${DISPLAY_NUM:-88}" 800x120 "$WORK"
mkdir -p "$XDG_CONFIG_HOME/trotlet"
python3 -c 'import json, sys
settings = json.loads(sys.argv[1] or "{}")
settings.setdefault("general.hasCompletedOnboarding", True)
print(json.dumps(settings))' "$SETTINGS_JSON" > "$XDG_CONFIG_HOME/trotlet/settings.json"
sleep 2
"$@" >"$WORK/app.out" 2>"$WORK/app.log" & pids+=($!)
APP_PID=${pids[-1]}
sleep "$WARMUP"

HZ=$(getconf CLK_TCK)
ticks() {  # utime + stime of a process, in clock ticks
  awk '{ sub(/^.*\) /, ""); print $12 + $13 }' "/proc/$1/stat" 2>/dev/null || echo -1
}
# The panel runs its plugins, the notification area among them, in wrapper processes: count
# the panel with its children.
family() { echo "$1" $(pgrep -P "$1" || true); }
sum_ticks() { local t=0 p; for p in "$@"; do t=$((t + $(ticks "$p" | awk '{ print ($1 < 0 ? 0 : $1) }'))); done; echo "$t"; }
sum_rss() { local r=0 p; for p in "$@"; do r=$((r + $(rss_kb "$p"))); done; echo "$r"; }
rss_kb() { awk '/^VmRSS:/ { print $2 }' "/proc/$1/status" 2>/dev/null || echo 0; }
hwm_kb() { awk '/^VmHWM:/ { print $2 }' "/proc/$1/status" 2>/dev/null || echo 0; }

panel_pids=$(family "$PANEL_PID")
app0=$(ticks "$APP_PID"); panel0=$(sum_ticks $panel_pids)
[ "$app0" != -1 ] || { echo "measure-cost: the app exited during warm-up" >&2; cat "$WORK/app.log" >&2; exit 1; }
t0=$(date +%s.%N)
app_rss_max=0; panel_rss_max=0; samples=0
for _ in $(seq "$SECONDS_TO_RUN"); do
  sleep 1
  kill -0 "$APP_PID" 2>/dev/null || { echo "measure-cost: the app exited after $samples s" >&2; exit 1; }
  r=$(rss_kb "$APP_PID"); [ "$r" -gt "$app_rss_max" ] && app_rss_max=$r
  r=$(sum_rss $panel_pids); [ "$r" -gt "$panel_rss_max" ] && panel_rss_max=$r
  samples=$((samples + 1))
done
app1=$(ticks "$APP_PID"); panel1=$(sum_ticks $panel_pids); t1=$(date +%s.%N)
app_hwm=$(hwm_kb "$APP_PID")
if [ -n "$BREAKDOWN" ]; then
  grep -E '^(Rss|Pss_Anon|Pss_File|Private_Dirty):' "/proc/$APP_PID/smaps_rollup" >&2
  awk '/^[0-9a-f]+-[0-9a-f]+ / { name = $6 == "" ? "[anonymous]" : $6 } /^Rss:/ { kb[name] += $2 }
       END { for (n in kb) if (kb[n] >= 256) printf "%7d kB  %s\n", kb[n], n }' "/proc/$APP_PID/smaps" | sort -rn >&2
fi

awk -v a0="$app0" -v a1="$app1" -v p0="$panel0" -v p1="$panel1" -v t0="$t0" -v t1="$t1" -v hz="$HZ" \
    -v arss="$app_rss_max" -v ahwm="$app_hwm" -v prss="$panel_rss_max" -v n="$samples" \
    -v np="$(echo $panel_pids | wc -w)" 'BEGIN {
  wall = t1 - t0
  printf "{\"seconds\":%.1f,\"samples\":%d,", wall, n
  printf "\"app\":{\"cpuPercentOfOneCore\":%.2f,\"maxRssMB\":%.1f,\"peakRssMB\":%.1f},", 100 * (a1 - a0) / hz / wall, arss / 1024, ahwm / 1024
  printf "\"panel\":{\"processes\":%d,\"cpuPercentOfOneCore\":%.2f,\"maxRssMB\":%.1f}}\n", np, 100 * (p1 - p0) / hz / wall, prss / 1024
}'
