#!/usr/bin/env bash
# The binary starts and a harness flag that nobody owns yet does not crash it.
set -euo pipefail
trotlet=$1
"$trotlet" --dump-layout >/dev/null
echo "cli smoke: ok"
