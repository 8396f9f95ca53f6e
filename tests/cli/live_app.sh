#!/usr/bin/env bash
# The live app on a real X server (run under xvfb-run) with a minimal tray host: the allocator
# re-exec seen from /proc, SIGUSR1 toggling the panel, SIGTERM and SIGINT quitting cleanly,
# waiting for a tray that comes late, and a clear refusal when none comes.
set -uo pipefail
trotlet=$1
fake_tray=$2
# shellcheck source=/dev/null
. "$(dirname "$0")/live_session.sh"
export QT_QPA_PLATFORM=xcb TROTLET_DEBUG_LOG=1
unset DBUS_SESSION_BUS_ADDRESS WAYLAND_DISPLAY GLIBC_TUNABLES MallocSpaceEfficient TROTLET_MALLOC_REEXEC TROTLET_DEFAULT_MALLOC

# The whole first-exec environment of a process, one variable per line.
environment_of() { tr '\0' '\n' <"/proc/$1/environ"; }
# The tunables the process started with. glibc's parser cuts GLIBC_TUNABLES at each ":" in
# place, so the pieces follow as lines of their own; they are joined again here.
tunables_of() {
    tr '\0' '\n' <"/proc/$1/environ" |
        awk '/^GLIBC_TUNABLES=/ { out = $0; on = 1; next }
             on && /^glibc\./ { out = out ":" $0; next }
             { on = 0 }
             END { print out }'
}

if [[ -z ${DISPLAY:-} ]]; then
    echo "live app: needs an X display (run under xvfb-run)"
    exit 1
fi

# No tray at all: the app waits its while, says so and stops.
TROTLET_TRAY_WAIT_SECONDS=1 timeout 20 "$trotlet" >"$work/out" 2>"$work/err"
status=$?
[[ $status == 1 ]] || fail "without a tray the app exited $status"
grep -qx 'trotlet: waiting up to 1 s for a system tray' "$work/err" || fail "no word of the wait: $(cat "$work/err")"
grep -q '^trotlet: no system tray is available' "$work/err" || fail "without a tray: $(cat "$work/err")"

# Started before the desktop's panel, as at login: the app waits and comes up with the tray.
TROTLET_TRAY_WAIT_SECONDS=30 "$trotlet" >"$work/early.out" 2>"$work/early" &
early=$!
pids+=("$early")
wait_for "$work/early" "trotlet: waiting up to 30 s for a system tray" 10 || fail "the early copy did not wait: $(cat "$work/early")"
"$fake_tray" >"$work/tray" 2>&1 &
pids+=($!)
wait_for "$work/tray" ready 10 || { echo "FAIL: the fake tray did not start: $(cat "$work/tray")"; exit 1; }
wait_for "$work/early" "trotlet: live app started" 30 || fail "the early copy did not come up with the tray: $(cat "$work/early")"
kill -TERM "$early" 2>/dev/null
wait "$early"
status=$?
[[ $status == 0 ]] || fail "the early copy exited $status: $(cat "$work/early")"

# 0. A first run opens the panel by itself on the welcome tour.
"$trotlet" >"$work/first.out" 2>"$work/first" &
first_run=$!
pids+=("$first_run")
wait_for "$work/first" "trotlet: panel opened (first run)" 30 || fail "a first run did not open the panel: $(cat "$work/first")"
grep -qF "trotlet: welcome tour shown at step meet" "$work/first" || fail "no tour on the first run: $(cat "$work/first")"
kill -TERM "$first_run" 2>/dev/null
wait "$first_run" || fail "the first run exited $?"
# From here on the user has been through it.
tour_done

# start_app <log> [env assignments...]: starts the app with the arguments in $app_args,
# waits until it runs; sets $app.
app_args=()
start_app() {
    local log=$1; shift
    env "$@" "$trotlet" "${app_args[@]}" >"$log.out" 2>"$log" &
    app=$!
    pids+=("$app")
    wait_for "$log" "trotlet: live app started" 30 || { fail "the app did not start: $(cat "$log")"; return 1; }
}

# stop_app <signal> <log>: the app quits on the signal with status 0 and says why.
stop_app() {
    kill "-$1" "$app"
    local deadline=$((SECONDS + 20))
    while kill -0 "$app" 2>/dev/null && ((SECONDS < deadline)); do sleep 0.1; done
    if kill -0 "$app" 2>/dev/null; then
        fail "the app ignored SIG$1"
        kill -KILL "$app"
    fi
    wait "$app"
    local status=$?
    [[ $status == 0 ]] || fail "SIG$1: exit status $status"
    grep -qF "trotlet: quitting (SIG$1)" "$2" || fail "SIG$1 not reported: $(cat "$2")"
}

# 1. An ordinary start re-executes itself once with the allocator settings: the process's
#    initial environment (what the exec received) carries the marker and the tunables.
if start_app "$work/run1"; then
    env1=$(environment_of "$app")
    grep -qx 'TROTLET_MALLOC_REEXEC=1' <<<"$env1" || fail "no re-exec marker in the exec'd environment"
    grep -qx 'MallocSpaceEfficient=1' <<<"$env1" || fail "no MallocSpaceEfficient in the exec'd environment"
    [[ "$(tunables_of "$app")" == 'GLIBC_TUNABLES=glibc.malloc.arena_max=2:glibc.malloc.trim_threshold=131072' ]] ||
        fail "tunables: $(tunables_of "$app")"
    [[ "$(tr '\0' ' ' <"/proc/$app/cmdline")" == "$trotlet " ]] || fail "re-exec changed the arguments"

    # 2. SIGUSR1 toggles the panel open and closed.
    kill -USR1 "$app"
    wait_for "$work/run1" "trotlet: panel opened (SIGUSR1)" || fail "SIGUSR1 did not open the panel"
    kill -USR1 "$app"
    wait_for "$work/run1" "trotlet: panel closed (SIGUSR1)" || fail "SIGUSR1 did not close the panel"

    # A second copy asks this one to open its panel and leaves.
    timeout 20 "$trotlet" >"$work/second.out" 2>"$work/second"
    status=$?
    [[ $status == 0 ]] || fail "second copy exited $status: $(cat "$work/second")"
    grep -qx "trotlet: Trotlet is already running; asked it to open its panel" "$work/second" ||
        fail "second copy said: $(cat "$work/second")"
    wait_for "$work/run1" "trotlet: panel opened (second launch)" || fail "the second copy's request was lost"

    # Unless copies are allowed side by side.
    first=$app
    if start_app "$work/side" TROTLET_ALLOW_MULTIPLE=1; then
        kill -0 "$first" || fail "the first copy died"
        stop_app TERM "$work/side"
    fi
    app=$first
    stop_app TERM "$work/run1"
fi

# 3. The opt-out: no re-exec, and SIGINT quits as cleanly.
if start_app "$work/run2" TROTLET_DEFAULT_MALLOC=1; then
    env2=$(environment_of "$app")
    ! grep -q '^TROTLET_MALLOC_REEXEC=' <<<"$env2" || fail "re-executed despite TROTLET_DEFAULT_MALLOC"
    ! grep -q '^GLIBC_TUNABLES=' <<<"$env2" || fail "tunables set despite TROTLET_DEFAULT_MALLOC"
    stop_app INT "$work/run2"
fi

# 4. The user's own tunable wins over the app's.
if start_app "$work/run3" GLIBC_TUNABLES=glibc.malloc.arena_max=8; then
    [[ "$(tunables_of "$app")" == 'GLIBC_TUNABLES=glibc.malloc.trim_threshold=131072:glibc.malloc.arena_max=8' ]] ||
        fail "merged tunables: $(tunables_of "$app")"
    stop_app TERM "$work/run3"
fi

# 5. MallocSpaceEfficient set from outside: honoured without a re-exec.
if start_app "$work/run4" MallocSpaceEfficient=1; then
    ! grep -q '^TROTLET_MALLOC_REEXEC=' <<<"$(environment_of "$app")" || fail "re-executed with MallocSpaceEfficient set"
    stop_app TERM "$work/run4"
fi

# 6. An in-memory session leaves an existing settings file alone.
mkdir -p "$XDG_CONFIG_HOME/trotlet"
printf '{"menuBar.maxFPS": 12}\n' >"$XDG_CONFIG_HOME/trotlet/settings.json"
before=$(stat -c '%i %s %Y' "$XDG_CONFIG_HOME/trotlet/settings.json")
app_args=(--skip-onboarding)
if start_app "$work/run5"; then
    grep -qF "trotlet: live app started (in-memory settings)" "$work/run5" || fail "--skip-onboarding is not in memory"
    stop_app TERM "$work/run5"
fi
app_args=()
[[ "$(stat -c '%i %s %Y' "$XDG_CONFIG_HOME/trotlet/settings.json")" == "$before" ]] ||
    fail "an in-memory session touched settings.json"

if ((failures)); then
    echo "live app: $failures failure(s)"
    exit 1
fi
echo "live app: ok"
