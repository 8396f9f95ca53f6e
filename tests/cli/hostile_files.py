#!/usr/bin/env python3
"""Hostile shop.json, settings.json and weather.json, met by the live app (run under xvfb-run).

Each case writes one damaged file (or puts a directory, a dangling link, a read-only or full
folder in its way), starts the app, lets it settle and quits it with SIGTERM. For every case:
the app starts and quits cleanly (no crash), says what the documented notice says, keeps a
broken file aside byte for byte (never deletes or overwrites it), and neither loses nor creates
Fish: the 955 Fish of the good file or of its backup are there afterwards.

    hostile_files.py <trotlet> <fake_system_tray>
"""
import glob
import json
import os
import random
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

trotlet, fake_tray = sys.argv[1], sys.argv[2]
work = tempfile.mkdtemp()
config, data = f"{work}/config/trotlet", f"{work}/data/trotlet"
# A zone where it is noon now, so that no night-time achievement pays Fish during the run.
noon = f"NOON{time.gmtime().tm_hour - 12:+d}"
env = dict(os.environ, HOME=f"{work}/home", XDG_CONFIG_HOME=f"{work}/config", XDG_DATA_HOME=f"{work}/data",
           XDG_RUNTIME_DIR=f"{work}/run", QT_QPA_PLATFORM="xcb", TROTLET_DEBUG_LOG="1",
           TROTLET_ALLOW_MULTIPLE="1", LC_ALL="C.UTF-8", TZ=noon)
for name in ("DBUS_SESSION_BUS_ADDRESS", "WAYLAND_DISPLAY", "TROTLET_WEATHER_CACHE"):
    env.pop(name, None)
MB = 1 << 20
FISH = 955


def good_shop(**changes):
    """955 Fish with the history that explains them."""
    rows = [("welcomeGift", {}, 100), ("achievement", {"_0": "helloHuman"}, 50), ("passive", {}, 505),
            ("checkIn", {"streakDay": 1}, 50), ("goldenFish", {}, 250)]
    ledger, total = [], 0
    for i, (kind, payload, amount) in enumerate(rows):
        total += amount
        ledger.append({"id": f"00000000-0000-4000-8000-00000000000{i}", "date": f"2026-11-0{i + 1}T09:00:00Z",
                       "amount": amount, "reason": {kind: payload}, "balanceAfter": total, "merged": 1})
    state = {"schemaVersion": 2, "balance": total, "ledger": ledger, "owned": ["cat"], "equipped": "cat",
             "unlockedAchievements": ["helloHuman"], "welcomeGiftGranted": True,
             "createdAt": "2026-11-01T09:00:00Z"}
    state.update(changes)
    return state


def text(document):
    return json.dumps(document, separators=(",", ":")).encode()


GOOD_SHOP = text(good_shop())
PARIS = {"id": 2988507, "name": "Paris", "region": "Île-de-France", "country": "France", "countryCode": "FR",
         "latitude": 48.85341, "longitude": 2.3488, "timezone": "Europe/Paris"}
# A user who has been through the welcome tour, so a start does not open the panel on it.
TOUR_DONE = b'{"general.hasCompletedOnboarding": true}\n'
GOOD_SETTINGS = json.dumps({"general.hasCompletedOnboarding": True, "menuBar.maxFPS": 12, "monitoring.hiddenCards": ["gpu"],
                            "weather.location": json.dumps(PARIS, separators=(",", ":"))}, indent=2).encode()


def good_weather():
    t = int(time.time()) // 3600 * 3600
    hour = lambda i: {"time": t + i * 3600, "temperatureC": 11.5, "apparentC": 9.0, "humidity": 80.0, "code": 3,
                      "isDay": True, "precipitationProbability": 10.0, "cloudCover": 90.0, "windKmh": 12.0,
                      "windDirection": 240.0}
    current = {"time": t, "temperatureC": 11.4, "apparentC": 9.2, "humidity": 81.0, "code": 61, "isDay": True,
               "windKmh": 14.8, "windDirection": 232.0, "precipitationMm": 0.3, "cloudCover": 100.0}
    day = {"date": t - t % 86400, "code": 61, "maxC": 13.0, "minC": 6.0, "sunrise": t - t % 86400 + 25000,
           "sunset": t - t % 86400 + 60000, "precipitationProbability": 70.0}
    report = {"location": PARIS, "fetchedAt": t, "utcOffsetSeconds": 3600, "current": current,
              "hourly": [hour(i) for i in range(6)], "daily": [day]}
    return json.dumps({"version": 1, "savedAt": t, "report": report}, indent=2, ensure_ascii=False).encode()


GOOD_WEATHER = good_weather()


def deep(prefix, levels=100_000):
    """A document whose last value nests `levels` arrays deep."""
    return prefix + b"[" * levels + b"]" * levels + b"}"


def flipped(original, seed):
    rng = random.Random(seed)
    out = bytearray(original)
    for _ in range(rng.randint(1, 3)):
        out[rng.randrange(len(out))] ^= 1 << rng.randrange(8)
    return bytes(out)


def cut(original, at):
    return original[:at]


def padded(original, size):
    """The same document with `size` bytes of blanks before its closing brace."""
    return original[:-1] + b" " * size + original[-1:]


# name, which file, its contents (bytes) or a special placement, whether a good backup lies
# beside it, the expected outcome. Outcomes:
#   restored   "Shop data restored", the broken file kept aside, 955 Fish (from the backup)
#   reset      "Shop data was reset", the broken file kept aside, a new shop that adds up
#   loaded     no notice, 955 Fish
#   corrected  "Fish balance corrected", 955 Fish (the ledger's sum)
#   unreadable "Shop data couldn't be opened", the thing in the file's place untouched
#   missing    "was missing", restored from the backup: 955 Fish
#   either     a flip may or may not break the file: if it is kept aside the backup is restored
#   kept       (settings) the file kept aside with the reason, the app on its defaults
#   read       (settings, weather) read or ignored; the file left as it was
shop_cases = [
    *[(f"truncated at byte {at}", cut(GOOD_SHOP, at), True, "restored")
      for at in (0, 1, 30, len(GOOD_SHOP) // 3, len(GOOD_SHOP) // 2, len(GOOD_SHOP) - 1)],
    ("truncated, no backup", cut(GOOD_SHOP, len(GOOD_SHOP) // 2), False, "reset"),
    *[(f"byte flips #{seed}", flipped(GOOD_SHOP, seed), True, "either") for seed in range(1, 5)],
    ("balance beyond 64 bits", GOOD_SHOP.replace(b'"balance":955', b'"balance":99999999999999999999999'),
     True, "restored"),
    ("amount beyond 64 bits", GOOD_SHOP.replace(b'"amount":505', b'"amount":18446744073709551616'),
     True, "restored"),
    ("counters beyond 64 bits", text(good_shop(today={"activeSeconds": 1e300, "pets": 99999999999999999999999},
                                               lifetime={"metersRun": -1e308})), True, "loaded"),
    ("negative balance", GOOD_SHOP.replace(b'"balance":955', b'"balance":-955'), True, "restored"),
    ("spend before the earnings", GOOD_SHOP.replace(b'"amount":100,', b'"amount":-100,')
     .replace(b'"balance":955', b'"balance":755'), True, "restored"),
    ("fractional balance", GOOD_SHOP.replace(b'"balance":955', b'"balance":955.5'), True, "restored"),
    ("fractional amount", GOOD_SHOP.replace(b'"amount":50,', b'"amount":50.5,'), True, "restored"),
    ("balance disagrees with the ledger", GOOD_SHOP.replace(b'"balance":955', b'"balance":2000'), True, "corrected"),
    ("100,000 levels deep", deep(b'{"schemaVersion":2,"balance":955,"ledger":[],"streak":'), True, "restored"),
    ("50 MB of blanks", padded(GOOD_SHOP, 50 * MB), True, "loaded"),
    ("50 MB of junk", b"\x00junk" * (10 * MB), True, "restored"),
    ("invalid UTF-8", GOOD_SHOP.replace(b'"equipped":"cat"', b'"equipped":"c\xff\xfet"'), True, "restored"),
    ("a directory", "directory", True, "unreadable"),
    ("a dangling symlink", "dangling", True, "missing"),
    ("a read-only folder", "read-only", True, "loaded"),
    ("a full disk", "full", True, "restored"),
]
settings_cases = [
    ("truncated", cut(GOOD_SETTINGS, len(GOOD_SETTINGS) // 2), "kept"),
    *[(f"byte flips #{seed}", flipped(GOOD_SETTINGS, seed), "either") for seed in range(1, 3)],
    ("a number beyond a double", b'{"menuBar.maxFPS": 24, "notifications.batteryLowThreshold": 1e400}', "kept"),
    ("numbers beyond 64 bits", b'{"menuBar.maxFPS": 99999999999999999999999, "monitoring.updateInterval": -1e300,'
                               b' "monitoring.processListSize": -99999999999999999999999}', "read"),
    ("100,000 levels deep", deep(b'{"future.feature":'), "kept"),
    ("50 MB value of an unknown key", b'{"future.blob": "' + b"x" * (50 * MB) + b'"}', "read"),
    ("invalid UTF-8", b'{"menuBar.textMetric": "c\xff\xfeu"}', "kept"),
    ("a directory", "directory", "kept"),
    ("a dangling symlink", "dangling", "read"),
    ("a read-only folder", "read-only", "read"),
]
weather_cases = [
    ("truncated", cut(GOOD_WEATHER, len(GOOD_WEATHER) // 2)),
    *[(f"byte flips #{seed}", flipped(GOOD_WEATHER, seed)) for seed in range(1, 3)],
    ("times beyond 64 bits", GOOD_WEATHER.replace(b'"fetchedAt": ', b'"fetchedAt": 99999999999999999999999, "x": ')),
    ("100,000 levels deep", deep(b'{"version":1,"report":')),
    ("50 MB of blanks", padded(GOOD_WEATHER, 50 * MB)),
    ("invalid UTF-8", GOOD_WEATHER.replace("Île".encode(), b"\xce\xff")),
    ("a directory", "directory"),
    ("a dangling symlink", "dangling"),
    ("a read-only folder", "read-only"),
]

failures = []
tray = subprocess.Popen([fake_tray], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
if tray.stdout.readline().strip() != "ready":
    sys.exit("FAIL: the fake tray did not start")
can_mount = subprocess.run(["unshare", "-m", "true"], stderr=subprocess.DEVNULL).returncode == 0


def fail(case, message):
    failures.append(f"{case}: {message}")
    print(f"FAIL: {case}: {message}")


def reset():
    for folder in (f"{work}/config", f"{work}/data", f"{work}/home", f"{work}/run"):
        shutil.rmtree(folder, ignore_errors=True)
        os.makedirs(folder, mode=0o700)
    os.makedirs(config)
    os.makedirs(data)


def place(path, contents):
    """Puts the case's contents at `path`; returns the wrapper the launch needs, if any."""
    if contents == "directory":
        os.makedirs(f"{path}/inside")
    elif contents == "dangling":
        os.symlink(f"{path}.gone", path)
    elif contents == "read-only":
        return ["sh", "-c", 'mount --bind "$0" "$0" && mount -o remount,bind,ro "$0" && exec "$@"',
                os.path.dirname(path)]
    elif contents == "full":
        return "full"
    else:
        with open(path, "wb") as f:
            f.write(contents)
    return []


def no_writes():
    """A disk with no room: every write beyond zero bytes fails (EFBIG), as on a full disk."""
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (0, resource.RLIM_INFINITY))


def launch(case, wrapper):
    full = wrapper == "full"
    if full:
        wrapper = []
    elif wrapper:
        if not can_mount:
            print(f"skip: {case}: no mount namespace here")
            return None
        wrapper = ["unshare", "-m", *wrapper]
    log_path = f"{work}/app.log"
    with open(log_path, "wb") as log:
        # stderr passes through this process, whose writes the limit does not touch.
        # Idle fixture data: no burst, no heat, no achievement pays Fish while the case runs.
        app = subprocess.Popen([*wrapper, trotlet, "--fixture", "idle", "--awake"], env=env, stdout=subprocess.DEVNULL,
                               stderr=subprocess.PIPE, preexec_fn=no_writes if full else None)
        def copy():
            for chunk in iter(lambda: app.stderr.read1(65536), b""):
                log.write(chunk)
                log.flush()

        relay = threading.Thread(target=copy, daemon=True)
        relay.start()
        deadline = time.time() + 30
        while time.time() < deadline and app.poll() is None:
            with open(log_path, "rb") as f:
                if b"trotlet: live app started" in f.read():
                    break
            time.sleep(0.1)
        else:
            app.kill()
            app.wait()
            fail(case, "the app did not start: " + open(log_path, errors="replace").read()[-2000:])
            return None
        time.sleep(1)
        app.send_signal(signal.SIGTERM)
        try:
            status = app.wait(timeout=30)
        except subprocess.TimeoutExpired:
            app.kill()
            status = "hung"
        relay.join(timeout=5)
    output = open(log_path, errors="replace").read()
    if status != 0:
        fail(case, f"exit status {status}: {output[-2000:]}")
    return output


def fish(path):
    """The Fish a shop file holds, None without one, "bad" when its history does not add up."""
    if not os.path.isfile(path):
        return None
    state = json.load(open(path))
    ok = state["balance"] == sum(row["amount"] for row in state["ledger"]) and all(
        row["balanceAfter"] >= 0 for row in state["ledger"])
    return state["balance"] if ok else "bad"


def kept_copies(folder, stem):
    return sorted(glob.glob(f"{folder}/{stem}.corrupt-*"))


def check_kept(case, copies, contents):
    if len(copies) != 1:
        return fail(case, f"{len(copies)} copies kept aside")
    if contents == "directory":
        if not os.path.isdir(f"{copies[0]}/inside"):
            fail(case, "the directory was not kept aside whole")
    elif open(copies[0], "rb").read() != contents:
        fail(case, "the copy kept aside differs from the broken file")


def run_shop(case, contents, with_backup, outcome):
    reset()
    shop, backup = f"{data}/shop.json", f"{data}/shop.backup.json"
    open(f"{config}/settings.json", "wb").write(TOUR_DONE)
    if with_backup:
        open(backup, "wb").write(GOOD_SHOP)
    if contents in ("read-only", "full"):
        open(shop, "wb").write(GOOD_SHOP if contents == "read-only" else cut(GOOD_SHOP, 40))
    wrapper = place(shop, contents)
    output = launch(case, wrapper)
    if output is None:
        return
    notices = {"restored": "Shop data restored. Your shop file couldn't be read, so Trotlet restored the last backup. "
                           "The broken file is saved as ",
               "reset": "Shop data was reset. Your shop file couldn't be read, so Trotlet started fresh. "
                        "The broken file is saved as ",
               "corrected": "Fish balance corrected. Your balance is now the sum of your Fish history (",
               "unreadable": "Shop data couldn't be opened. Trotlet couldn't read ",
               "missing": "Shop data restored. Your shop file was missing, so Trotlet restored the last backup from "}
    said = [line for line in output.splitlines() if "Shop data" in line or "Fish balance" in line]
    copies = kept_copies(data, "shop")
    if outcome in notices:
        named = os.path.basename(copies[0]) if copies and outcome in ("restored", "reset") else ""
        if not any(notices[outcome] in line and named in line for line in said):
            fail(case, f"no \"{notices[outcome]}{named}\" notice: {said}")
    if outcome == "loaded" and said:
        fail(case, f"unexpected notice: {said}")
    if contents == "full" and "trotlet: could not save the shop" not in output:
        fail(case, "the save on a full disk did not fail")
    if outcome in ("restored", "reset") or (outcome == "either" and copies):
        check_kept(case, copies, cut(GOOD_SHOP, 40) if contents == "full" else contents)
    elif copies:
        fail(case, f"a good file was kept aside: {copies}")
    if outcome == "unreadable" and not os.path.isdir(f"{shop}/inside"):
        fail(case, "the unreadable shop.json was touched")
    if contents == "read-only" and open(shop, "rb").read() != GOOD_SHOP:
        fail(case, "the file in the read-only folder changed")
    now = fish(shop) if os.path.isfile(shop) else fish(backup)
    if outcome == "reset":
        if not isinstance(now, int):
            fail(case, f"the new shop holds {now}")
    elif outcome != "unreadable" and now != FISH and not (outcome == "either" and not copies and now != "bad"):
        fail(case, f"{now} Fish afterwards, not {FISH}")
    if with_backup and fish(backup) != FISH:
        fail(case, f"the backup holds {fish(backup)} Fish")
    print(f"shop.json, {case}: {outcome}, {now} Fish afterwards")


def run_settings(case, contents, outcome):
    reset()
    path = f"{config}/settings.json"
    if contents == "read-only":
        open(path, "wb").write(GOOD_SETTINGS)
    wrapper = place(path, contents)
    output = launch(case, wrapper)
    if output is None:
        return
    said = [line for line in output.splitlines() if "settings.json" in line]
    copies = kept_copies(config, "settings")
    if outcome == "kept" or (outcome == "either" and copies):
        check_kept(case, copies, contents)
        if not any("; kept it as " in line and "started from the defaults" in line for line in said):
            fail(case, f"no word of the file kept aside: {said}")
    elif copies:
        fail(case, f"a readable file was kept aside: {copies}")
    elif isinstance(contents, bytes) and os.path.isfile(path):
        # A whole number beyond 64 bits is a double to the app and comes back as the nearest one.
        before, after = json.loads(contents, parse_int=float), json.load(open(path), parse_int=float)
        changed = {key: after.get(key) for key, value in before.items() if after.get(key) != value}
        if changed:
            fail(case, f"keys of the file changed: {changed}")
    if contents == "read-only" and open(path, "rb").read() != GOOD_SETTINGS:
        fail(case, "the file in the read-only folder changed")
    print(f"settings.json, {case}: {'kept aside' if copies else 'read'}")


def run_weather(case, contents):
    reset()
    open(f"{config}/settings.json", "wb").write(GOOD_SETTINGS)
    path = f"{data}/weather.json"
    if contents == "read-only":
        open(path, "wb").write(GOOD_WEATHER)
    wrapper = place(path, contents)
    output = launch(case, wrapper)
    if output is None:
        return
    # A cache that does not decode reads as none; it is not the app's to delete or rewrite.
    expected = GOOD_WEATHER if contents == "read-only" else contents
    if isinstance(expected, bytes) and open(path, "rb").read() != expected:
        fail(case, "the cache file was changed")
    if contents == "directory" and not os.path.isdir(f"{path}/inside"):
        fail(case, "the directory in the cache's place was touched")
    print(f"weather.json, {case}: left as it was")


started = time.time()
try:
    for case, contents, with_backup, outcome in shop_cases:
        run_shop(case, contents, with_backup, outcome)
    for case, contents, outcome in settings_cases:
        run_settings(case, contents, outcome)
    for case, contents in weather_cases:
        run_weather(case, contents)
finally:
    tray.kill()
    shutil.rmtree(work, ignore_errors=True)
cases = len(shop_cases) + len(settings_cases) + len(weather_cases)
print(f"hostile files: {cases} cases in {time.time() - started:.0f} s, {len(failures)} failure(s)")
sys.exit(1 if failures else 0)
