#!/usr/bin/env bash
# Installs the Debian packages Trotlet needs to build, run and test.
# Idempotent and quiet when everything is present; works as root or through sudo.
#   scripts/setup.sh        what the build and the tests need
#   scripts/setup.sh fuzz   and clang with libFuzzer for the fuzz targets (scripts/fuzz.sh)
set -euo pipefail

packages=(
  # toolchain
  g++ cmake ninja-build pkg-config git
  # libraries
  qt6-base-dev qt6-base-dev-tools qt6-base-private-dev nlohmann-json3-dev libx11-dev libxss-dev libcld2-dev
  libssl-dev libgtest-dev libgmock-dev
  # packaging: CPack's dependency scan, and the desktop-file and AppStream checkers
  dpkg-dev file desktop-file-utils appstream
  # tests: a private session bus, a headless X server, a font for measuring text
  dbus dbus-x11 xvfb xauth fonts-dejavu-core locales
  # tests: vmstat, free and ps as a second opinion on the metric readers
  procps
  # tests: local HTTP servers for the network clients
  python3
  # tests: a FUSE share whose statfs never answers, for the volume reader's stall test
  libfuse3-dev
)
if [ "${1:-}" = fuzz ]; then
  packages+=(clang-14 libclang-rt-14-dev)
fi

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -eq 0 ]; then
  sudo=()
elif command -v sudo >/dev/null 2>&1; then
  sudo=(sudo)
else
  echo "setup: these packages are missing and neither root nor sudo is available: ${missing[*]}" >&2
  exit 1
fi

echo "setup: installing ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
