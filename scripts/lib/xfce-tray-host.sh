# Sourced by the scripts that run the app in a real tray host: a throwaway home, Xvfb, a
# private session bus and xfce4-panel with a panel holding only the notification area.
# The caller sets WORK, a scratch folder, before sourcing, and traps tray_host_stop on EXIT.
# Every process started goes into `pids`.
pids=()

# Stops what was started, newest first, and removes $WORK.
tray_host_stop() {
  local i
  for ((i = ${#pids[@]} - 1; i >= 0; i--)); do kill "${pids[i]}" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$WORK"
}

# tray_host_install [PACKAGE...]: installs xfce4-panel, Xvfb and dbus, plus the packages
# named, from the Debian mirror when their commands are missing. apt's output goes to
# $TRAY_HOST_APT_LOG (default $WORK/apt.log).
tray_host_install() {
  local missing=() package
  command -v xfce4-panel >/dev/null || missing+=(xfce4-panel)
  command -v Xvfb >/dev/null || missing+=(xvfb)
  command -v dbus-send >/dev/null || missing+=(dbus)
  for package in "$@"; do
    case $package in
      imagemagick) [ -x /usr/bin/import ] || missing+=(imagemagick) ;;
      *) command -v "$package" >/dev/null || missing+=("$package") ;;
    esac
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local log=${TRAY_HOST_APT_LOG:-$WORK/apt.log}
  echo "tray host: installing ${missing[*]}" >&2
  DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >"$log" 2>&1 ||
    { apt-get update >/dev/null 2>&1 &&
      DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >"$log" 2>&1; } ||
    { echo "tray host: could not install ${missing[*]} (see $log)" >&2; return 1; }
}

tray_host_bus_has() {
  dbus-send --session --print-reply --dest=org.freedesktop.DBus /org/freedesktop/DBus \
    org.freedesktop.DBus.ListNames 2>/dev/null | grep -q "\"$1\""
}

# tray_host_start DISPLAY_NUMBER SCREEN_SIZE LOG_DIR: exports the throwaway home, DISPLAY and
# DBUS_SESSION_BUS_ADDRESS, starts the X server, the bus and the panel, and waits for the
# panel's StatusNotifierWatcher. Sets PANEL_PID, and TRAY_HOST_WATCHER to true or false.
tray_host_start() {
  local display_number=$1 screen=$2 logs=$3
  export HOME=$WORK/home XDG_CONFIG_HOME=$WORK/home/.config XDG_DATA_HOME=$WORK/home/.local/share
  export XDG_CACHE_HOME=$WORK/home/.cache XDG_RUNTIME_DIR=$WORK/run
  mkdir -p "$XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml" "$XDG_RUNTIME_DIR"
  chmod 700 "$XDG_RUNTIME_DIR"
  unset WAYLAND_DISPLAY
  export XDG_SESSION_TYPE=x11 XDG_CURRENT_DESKTOP=XFCE
  cat >"$XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml" <<'XML'
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

  export DISPLAY=:$display_number
  # -noreset: a server that resets when its last client leaves refuses connections meanwhile.
  Xvfb "$DISPLAY" -screen 0 "${screen}x24" -nolisten tcp -noreset >"$logs/xvfb.log" 2>&1 &
  pids+=($!)
  local _
  for _ in $(seq 50); do [ -e "/tmp/.X11-unix/X$display_number" ] && break; sleep 0.1; done

  dbus-daemon --session --nofork --print-address=3 3>"$WORK/bus" >/dev/null 2>&1 &
  pids+=($!)
  for _ in $(seq 50); do [ -s "$WORK/bus" ] && break; sleep 0.1; done
  DBUS_SESSION_BUS_ADDRESS=$(head -n1 "$WORK/bus")
  export DBUS_SESSION_BUS_ADDRESS
  [ -n "$DBUS_SESSION_BUS_ADDRESS" ] || { echo "tray host: no session bus" >&2; return 1; }

  # The panel first, so the StatusNotifierWatcher exists when the app looks for it.
  xfce4-panel --disable-wm-check >"$logs/panel.log" 2>&1 &
  pids+=($!)
  PANEL_PID=$!
  for _ in $(seq 100); do tray_host_bus_has org.kde.StatusNotifierWatcher && break; sleep 0.1; done
  if tray_host_bus_has org.kde.StatusNotifierWatcher; then TRAY_HOST_WATCHER=true; else TRAY_HOST_WATCHER=false; fi
}
