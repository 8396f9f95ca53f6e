#!/usr/bin/env bash
# Sets up, builds and runs every test suite. Set TROTLET_TEST_PRESET=debug for the
# AddressSanitizer/UBSan build.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${TROTLET_TEST_PRESET:-release}
scripts/setup.sh
cmake --preset "$preset" -G Ninja >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"
