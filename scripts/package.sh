#!/usr/bin/env bash
# Builds the Debian package and the user-local archive from the Release build, and checks them:
#   build/packages/trotlet_<version>_<arch>.deb          (lintian, desktop-file-validate,
#                                                         appstreamcli validate --no-net)
#   build/packages/trotlet-<version>-linux-<arch>.tar.gz  (program, launcher, icon, metainfo, README)
# With TROTLET_SIGNING_KEY=<Ed25519 private key, PEM> the archive is also signed, and the entry
# for the release feed is written beside it (feed-entry.json).
# TROTLET_PACKAGE_DIR changes the output folder.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
out=${TROTLET_PACKAGE_DIR:-$root/build/packages}

scripts/setup.sh
# The checkers are only needed here, so they are installed here (lintian is large).
checkers=(lintian desktop-file-utils appstream)
missing=()
for p in "${checkers[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
  sudo=(); [ "$(id -u)" -eq 0 ] || sudo=(sudo)
  echo "package: installing ${missing[*]}" >&2
  DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

cmake --preset release -G Ninja >/dev/null
cmake --build --preset release --target trotlet package_docs
build=$root/build/release
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
deb_arch=$(dpkg --print-architecture)
machine=$(uname -m)
mkdir -p "$out"

# The Debian package.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$build" && cpack -G DEB -B "$work/cpack" >/dev/null)
deb=$out/trotlet_${version}_${deb_arch}.deb
mv "$work/cpack/trotlet_${version}_${deb_arch}.deb" "$deb"

# The user-local archive: one folder, the stripped program and the files the install writes.
name=trotlet-$version-linux-$machine
mkdir -p "$work/$name"
cp "$build/trotlet" "$work/$name/trotlet"
strip --strip-unneeded "$work/$name/trotlet"
cp data/io.github.trotlet.Trotlet.desktop data/io.github.trotlet.Trotlet.svg README.md "$work/$name/"
cp "$build/data/io.github.trotlet.Trotlet.metainfo.xml" "$work/$name/"
chmod 0755 "$work/$name/trotlet"; chmod 0644 "$work/$name"/io.github.* "$work/$name/README.md"
archive=$out/$name.tar.gz
# Same inputs, same bytes: sorted names, no owners, the time of the last commit.
stamp=$(git log -1 --format=%ct 2>/dev/null || date +%s)
tar --sort=name --owner=0 --group=0 --numeric-owner --mtime="@$stamp" -C "$work" -cf - "$name" |
  gzip -9n >"$archive"

# Checks. Lintian only warns when it runs as root.
status=0
echo "== $deb"
dpkg-deb -I "$deb" | sed -n 's/^ \(Package\|Version\|Architecture\|Depends\|Installed-Size\):/  \1:/p'
dpkg-deb -c "$deb" | awk '{print "  " $1, $6}'
echo "== lintian"
lintian --fail-on error --info "$deb" || status=1
echo "== desktop-file-validate"
desktop-file-validate data/io.github.trotlet.Trotlet.desktop && echo "  ok" || status=1
echo "== appstreamcli validate --no-net"
appstreamcli validate --no-net "$build/data/io.github.trotlet.Trotlet.metainfo.xml" || status=1
echo "== $archive"
tar -tzvf "$archive" | awk '{print "  " $1, $6}'
help=$("$work/$name/trotlet" --help)
echo "  dry run: ${help%%$'\n'*}"

if [ -n "${TROTLET_SIGNING_KEY:-}" ]; then
  openssl pkeyutl -sign -rawin -inkey "$TROTLET_SIGNING_KEY" -in "$archive" -out "$work/sig"
  signature=$(base64 -w0 "$work/sig")
  printf '%s\n' "$signature" >"$archive.sig"
  build_number=$(sed -n '1s/^Trotlet [^ ]* (\([0-9]*\)).*/\1/p' <<<"$help")
  cat >"$out/feed-entry.json" <<JSON
{"version": "$version", "build": $build_number, "date": "$(date -u +%F)",
 "downloads": [{"arch": "$machine",
                "url": "https://trotlet.github.io/releases/$version/$name.tar.gz",
                "size": $(stat -c %s "$archive"), "sha256": "$(sha256sum "$archive" | cut -d' ' -f1)",
                "signature": "$signature"}]}
JSON
  echo "== signed: $archive.sig, feed entry: $out/feed-entry.json"
fi

((status == 0)) && echo "package: ok" || echo "package: FAILED"
exit $status
