#!/usr/bin/env bash
# The Debian package as CPack makes it from this build: its files, its computed dependencies,
# and the desktop entry and AppStream metadata through their validators. (lintian is left to
# scripts/package.sh: it is too large to install for every test run.)
set -uo pipefail
build=$1 source=$2
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

(cd "$build" && cpack -G DEB -B "$work" >"$work/cpack.log" 2>&1) || { cat "$work/cpack.log"; exit 1; }
deb=$(ls "$work"/trotlet_*_"$(dpkg --print-architecture)".deb 2>/dev/null | head -1)
[[ -n $deb ]] || { echo "FAIL: no trotlet_<version>_<arch>.deb"; ls "$work"; exit 1; }

contents=$(dpkg-deb -c "$deb")
for file in ./usr/bin/trotlet ./usr/share/applications/io.github.trotlet.Trotlet.desktop \
            ./usr/share/icons/hicolor/scalable/apps/io.github.trotlet.Trotlet.svg \
            ./usr/share/metainfo/io.github.trotlet.Trotlet.metainfo.xml \
            ./usr/share/doc/trotlet/copyright ./usr/share/doc/trotlet/changelog.gz; do
    grep -q " $file\$" <<<"$contents" || fail "missing $file"
done
grep -q '^-rwxr-xr-x root/root .* ./usr/bin/trotlet$' <<<"$contents" || fail "program not 0755 root:root"

# Dependencies come from the linked libraries, versioned by their shlibs.
depends=$(dpkg-deb -f "$deb" Depends)
for lib in libc6 libqt6core6 libqt6gui6 libqt6widgets6 libqt6network6 libqt6dbus6 libssl3 libx11-6; do
    grep -Eq "(^|, )$lib( \\(|,|$)" <<<"$depends" || fail "Depends lacks $lib: $depends"
done

dpkg-deb -x "$deb" "$work/root"
desktop-file-validate "$work/root/usr/share/applications/io.github.trotlet.Trotlet.desktop" || fail "desktop entry"
appstreamcli validate --no-net "$work/root/usr/share/metainfo/io.github.trotlet.Trotlet.metainfo.xml" >"$work/as.log" 2>&1 ||
    { cat "$work/as.log"; fail "metainfo"; }
version=$(sed -n 's/.*"version": "\([^"]*\)".*/\1/p' "$source/data/release-notes.json" | head -1)
grep -q "<release version=\"$version\"" "$work/root/usr/share/metainfo/io.github.trotlet.Trotlet.metainfo.xml" ||
    fail "metainfo lacks the release $version"
changelog=$(zcat "$work/root/usr/share/doc/trotlet/changelog.gz")
[[ ${changelog%%$'\n'*} == "trotlet ($version) unstable; urgency=medium" ]] || fail "changelog"
# The packaged program is stripped and still answers its dry run.
file "$work/root/usr/bin/trotlet" | grep -q ', stripped' || fail "program not stripped"
help=$("$work/root/usr/bin/trotlet" --help)
[[ ${help%%$'\n'*} == "Trotlet $version ("* ]] || fail "packaged program's dry run: ${help%%$'\n'*}"

if ((failures)); then
    echo "package contents: $failures failure(s)"
    exit 1
fi
echo "package contents: ok ($(basename "$deb"), Depends: $depends)"
