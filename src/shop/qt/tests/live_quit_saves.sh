#!/usr/bin/env bash
# The live app keeps the shop across quits (run under xvfb-run): progress still waiting for its
# deferred write reaches shop.json on SIGTERM and on SIGINT, no temporary file is left behind,
# and an in-memory session (--skip-onboarding) neither creates nor touches shop.json.
set -uo pipefail
trotlet=$1
fake_tray=$2
# shellcheck source=/dev/null
. "$(dirname "$0")/../../../../tests/cli/live_session.sh"
export QT_QPA_PLATFORM=xcb TROTLET_DEBUG_LOG=1 TROTLET_ALLOW_MULTIPLE=1
unset DBUS_SESSION_BUS_ADDRESS WAYLAND_DISPLAY TROTLET_WEATHER_CACHE
shop=$XDG_DATA_HOME/trotlet/shop.json
tour_done

# active_seconds: today's credited seconds in the shop file, or "none".
active_seconds() {
    python3 -c 'import json,sys
try: print(json.load(open(sys.argv[1]))["today"]["activeSeconds"])
except Exception: print("none")' "$shop"
}

[[ -n ${DISPLAY:-} ]] || { echo "live quit: needs an X display (run under xvfb-run)"; exit 1; }
"$fake_tray" >"$work/tray" 2>&1 &
pids+=($!)
wait_for "$work/tray" ready 10 || { echo "FAIL: the fake tray did not start"; exit 1; }

# run_for <seconds> <signal> <log> [args...]: the app samples (every 5 s with the panel
# closed) for a while as an active user, then gets the signal and must exit 0.
run_for() {
    local seconds=$1 signal=$2 log=$3
    shift 3
    "$trotlet" --mock --awake "$@" >"$log.out" 2>"$log" &
    local app=$!
    pids+=("$app")
    wait_for "$log" "trotlet: live app started" 30 || { fail "the app did not start: $(cat "$log")"; return 1; }
    sleep "$seconds"
    kill "-$signal" "$app"
    local deadline=$((SECONDS + 20))
    while kill -0 "$app" 2>/dev/null && ((SECONDS < deadline)); do sleep 0.1; done
    kill -0 "$app" 2>/dev/null && { fail "SIG$signal ignored"; kill -KILL "$app"; }
    wait "$app"
    local status=$?
    [[ $status == 0 ]] || fail "SIG$signal: exit status $status: $(cat "$log")"
}

# 1. A new shop: the welcome gift is written at once; the passive progress of the next
#    samples waits for its deferred write, which only the quit can have made.
run_for 7 TERM "$work/term"
first=$(active_seconds)
python3 -c 'import sys; sys.exit(0 if float(sys.argv[1]) >= 4 else 1)' "$first" 2>/dev/null ||
    fail "SIGTERM: the shop holds $first active seconds"
[[ ! -e $shop.tmp ]] || fail "a temporary shop file was left behind"

# 2. SIGINT saves as well, on top of what the first run left.
run_for 7 INT "$work/int"
second=$(active_seconds)
python3 -c 'import sys; sys.exit(0 if float(sys.argv[2]) >= float(sys.argv[1]) + 4 else 1)' "$first" "$second" \
    2>/dev/null || fail "SIGINT: active seconds went from $first to $second"

# 3. An in-memory session leaves the file exactly as it was...
before=$(stat -c '%i %s %Y' "$shop"; md5sum <"$shop")
run_for 7 TERM "$work/skip" --skip-onboarding
[[ "$(stat -c '%i %s %Y' "$shop"; md5sum <"$shop")" == "$before" ]] || fail "--skip-onboarding touched shop.json"
# ...and creates none where there was none.
rm -rf "$XDG_DATA_HOME/trotlet"
run_for 3 TERM "$work/skip2" --skip-onboarding
[[ ! -e $XDG_DATA_HOME/trotlet ]] || fail "--skip-onboarding created $(ls -R "$XDG_DATA_HOME/trotlet")"

if ((failures)); then
    echo "live quit: $failures failure(s)"
    exit 1
fi
echo "live quit: ok"
