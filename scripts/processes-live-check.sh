#!/usr/bin/env bash
# Live check of the Processes tab on this machine: under Xvfb with xfce4-panel's notification
# area, starts two processes of its own (one that quits on SIGTERM, one that ignores it), opens
# the app's panel on the Processes tab with the real process table, and from the keyboard
#   1. quits the first with Delete (SIGTERM),
#   2. searches for the second, quits it, waits for "Not responding", confirms Force Quit
#      (SIGKILL),
# taking screenshots of each step into $OUT (default build/processes-live-check), and checks
# that both processes ended by the expected signal and that each quit reached the economy once.
# Prints a JSON summary; exits 1 on a failed check.
#
# Processes owned by root are never offered Quit, so when started as root the check runs as
# the unprivileged user nobody (the app, the test processes and the tray host alike).
#
#   scripts/processes-live-check.sh [TROTLET_BINARY]
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
OUT=${OUT:-$ROOT/build/processes-live-check}
APP=${1:-$ROOT/build/release/trotlet}
if [ "$(id -u)" -eq 0 ]; then
  mkdir -p "$OUT" && chown 65534:65534 "$OUT"
  exec setpriv --reuid=65534 --regid=65534 --clear-groups env OUT="$OUT" bash "$0" "$APP"
fi

fail() { echo "processes-live-check: $*" >&2; exit 1; }
rm -rf "${OUT:?}"/*; mkdir -p "$OUT"
WORK=$(mktemp -d /tmp/processes-live-check.XXXXXX)
# shellcheck source=lib/xfce-tray-host.sh
. "$ROOT/scripts/lib/xfce-tray-host.sh"
# The test processes first, by SIGKILL: one of them ignores the polite signal.
trap 'kill -9 "$polite" "$stubborn" 2>/dev/null || true; tray_host_stop' EXIT
polite=; stubborn=
tray_host_start "${DISPLAY_NUM:-93}" 1024x800 "$OUT" || fail "the tray host did not start"

# The processes to quit; reaped by this shell, so their ending signal can be read.
sleep 600 & pids+=($!); polite=${pids[-1]}
sh -c "trap '' TERM; exec sleep 601" & pids+=($!); stubborn=${pids[-1]}
sleep 0.5

TROTLET_DEBUG_LOG=1 TROTLET_QA_PROCESS_QUERY=$polite "$APP" --skip-onboarding --open-panel \
  --tab processes --keep-panel-open >"$OUT/app.out" 2>"$OUT/app.log" & pids+=($!)
sleep 8
shot() { import -window root "$OUT/$1.png"; }
# The exit status of a child once it has ended, waiting up to five seconds; 0 if it has not.
ended_by() {
  local _
  for _ in $(seq 50); do kill -0 "$1" 2>/dev/null || break; sleep 0.1; done
  kill -0 "$1" 2>/dev/null && { echo 0; return; }
  wait "$1" 2>/dev/null; echo $?
}
shot 1-filtered
window=$(xdotool search --onlyvisible --name '^Trotlet$' | head -1) || fail "no panel window"
eval "$(xdotool getwindowgeometry --shell "$window")"
# A click on the list's empty lower part gives the panel and the list the keyboard (no window
# manager runs here to do that); Down selects the first row and Return opens it.
xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT - 60)) click 1; sleep 0.5
xdotool key Down Return; sleep 0.8
shot 2-opened
xdotool key Delete; sleep 1.5
shot 3-quit
polite_status=$(ended_by "$polite")

xdotool key ctrl+f ctrl+a; sleep 0.3
xdotool type --delay 60 "$stubborn"; sleep 0.5
xdotool key Down Delete; sleep 6.5
shot 4-not-responding
xdotool key Delete; sleep 0.8
shot 5-force-quit-question
xdotool key Tab Return; sleep 1.5
shot 6-force-quit
stubborn_status=$(ended_by "$stubborn")

quits=$(grep -c "a process quit at the user's request" "$OUT/app.log" || true)
achievement=$(grep -c "Cleanup Crew" "$OUT/app.log" || true)
printf '{"politeEndedBy":%d,"stubbornEndedBy":%d,"quitsCounted":%d,"cleanupCrewLines":%d,"screenshots":"%s"}\n' \
  $((polite_status > 128 ? polite_status - 128 : 0)) $((stubborn_status > 128 ? stubborn_status - 128 : 0)) \
  "$quits" "$achievement" "$OUT"
[ "$polite_status" -eq $((128 + 15)) ] || fail "the first process did not end by SIGTERM ($polite_status)"
[ "$stubborn_status" -eq $((128 + 9)) ] || fail "the second process did not end by SIGKILL ($stubborn_status)"
[ "$quits" -eq 2 ] || fail "the economy heard $quits quits, not 2"
