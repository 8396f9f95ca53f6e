#!/usr/bin/env bash
# Writes the seed inputs of each fuzz target into fuzz/corpus/<target>/seed-*: the captured
# /proc and /sys trees of the reader tests, the app's own harness output (metrics fixtures, demo
# shops), the fake Open-Meteo server's answers, and hand-written command lines and documents.
# Run once after a change of format; the seeds are committed with the corpora.
#   fuzz/seed-corpora.sh [path/to/trotlet]   (default: build/release/trotlet)
set -euo pipefail
cd "$(dirname "$0")/.."
app=${1:-build/release/trotlet}
[ -x "$app" ] || { echo "seed-corpora: build the release preset first ($app)" >&2; exit 1; }
corpus=fuzz/corpus
trees=src/platform/linux/tests/data
export TZ=UTC QT_QPA_PLATFORM=offscreen

seed() {  # seed <target> <name>: stdin becomes the seed
  mkdir -p "$corpus/$1"
  cat > "$corpus/$1/seed-$2"
}

# Command lines, one argument a line.
printf '%s\n' --dump-metrics --fixture hot | seed launch_options dump
printf '%s\n' --snapshot /tmp/shots --only panel-,menubar --only shop | seed launch_options snapshot
printf '%s\n' --bench-metrics 5 --mock | seed launch_options bench
printf '%s\n' --open-panel --tab shop --detail gpu --keep-panel-open --awake | seed launch_options live
printf '%s\n' --idle-seconds 12.5 --skip-onboarding -monitoring.updateInterval 0.5 -menuBar.maxFPS 60 \
  | seed launch_options preset
printf '%s\n' --grant-fish 50 --shop-demo rich --shop-file /tmp/shop.json -psn_0_1234 | seed launch_options shop
printf '%s\n' --move-check /opt/A.app --move-check /opt/B.app --move-copy a b | seed launch_options move
printf '%s\n' --simulate-economy --verify-shop-persistence --dump-layout --list-scenes | seed launch_options harness

# Settings files.
python3 - "$corpus/settings_file" <<'EOF'
import json, os, sys
out = sys.argv[1]
os.makedirs(out, exist_ok=True)
full = {
    "general.launchAtLogin": True, "general.appearance": "dark", "general.globalShortcutEnabled": True,
    "general.globalShortcutKeyCode": 35, "general.globalShortcutModifiers": 1572864,
    "general.hasCompletedOnboarding": True, "monitoring.updateInterval": 2.0,
    "monitoring.temperatureUnit": "fahrenheit", "monitoring.networkUnit": "bits",
    "monitoring.hiddenCards": ["gpu", "battery"], "monitoring.processListSize": 8,
    "menuBar.textMetric": "cpuTemperature", "menuBar.textPosition": "left", "menuBar.speedSource": "busiest",
    "menuBar.speedSensitivity": 0.75, "menuBar.maxFPS": 24,
    "notifications.highCPUThreshold": 0.9, "notifications.batteryLowThreshold": 15,
    "notifications.diskFreeThresholdGB": 10,
    "weather.location": json.dumps({"id": 2988507, "name": "Paris", "region": "Île-de-France", "country": "France",
                                    "countryCode": "FR", "latitude": 48.85341, "longitude": 2.3488,
                                    "timezone": "Europe/Paris"}, separators=(",", ":")),
    "layout.overview": '{"version":1,"cards":[{"id":"cpu","size":"large"},{"id":"gpu","size":"small","hidden":true}]}',
    "release.whatsNewSince": "2026-10-01T09:00:00Z", "future.feature": {"a": [1, 2]},
}
open(f"{out}/seed-full", "w").write(json.dumps(full, indent=2, ensure_ascii=False) + "\n")
open(f"{out}/seed-mistyped", "w").write('{"monitoring.updateInterval": "fast", "menuBar.maxFPS": 1e300, '
                                        '"menuBar.textMetric": "radio", "notifications.batteryLowThreshold": -5}\n')
open(f"{out}/seed-empty", "w").write("{}\n")
open(f"{out}/seed-truncated", "w").write('{"menuBar.maxFPS": 12, "general.appea')
EOF

# Overview layout documents.
printf '%s' '{"version":1,"cards":[{"id":"disk","size":"small"}]}' | seed layout_document minimal
printf '%s' '{"version":1,"cards":[{"id":"radio","size":"wide"},{"id":"cpu","size":"large"},{"id":"cpu","size":"small"},{"id":"gpu","size":"huge"}]}' \
  | seed layout_document mixed
printf '%s' '{"version":9,"cards":[{"id":"cpu","size":"large"}]}' | seed layout_document future
printf '%s' '{"version":0,"cards":[{"id":"weather","size":"wide","hidden":false},{"id":"pawreport","size":"medium","hidden":true},{"id":"heat","size":"medium"},{"id":"battery","size":"small"},{"id":"network","size":"wide"}]}' \
  | seed layout_document all

# Shop files: every demo state the app builds, and the documented edge cases.
for state in newUser midGame streak29 saverUsed rich complete; do
  "$app" --dump-shop "$state" | python3 -c 'import json,sys; print(json.dumps(json.load(sys.stdin), separators=(",", ":")))' \
    | seed shop_file "$state"
done
printf '%s' '{"schemaVersion":2,"balance":"lots","ledger":[]}' | seed shop_file lots
printf '%s' '{"schemaVersion":2,"balance":15,"ledger":[{"date":"2026-10-01T09:00:00Z","amount":15,"reason":{"goldenFish":{}},"balanceAfter":15}],"today":"garbage","streak":{"current":"x","best":3}}' \
  | seed shop_file lenient
printf '%s' '{"schemaVersion":99,"balance":5000,"ledger":[]}' | seed shop_file newer
printf '%s' '{"schemaVersion":1,"balance":900,"owned":["cat","shiba"],"ledger":[{"date":"2026-09-01T10:00:00Z","amount":250,"reason":{"passive":{}},"balanceAfter":250},{"date":"2026-09-02T10:00:00+02:00","amount":50,"reason":{"checkIn":{"day":9}},"balanceAfter":300}],"streak":{"lastSaverUsed":"2026-08-20T10:00:00Z"}}' \
  | seed shop_file version1

# Metrics samples: every fixture and the mock provider, as --dump-metrics prints them; and the
# mock overrides.
for fixture in normal idle busy panic hot lowBattery offline desktop stress; do
  "$app" --dump-metrics --fixture "$fixture" | seed metrics_json "$fixture"
done
"$app" --dump-metrics --mock | seed metrics_json mock
printf '%s' 'cpu=0.95,cpuC=101,memoryPressure=critical,freePercent=3,batteryPercent=7,charging=false,pluggedIn=false,lowPowerMode=true,online=false,downBps=1e6,upBps=2e5,gpu=none,diskFreePercent=2' \
  | seed metrics_json overrides
printf '%s' 'battery=none,gpu=0.5' | seed metrics_json overrides-none

# Open-Meteo answers from the fake server the weather tests use, and the cache they become.
python3 - "$corpus" src/weather/tests <<'EOF'
import json, os, sys
corpus, here = sys.argv[1], sys.argv[2]
sys.path.insert(0, here)
import fake_open_meteo as fake
def put(target, name, body):
    os.makedirs(f"{corpus}/{target}", exist_ok=True)
    open(f"{corpus}/{target}/seed-{name}", "w").write(body)
for q, lang in [("Paris", "en"), ("東京", "ja"), ("Hà Nội", "vi"), ("zzz", "en")]:
    put("weather_search", f"{lang}-{len(q)}", json.dumps(fake.search({"name": [q], "language": [lang], "count": ["8"]}), ensure_ascii=False))
for zone, lat, lon in [("Europe/Paris", 48.85341, 2.3488), ("auto", -36.84853, 174.76349)]:
    params = {"latitude": [str(lat)], "longitude": [str(lon)], "timezone": [zone], "forecast_hours": ["36"], "past_hours": ["1"], "forecast_days": ["7"]}
    answer = fake.forecast(params)
    put("weather_forecast", zone.replace("/", "-"), json.dumps(answer))
    h, d, c = answer["hourly"], answer["daily"], answer["current"]
    report = {
        "location": {"id": 2988507, "name": "Paris", "region": "Île-de-France", "country": "France",
                     "countryCode": "FR", "latitude": lat, "longitude": lon, "timezone": answer["timezone"]},
        "fetchedAt": c["time"], "utcOffsetSeconds": answer["utc_offset_seconds"],
        "current": {"time": c["time"], "temperatureC": c["temperature_2m"], "apparentC": c["apparent_temperature"],
                    "humidity": c["relative_humidity_2m"], "code": c["weather_code"], "isDay": bool(c["is_day"]),
                    "windKmh": c["wind_speed_10m"], "windDirection": c["wind_direction_10m"],
                    "precipitationMm": c["precipitation"], "cloudCover": c["cloud_cover"]},
        "hourly": [{"time": h["time"][i], "temperatureC": h["temperature_2m"][i], "apparentC": h["apparent_temperature"][i],
                    "humidity": h["relative_humidity_2m"][i], "code": h["weather_code"][i], "isDay": bool(h["is_day"][i]),
                    "precipitationProbability": h["precipitation_probability"][i], "cloudCover": h["cloud_cover"][i],
                    "windKmh": h["wind_speed_10m"][i], "windDirection": h["wind_direction_10m"][i]} for i in range(0, len(h["time"]), 6)],
        "daily": [{"date": d["time"][i], "code": d["weather_code"][i], "maxC": d["temperature_2m_max"][i],
                   "minC": d["temperature_2m_min"][i], "sunrise": d["sunrise"][i], "sunset": d["sunset"][i],
                   "precipitationProbability": d["precipitation_probability_max"][i]} for i in range(len(d["time"]))],
    }
    put("weather_cache", zone.replace("/", "-"), json.dumps({"version": 1, "savedAt": c["time"], "report": report}, indent=2, ensure_ascii=False))
put("weather_cache", "location", json.dumps({"id": 1850147, "name": "東京", "country": "Japan", "countryCode": "JP",
                                             "latitude": 35.6895, "longitude": 139.69171, "timezone": "Asia/Tokyo"}, ensure_ascii=False))
EOF

# /proc files from the captured machines. Two readings a tick apart are joined by a NUL byte.
for machine in "$trees"/*/; do
  m=$(basename "$machine")
  p=$machine/proc
  [ -f "$p/stat" ] && { cat "$p/stat"; printf '\0'; cat "$p/stat.next" 2>/dev/null || cat "$p/stat"; } | seed proc_cpu "$m-stat"
  [ -f "$p/loadavg" ] && seed proc_cpu "$m-loadavg" < "$p/loadavg"
  [ -f "$p/meminfo" ] && seed proc_memory "$m-meminfo" < "$p/meminfo"
  [ -f "$p/pressure/memory" ] && seed proc_memory "$m-pressure" < "$p/pressure/memory"
  [ -f "$p/net/dev" ] && { cat "$p/net/dev"; printf '\0'; cat "$p/net/dev.next" 2>/dev/null || true; } | seed proc_net "$m-dev"
  [ -f "$p/net/route" ] && seed proc_net "$m-route" < "$p/net/route"
  [ -f "$p/net/fib_trie" ] && seed proc_net "$m-fib_trie" < "$p/net/fib_trie"
  [ -f "$p/net/ipv6_route" ] && seed proc_net "$m-ipv6_route" < "$p/net/ipv6_route"
  [ -f "$p/net/wireless" ] && { printf '\0'; cat "$p/net/wireless"; } | seed proc_net "$m-wireless"
  [ -f "$p/diskstats" ] && { cat "$p/diskstats"; printf '\0'; cat "$p/diskstats.next" 2>/dev/null || true; } | seed proc_disk "$m-diskstats"
  [ -f "$p/self/mountinfo" ] && seed proc_disk "$m-mountinfo" < "$p/self/mountinfo"
  [ -f "$p/self/stat" ] && seed proc_process "$m-self-stat" < "$p/self/stat"
  for pid in "$p"/[0-9]*; do
    [ -f "$pid/stat" ] || continue
    { cat "$pid/stat"; printf '\0'; cat "$pid/cmdline" 2>/dev/null || true; } | seed proc_process "$m-$(basename "$pid")"
  done
  [ -f "$machine/etc/passwd" ] && seed proc_process "$m-passwd" < "$machine/etc/passwd"
  [ -f "$machine/etc/os-release" ] && seed proc_system "$m-os-release" < "$machine/etc/os-release"
  [ -f "$p/cpuinfo" ] && head -c 4000 "$p/cpuinfo" | seed proc_system "$m-cpuinfo"
  # The sysfs classes as "<class>/<device>/<attribute>=<value>" lines.
  for class in hwmon thermal power_supply; do
    dir=$machine/sys/class/$class
    [ -d "$dir" ] || continue
    target=sys_hwmon; [ "$class" = power_supply ] && target=sys_power_supply
    lines=$(cd "$machine/sys/class" && find "$class" -mindepth 2 -maxdepth 2 -type f ! -name .gitkeep | sort |
            while read -r f; do printf '%s=%s\n' "$f" "$(head -n1 "$f")"; done)
    [ -n "$lines" ] && printf '%s\n' "$lines" | seed "$target" "$m-$class"
  done
done
[ -f "$trees/amd-desktop/usr/share/misc/pci.ids" ] && seed proc_system pci-ids < "$trees/amd-desktop/usr/share/misc/pci.ids"
printf 'pos:\t0\nflags:\t02100002\ndrm-driver:\ti915\ndrm-client-id:\t42\ndrm-engine-render:\t123456789 ns\n' | seed proc_system fdinfo
printf 'hwmon/hwmon0/name=coretemp\nhwmon/hwmon0/temp1_input=45000\nhwmon/hwmon0/temp1_label=Package id 0\nhwmon/hwmon0/temp1_crit=100000\nhwmon/hwmon1/name=nct6798\nhwmon/hwmon1/fan2_input=1200\nhwmon/hwmon1/fan2_min=300\nthermal/thermal_zone0/type=acpitz\nthermal/thermal_zone0/temp=38000\nthermal/thermal_zone0/trip_point_0_type=critical\nthermal/thermal_zone0/trip_point_0_temp=105000\n' \
  | seed sys_hwmon written
printf 'power_supply/BAT0/type=Battery\npower_supply/BAT0/status=Discharging\npower_supply/BAT0/capacity=57\npower_supply/BAT0/energy_now=30000000\npower_supply/BAT0/energy_full=52000000\npower_supply/BAT0/energy_full_design=57000000\npower_supply/BAT0/power_now=8500000\npower_supply/BAT0/cycle_count=312\npower_supply/BAT0/voltage_min_design=11400000\npower_supply/AC/type=Mains\npower_supply/AC/online=0\npower_supply/ucsi-source-psy-USBC000:001/type=USB\npower_supply/ucsi-source-psy-USBC000:001/online=1\npower_supply/ucsi-source-psy-USBC000:001/voltage_max=20000000\npower_supply/ucsi-source-psy-USBC000:001/current_max=3250000\npower_supply/hidpp_battery_0/type=Battery\npower_supply/hidpp_battery_0/scope=Device\npower_supply/hidpp_battery_0/capacity=90\n' \
  | seed sys_power_supply laptop
printf 'power_supply/BAT1/type=Battery\npower_supply/BAT1/status=Charging\npower_supply/BAT1/charge_now=2100000\npower_supply/BAT1/charge_full=4000000\npower_supply/BAT1/charge_full_design=4400000\npower_supply/BAT1/voltage_now=12100000\npower_supply/BAT1/current_now=-1500000\npower_supply/BAT1/time_to_full_now=5400\npower_supply/BAT1/temp=312\npower_supply/BAT1/health=Good\n' \
  | seed sys_power_supply charge
echo "seed-corpora: $(find "$corpus" -name 'seed-*' | wc -l) seeds in $(ls "$corpus" | wc -l) corpora"
