#!/usr/bin/env bash
# The live app's updates at launch (run under xvfb-run with the fake tray): a copy unpacked in
# the download folder offers to install itself, an upgrade offers What's new, --check-updates
# announces the newer release of a feed on 127.0.0.1 (the settings' override), and the panel
# shows the install offer.
set -uo pipefail
trotlet=$1
fake_tray=$2
# shellcheck source=/dev/null
. "$(dirname "$0")/live_session.sh"
export QT_QPA_PLATFORM=xcb TROTLET_DEBUG_LOG=1 TROTLET_ALLOW_MULTIPLE=1 TROTLET_DEFAULT_MALLOC=1
unset DBUS_SESSION_BUS_ADDRESS WAYLAND_DISPLAY TROTLET_WHATS_NEW TROTLET_UPDATES

"$fake_tray" >"$work/tray" 2>&1 &
pids+=($!)
wait_for "$work/tray" ready 10 || { echo "FAIL: the fake tray did not start: $(cat "$work/tray")"; exit 1; }

mkdir -p "$work/feed" "$HOME/Downloads/trotlet-9" "$XDG_CONFIG_HOME/trotlet"
cat >"$work/feed/feed.json" <<'JSON'
{"releases": [{"version": "9.0.0", "build": 1, "date": "2026-12-01", "notes": ["Nine."], "downloads": []}]}
JSON
python3 -u -m http.server --bind 127.0.0.1 --directory "$work/feed" 0 >"$work/server" 2>&1 &
pids+=($!)
wait_for "$work/server" "Serving HTTP" 10 || { echo "FAIL: no feed server: $(cat "$work/server")"; exit 1; }
port=$(sed -n 's/.* port \([0-9]*\).*/\1/p' "$work/server" | head -1)
cat >"$XDG_CONFIG_HOME/trotlet/settings.json" <<JSON
{"release.lastLaunchedVersion": "0.0.1", "updates.feedURLOverride": "http://127.0.0.1:$port/feed.json"}
JSON
cp "$trotlet" "$HOME/Downloads/trotlet-9/trotlet"

"$HOME/Downloads/trotlet-9/trotlet" --check-updates >"$work/out" 2>"$work/err" &
app=$!
pids+=("$app")
wait_for "$work/err" "trotlet: update check: Trotlet 9.0.0 is available." 20 || fail "no announcement: $(cat "$work/err")"
grep -q "^trotlet: install for this user: download, offered" "$work/err" || fail "no install offer: $(cat "$work/err")"
grep -q "^trotlet: what's new: upgrade, 1 note(s) offered" "$work/err" || fail "no What's new: $(cat "$work/err")"
# The panel shows the install offer first.
kill -USR1 "$app"
wait_for "$work/err" "trotlet: panel notice: installOffer" 20 || fail "no install notice in the panel: $(cat "$work/err")"
kill -TERM "$app" 2>/dev/null
wait "$app"
grep -q '"release.whatsNewVersion"' "$XDG_CONFIG_HOME/trotlet/settings.json" || fail "What's new not kept pending"
grep -q '"updates.lastCheckedAt"' "$XDG_CONFIG_HOME/trotlet/settings.json" || fail "the check's time not kept"

if ((failures)); then
    echo "live updates: $failures failure(s)"
    exit 1
fi
echo "live updates: ok"
