#!/usr/bin/env bash
# What the Processes tab costs with 2,000 processes: builds and runs process_list_bench, which
# prints one JSON object (medians, 95th percentiles and maxima in milliseconds, wall and thread
# CPU time; heap bytes). On a shared machine read the "cpu" figures: wall time also counts the
# moments other programs had the core.
#
#   scripts/measure-processes.sh [BUILD_DIR]
set -euo pipefail

ROOT=$(cd "$(dirname "$0")/.." && pwd)
BUILD=${1:-$ROOT/build/release}
cmake --build "$BUILD" --target process_list_bench >&2
QT_QPA_PLATFORM=offscreen "$BUILD/src/processes/process_list_bench" 2>/dev/null
