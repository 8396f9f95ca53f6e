#!/usr/bin/env bash
# Sets up, builds the Release configuration and starts Trotlet in the tray.
# Arguments are passed to the app, e.g. `scripts/run.sh --mock`.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake --preset release -G Ninja >/dev/null
cmake --build --preset release
exec build/release/trotlet "$@"
