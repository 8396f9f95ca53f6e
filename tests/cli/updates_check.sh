#!/usr/bin/env bash
# `--updates-check` as a user runs it: every check passes, the answer is JSON with a checks
# list, and the user's settings and files stay untouched.
set -uo pipefail
trotlet=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work/home XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data
mkdir -p "$HOME"

"$trotlet" --updates-check >"$work/out" 2>"$work/err"
status=$?
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
[[ $status == 0 ]] || fail "exited $status: $(grep -B2 '"ok": false' "$work/out" | head -40)"
python3 - "$work/out" <<'PY' || fail "output: $(head -c 2000 "$work/out")"
import json, sys
doc = json.load(open(sys.argv[1]))
names = [c["check"] for c in doc["checks"]]
wanted = ["check.noUpdate", "check.newer", "check.same", "check.older", "check.malformedFeed",
          "check.httpError404", "check.timeout", "check.fallbackUsed", "check.overrideHonoured",
          "install.full", "refuse.badSignature", "refuse.badHash", "refuse.halfWritten",
          "refuse.downgrade", "whatsNew.firstLaunch", "whatsNew.upgrade", "whatsNew.dismissed",
          "whatsNew.expiredOnDay14", "whatsNew.downgrade", "notes.bundled"]
missing = [n for n in wanted if n not in names]
assert not missing, missing
assert doc["ok"] and all(c["ok"] for c in doc["checks"])
PY
[[ -z $(find "$work/home" "$work/config" "$work/data" -type f 2>/dev/null) ]] || fail "wrote into the home: $(find "$work" -type f)"
if ((failures)); then
    echo "updates check: $failures failure(s)"
    exit 1
fi
echo "updates check: ok ($(grep -c '"check":' "$work/out") checks)"
