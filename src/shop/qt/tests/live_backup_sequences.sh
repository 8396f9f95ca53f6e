#!/usr/bin/env bash
# A good shop.backup.json outlives a lost shop.json (run under xvfb-run). Each sequence starts
# the live app several times over one data folder and prints the Fish after each launch:
#   missing file:       only the backup is there;
#   disk full:          a broken shop.json is restored from the backup on a full disk (the
#                       file-size limit makes every write fail), so no shop.json is written;
#   deleted:            shop.json is deleted between two runs;
#   fresh beside good:  a fresh shop.json (left by a run that lost the old one) meets the backup.
# No launch may start a new user while the backup holds 955 Fish, and the backup is never
# replaced by a state that does not carry its history on without a stamped copy kept first.
set -uo pipefail
trotlet=$1
fake_tray=$2
# shellcheck source=/dev/null
. "$(dirname "$0")/../../../../tests/cli/live_session.sh"
export QT_QPA_PLATFORM=xcb TROTLET_DEBUG_LOG=1 TROTLET_ALLOW_MULTIPLE=1
unset DBUS_SESSION_BUS_ADDRESS WAYLAND_DISPLAY TROTLET_WEATHER_CACHE
data=$XDG_DATA_HOME/trotlet
shop=$data/shop.json
backup=$data/shop.backup.json

# 955 Fish with the history that explains them.
good_state() {
    python3 - <<'EOF'
import json
rows = [("welcomeGift", {}, 100), ("achievement", {"_0": "helloHuman"}, 50), ("passive", {}, 505),
        ("checkIn", {"streakDay": 1}, 50), ("goldenFish", {}, 250)]
ledger, total = [], 0
for i, (kind, payload, amount) in enumerate(rows):
    total += amount
    ledger.append({"id": "00000000-0000-4000-8000-00000000000%d" % i, "date": "2026-11-0%dT09:00:00Z" % (i + 1),
                   "amount": amount, "reason": {kind: payload}, "balanceAfter": total, "merged": 1})
print(json.dumps({"schemaVersion": 2, "balance": total, "ledger": ledger, "owned": ["cat"], "equipped": "cat",
                  "unlockedAchievements": ["helloHuman"], "welcomeGiftGranted": True,
                  "createdAt": "2026-11-01T09:00:00Z"}, separators=(",", ":")))
EOF
}

# fish <file>: the balance, "none" without a file, "bad" when it does not add up.
fish() {
    python3 -c 'import json,sys
try: s = json.load(open(sys.argv[1]))
except FileNotFoundError: print("none"); sys.exit()
print(s["balance"] if s["balance"] == sum(r["amount"] for r in s["ledger"]) else "bad")' "$1"
}

tour_done
"$fake_tray" >"$work/tray" 2>&1 &
pids+=($!)
wait_for "$work/tray" ready 10 || { echo "FAIL: the fake tray did not start"; exit 1; }

# launch <log> [full]: the app runs for two seconds and quits on SIGTERM. With "full", every
# file write beyond zero bytes fails, as on a full disk (stderr goes through a pipe, which the
# limit does not touch).
launch() {
    local log=$1 full=${2:-}
    if [[ $full == full ]]; then
        (trap '' XFSZ; ulimit -f 0; exec "$trotlet" --mock --awake) >/dev/null 2> >(cat >"$log") &
    else
        "$trotlet" --mock --awake >/dev/null 2>"$log" &
    fi
    local app=$!
    pids+=("$app")
    wait_for "$log" "trotlet: live app started" 30 || { fail "the app did not start: $(cat "$log")"; return 1; }
    sleep 2
    kill -TERM "$app"
    wait "$app" || fail "$log: exit status $?"
}

# step <sequence> <launch> <notice text or -> [full]: one launch, its Fish and notice checked.
step() {
    local name=$1 n=$2 notice=$3 full=${4:-}
    local log=$work/$name-$n.log
    launch "$log" "$full"
    local now saved kept
    now=$(fish "$shop")
    saved=$(fish "$backup")
    kept=$(find "$data" -name 'shop.backup.2*.json' | wc -l)
    echo "$name, launch $n: shop.json $now Fish, backup $saved Fish, $kept backup(s) kept aside"
    if [[ $notice == - ]]; then
        grep -q "Shop data" "$log" && fail "$name $n: unexpected notice: $(grep "Shop data" "$log")"
    else
        grep -qF "$notice" "$log" || fail "$name $n: no \"$notice\" notice: $(grep trotlet: "$log")"
    fi
    [[ $saved == none || $saved -ge 955 ]] || fail "$name $n: the backup lost Fish ($saved)"
    [[ $full == full || $now -ge 955 ]] || fail "$name $n: shop.json holds $now Fish"
}

reset_data() {
    rm -rf "$data"
    mkdir -p "$data"
}
missing="Your shop file was missing, so Trotlet restored the last backup from shop.backup.json"

reset_data
good_state >"$backup"
step "missing file" 1 "$missing"
step "missing file" 2 -
step "missing file" 3 -

reset_data
good_state >"$backup"
echo '{"balance": 12, "ledger": [ {"amount": oops' >"$shop"
step "disk full" 1 "Your shop file couldn't be read, so Trotlet restored the last backup" full
grep -qF "could not save the shop" "$work/disk full-1.log" || fail "disk full: the save did not fail"
[[ ! -e $shop ]] || fail "disk full: shop.json was written"
step "disk full" 2 "$missing"
step "disk full" 3 -

reset_data
good_state >"$shop"
step "deleted" 1 -
rm "$shop"
step "deleted" 2 "$missing"
step "deleted" 3 -

reset_data
good_state >"$backup"
python3 -c 'import json,sys; print(json.dumps({"schemaVersion":2,"balance":0,"ledger":[],"createdAt":"2026-11-20T09:00:00Z"}))' >"$shop"
launch "$work/fresh.log"
kept=$(find "$data" -name 'shop.backup.2*.json')
echo "fresh beside good: shop.json $(fish "$shop") Fish, backup $(fish "$backup") Fish, kept aside: $(fish "$kept") Fish"
[[ $(fish "$kept") == 955 ]] || fail "fresh beside good: the 955-Fish backup was not kept aside"

if ((failures)); then
    echo "backup sequences: $failures failure(s)"
    exit 1
fi
echo "backup sequences: ok"
