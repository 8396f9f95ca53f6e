#!/usr/bin/env bash
# The command line as a user meets it: exit statuses, the exact error form, the help, the
# headless answers, and the live app's refusal to start without a display.
set -uo pipefail
trotlet=$1
failures=0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work/home XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data

fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

# expect_error <status> <message> <args...>: the exact two-line stderr of a command-line error.
expect_error() {
    local status=$1 message=$2; shift 2
    "$trotlet" "$@" >"$work/out" 2>"$work/err"
    local got=$?
    [[ $got == "$status" ]] || fail "$* exited $got, wanted $status"
    local wanted
    wanted=$(printf 'trotlet: %s\nRun `Trotlet --help` for usage.' "$message")
    [[ "$(cat "$work/err")" == "$wanted" ]] || fail "$* printed: $(cat "$work/err")"
    [[ ! -s "$work/out" ]] || fail "$* wrote to stdout"
}

# Every message is checked in the parser's own tests; here, the form and status of a few.
expect_error 2 "--tab needs one of: overview, processes, shop, settings" --tab Overview
expect_error 2 "unknown option --frobnicate" --frobnicate
expect_error 2 'unexpected argument "overview"' overview
# A fault before --help wins over it.
expect_error 2 "--tab needs one of: overview, processes, shop, settings" --tab Overview --help

# --help, also after good options and before a fault: the full text on stdout, status 0.
for args in "--help" "-h" "--mock --help --tab Overview" "-psn_0_42 --help"; do
    # shellcheck disable=SC2086
    "$trotlet" $args >"$work/out" 2>"$work/err"
    status=$?
    [[ $status == 0 ]] || fail "$args exited $status"
    head -1 "$work/out" | grep -Eq '^Trotlet [0-9]+\.[0-9]+\.[0-9]+ \([0-9]+\): a menu bar system monitor with a running mascot\.$' ||
        fail "$args: first line $(head -1 "$work/out")"
    [[ "$(tail -1 "$work/out")" == "  -h, --help                print this help" ]] || fail "$args: last line"
    [[ $(wc -l <"$work/out") -ge 60 ]] || fail "$args: help is short"
    [[ ! -s "$work/err" ]] || fail "$args wrote to stderr: $(cat "$work/err")"
done

# "Install for this user?": missing paths are not applicable; a download is offered.
mkdir -p "$HOME/Downloads/trotlet-x" && cp "$trotlet" "$HOME/Downloads/trotlet-x/trotlet"
"$trotlet" --move-check /opt/A --move-check /opt/B --move-check "$HOME/Downloads/trotlet-x" >"$work/out" 2>"$work/err" ||
    fail "--move-check exited $?"
[[ $(grep -c '"applicable": false' "$work/out") == 2 ]] || fail "--move-check: $(cat "$work/out")"
grep -q '"path": "/opt/B"' "$work/out" || fail "--move-check lost a path"
grep -q '"rule": "download"' "$work/out" && grep -q '"shouldOffer": true' "$work/out" &&
    grep -q "\"target\": \"$HOME/.local/opt/trotlet/trotlet\"" "$work/out" || fail "--move-check download: $(cat "$work/out")"
# The install itself: program, launcher, icon, and both copies run.
"$trotlet" --move-copy "$HOME/Downloads/trotlet-x" "$work/opt" >"$work/out" 2>"$work/err" || fail "--move-copy exited $?"
[[ $(grep -c '"willRun": true' "$work/out") == 2 ]] || fail "--move-copy: $(cat "$work/out")"
[[ -x $work/opt/trotlet ]] || fail "--move-copy: no program"
grep -q "^Exec=\"$work/opt/trotlet\"$" "$XDG_DATA_HOME/applications/io.github.trotlet.Trotlet.desktop" ||
    fail "--move-copy: launcher"
[[ -s $XDG_DATA_HOME/icons/hicolor/scalable/apps/io.github.trotlet.Trotlet.svg ]] || fail "--move-copy: icon"
"$trotlet" --move-copy /opt/A "$work/opt2" >"$work/out" 2>"$work/err"
[[ $? == 1 ]] && grep -q '"copied": false' "$work/out" || fail "--move-copy of nothing: $(cat "$work/out")"

# The live app without any display: one clear line, a non-zero status, no hang, no core.
timeout 20 env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM "$trotlet" >"$work/out" 2>"$work/err"
status=$?
[[ $status == 1 ]] || fail "no display: exited $status"
[[ "$(cat "$work/err")" == "trotlet: no display to show the tray item on (neither DISPLAY nor WAYLAND_DISPLAY is set)" ]] ||
    fail "no display: $(cat "$work/err")"
timeout 20 env -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM DISPLAY=:93157 "$trotlet" >"$work/out" 2>"$work/err"
status=$?
[[ $status == 1 ]] || fail "unreachable display: exited $status"
grep -q '^trotlet: cannot connect to the X display ":93157"$' "$work/err" || fail "unreachable display: $(cat "$work/err")"
# A display but no tray (the offscreen platform has none), and no wait for one.
timeout 20 env QT_QPA_PLATFORM=offscreen TROTLET_TRAY_WAIT_SECONDS=0 "$trotlet" >"$work/out" 2>"$work/err"
status=$?
[[ $status == 1 ]] || fail "no tray: exited $status"
grep -q '^trotlet: no system tray is available' "$work/err" || fail "no tray: $(cat "$work/err")"

[[ ! -e $XDG_CONFIG_HOME/trotlet/settings.json ]] || fail "a failed start wrote settings"

if ((failures)); then
    echo "command line: $failures failure(s)"
    exit 1
fi
echo "command line: ok"
