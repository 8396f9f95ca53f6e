#!/usr/bin/env bash
# Real-host check for the tray item: starts Xvfb, a private session bus and xfce4-panel with a
# panel holding only the notification area, then the app, and takes screenshots before and
# after the app appears and after a click on it. Not part of CI: it needs xfce4-panel,
# ImageMagick and xdotool, which it installs from the Debian mirror when missing.
#
#   scripts/tray-host-check.sh [COMMAND...]
#
# COMMAND defaults to build/release/trotlet. Screenshots and logs go to $OUT (default
# build/tray-host-check). Prints a JSON summary; exits 1 when the item never registered.
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
OUT=${OUT:-$ROOT/build/tray-host-check}
WAIT=${WAIT:-6}
if [ $# -eq 0 ]; then set -- "$ROOT/build/release/trotlet"; fi

fail() { echo "tray-host-check: $*" >&2; exit 1; }

missing=()
command -v xfce4-panel >/dev/null || missing+=(xfce4-panel)
command -v xdotool >/dev/null || missing+=(xdotool)
[ -x /usr/bin/import ] || missing+=(imagemagick)
command -v Xvfb >/dev/null || missing+=(xvfb)
command -v dbus-send >/dev/null || missing+=(dbus)
if [ ${#missing[@]} -gt 0 ]; then
  echo "tray-host-check: installing ${missing[*]}" >&2
  DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >"$OUT.apt.log" 2>&1 \
    || { apt-get update >/dev/null 2>&1 && DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >"$OUT.apt.log" 2>&1; } \
    || fail "could not install ${missing[*]} (see $OUT.apt.log)"
fi

rm -rf "$OUT"; mkdir -p "$OUT"
WORK=$(mktemp -d /tmp/tray-host-check.XXXXXX)
pids=()
cleanup() {
  for ((i=${#pids[@]}-1; i>=0; i--)); do kill "${pids[i]}" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$WORK"
}
trap cleanup EXIT

# A throwaway home so the panel and the app never touch the user's files.
export HOME=$WORK/home XDG_CONFIG_HOME=$WORK/home/.config XDG_DATA_HOME=$WORK/home/.local/share
export XDG_CACHE_HOME=$WORK/home/.cache XDG_RUNTIME_DIR=$WORK/run
mkdir -p "$XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
unset WAYLAND_DISPLAY
export XDG_SESSION_TYPE=x11 XDG_CURRENT_DESKTOP=XFCE

cat > "$XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml" <<'XML'
<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="28"/>
      <property name="icon-size" type="uint" value="22"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray">
      <property name="square-icons" type="bool" value="false"/>
      <property name="icon-size" type="int" value="22"/>
    </property>
  </property>
</channel>
XML

DISPLAY_NUM=${DISPLAY_NUM:-87}
export DISPLAY=:$DISPLAY_NUM
Xvfb "$DISPLAY" -screen 0 800x200x24 -nolisten tcp >"$OUT/xvfb.log" 2>&1 & pids+=($!)
for _ in $(seq 50); do xdpyinfo >/dev/null 2>&1 && break; [ -e /tmp/.X11-unix/X$DISPLAY_NUM ] && break; sleep 0.1; done

dbus-daemon --session --nofork --print-address=3 3>"$WORK/bus" >/dev/null 2>&1 & pids+=($!)
for _ in $(seq 50); do [ -s "$WORK/bus" ] && break; sleep 0.1; done
export DBUS_SESSION_BUS_ADDRESS=$(head -n1 "$WORK/bus")
[ -n "$DBUS_SESSION_BUS_ADDRESS" ] || fail "no session bus"

bus_has() {
  dbus-send --session --print-reply --dest=org.freedesktop.DBus /org/freedesktop/DBus \
    org.freedesktop.DBus.ListNames 2>/dev/null | grep -q "\"$1\""
}

# The panel first, so the StatusNotifierWatcher exists when the app looks for it.
xfce4-panel --disable-wm-check >"$OUT/panel.log" 2>&1 & pids+=($!)
PANEL_PID=${pids[-1]}
for _ in $(seq 100); do bus_has org.kde.StatusNotifierWatcher && break; sleep 0.1; done
bus_has org.kde.StatusNotifierWatcher && watcher=true || watcher=false
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
