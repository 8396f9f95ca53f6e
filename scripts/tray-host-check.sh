#!/usr/bin/env bash
# Real-host check for the tray item: starts Xvfb, a private session bus and xfce4-panel with a
# panel holding only the notification area, then the app, and takes screenshots before and
# after the app appears and after a click on it. Not part of CI: it needs xfce4-panel,
# ImageMagick and xdotool, which it installs from the Debian mirror when missing.
#
#   scripts/tray-host-check.sh [COMMAND...]
#
# COMMAND defaults to build/release/trotlet; SCREEN sets the screen size (default 800x200,
# taller to see the panel). Screenshots and logs go to $OUT (default
# build/tray-host-check). Prints a JSON summary; exits 1 when the item never registered.
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
OUT=${OUT:-$ROOT/build/tray-host-check}
WAIT=${WAIT:-6}
if [ $# -eq 0 ]; then set -- "$ROOT/build/release/trotlet"; fi

fail() { echo "tray-host-check: $*" >&2; exit 1; }

rm -rf "$OUT"; mkdir -p "$OUT"
WORK=$(mktemp -d /tmp/tray-host-check.XXXXXX)
# shellcheck source=lib/xfce-tray-host.sh
. "$ROOT/scripts/lib/xfce-tray-host.sh"
trap tray_host_stop EXIT

TRAY_HOST_APT_LOG=$OUT.apt.log tray_host_install xdotool imagemagick || fail "could not install the tray host"
# A throwaway home so the panel and the app never touch the user's files.
tray_host_start "${DISPLAY_NUM:-87}" "${SCREEN:-800x200}" "$OUT" || fail "the tray host did not start"
watcher=$TRAY_HOST_WATCHER
sleep 1
import -window root "$OUT/1-panel.png"

"$@" >"$OUT/app.out" 2>"$OUT/app.log" & pids+=($!)
APP_PID=${pids[-1]}
sleep "$WAIT"
import -window root "$OUT/2-with-item.png"

items=$(dbus-send --session --print-reply --dest=org.kde.StatusNotifierWatcher /StatusNotifierWatcher \
  org.freedesktop.DBus.Properties.Get string:org.kde.StatusNotifierWatcher \
  string:RegisteredStatusNotifierItems 2>/dev/null | grep -o 'string "[^"]*"' | sed 's/string //' | paste -sd, - || true)

# Where the item landed: the region that changed between the two screenshots.
geometry=$(convert "$OUT/1-panel.png" "$OUT/2-with-item.png" -compose difference -composite \
  -colorspace gray -threshold 1% -trim -format '%wx%h%X%Y' info: 2>/dev/null || true)
clicked=false
if [[ $geometry =~ ^([0-9]+)x([0-9]+)\+([0-9]+)\+([0-9]+)$ ]] && [ "${BASH_REMATCH[1]}" -lt 400 ]; then
  cx=$((BASH_REMATCH[3] + BASH_REMATCH[1] / 2)); cy=$((BASH_REMATCH[4] + BASH_REMATCH[2] / 2))
  convert "$OUT/2-with-item.png" -crop "$((BASH_REMATCH[1] + 16))x$((BASH_REMATCH[2] + 8))+$((BASH_REMATCH[3] - 8))+$((BASH_REMATCH[4] - 4))" \
    +repage -scale 400% "$OUT/3-item-zoomed.png" || true
  xdotool mousemove "$cx" "$cy"; sleep 1.5
  import -window root "$OUT/4-hover.png"
  xdotool click 1; sleep 1
  import -window root "$OUT/5-after-click.png"
  xdotool key Escape; sleep 0.5
  # The context menu: drawn by the host from the exported menu.
  xdotool click 3; sleep 1.5
  import -window root "$OUT/6-menu.png"
  xdotool key Escape
  clicked=true
fi
sleep 1
kill "$APP_PID" 2>/dev/null || true
wait "$APP_PID" 2>/dev/null || true
kill -0 "$PANEL_PID" 2>/dev/null && panel_alive=true || panel_alive=false

printf '{"watcher":%s,"registeredItems":"%s","itemGeometry":"%s","clicked":%s,"panelAlive":%s,"screenshots":"%s"}\n' \
  "$watcher" "${items//\"/}" "$geometry" "$clicked" "$panel_alive" "$OUT"
[ -n "$items" ] || fail "no item registered with the watcher (see $OUT/app.log)"
